// SPDX-License-Identifier: MIT
// Where a member of a record lies in the records that the device is given, of which it may be a
// part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The number that a text begins with, held to those of 32 bits.
int32_t number_in(const std::string &text);

struct RecordPlace {
    size_t record_size; // of the outer record
    size_t offset;
    size_t width;
    bool is_number;

    bool holds(const std::string &record, const std::string &text) const;
    // Puts the text there, or the number that it begins with, and zeroes what is left of the field.
    void put(std::string &record, const std::string &text) const;
};

// None for what is no record.
const std::vector<RecordPlace> &places_of(const std::string &record, const std::string &member);
