// SPDX-License-Identifier: MIT
// The place of a record's member in the records passed to the device, in which the record may be
// nested.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The number that a text begins with, limited to 32 bits.
int32_t number_in(const std::string &text);

struct RecordPlace {
    size_t record_size; // of the outer record
    size_t offset;
    size_t width;
    bool is_number;

    bool holds(const std::string &record, const std::string &text) const;
    // Writes the text, or the number that it begins with, and zeroes the rest of the field.
    void put(std::string &record, const std::string &text) const;
};

// Empty if it is not a record.
const std::vector<RecordPlace> &places_of(const std::string &record, const std::string &member);
