// SPDX-License-Identifier: MIT
// The fields of every record of the device interface, except pointers and nested records, for code
// that treats all fields alike.
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

// Empty if it is not a record.
const std::vector<RecordField> &fields_of(std::type_index record);
