// SPDX-License-Identifier: MIT
// The fields of every record of the device interface, but for pointers and records within, for what
// is done to all of them alike.
#pragma once

#include <cstddef>
#include <string_view>
#include <typeindex>
#include <vector>

struct RecordField {
    std::string_view name;
    size_t offset;
    std::type_index type; // of an element, where it is an array; char for a text
    size_t width;         // of an element
    size_t count;
};

// None for what is no record.
const std::vector<RecordField> &fields_of(std::type_index record);
