// SPDX-License-Identifier: MIT
// The fields of records: reading their values and writing them.
#pragma once

#include "model/rules.h"

#include <concepts>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace simulated_gateway {

// Throws an Error that starts with the name, unless the validation error is empty.
void refuse_for(const char *name, const std::string &error);

// The value of a text. They throw an Error that starts with the name if the text is not such a
// value.
bool flag_of(const char *name, const std::string &text);
int64_t number_of(const char *name, const std::string &text);

// Zeroed memory that the caller frees.
template <class Entry> Entry *allocated(size_t count)
{
    auto *entries = static_cast<Entry *>(std::calloc(count, sizeof(Entry)));
    if (entries == nullptr) {
        throw std::bad_alloc();
    }
    return entries;
}

// The text of a field without a value.
constexpr char kNoValue[] = "NULL";

// Writes a text into a record's field, truncated to its width after a complete character. An empty
// text is written as kNoValue.
void put_text(std::span<char> field, std::string_view text);
template <size_t width> void put(char (&field)[width], std::string_view text)
{
    put_text(field, text);
}
// A number, or a flag as "1" or "0".
void put_number(std::span<char> field, int64_t number);
template <size_t width, std::integral Number> void put(char (&field)[width], Number value)
{
    if constexpr (std::is_same_v<Number, bool>) {
        put_text(field, value ? "1" : "0");
    } else {
        put_number(field, value);
    }
}

// The text in a record's field: not read beyond the field, and without the incomplete character
// that truncation by the plug-in may have left at its end.
template <size_t width> std::string taken(const char (&field)[width])
{
    return std::string(whole_characters({field, strnlen(field, width)}));
}
// The same, and empty for kNoValue, which a query reports for a missing value.
template <size_t width> std::string taken_if_any(const char (&field)[width])
{
    const std::string text = taken(field);
    return text != kNoValue ? text : "";
}
// A text that has to satisfy a rule, and a flag. Their errors start with the field's name.
template <size_t width, class Rule>
std::string taken(const char *name, const char (&field)[width], const Rule &rule)
{
    std::string text = taken(field);
    refuse_for(name, validation_error(text, rule));
    return text;
}
template <size_t width> std::string taken_text(const char *name, const char (&field)[width])
{
    return taken(name, field, Text{width});
}
// A text that an empty value or kNoValue removes.
template <size_t width> std::string taken_or_none(const char *name, const char (&field)[width])
{
    return taken_if_any(field).empty() ? "" : taken_text(name, field);
}
template <size_t width> bool taken_flag(const char *name, const char (&field)[width])
{
    return flag_of(name, taken(field));
}
template <size_t width> int64_t taken_number(const char *name, const char (&field)[width])
{
    return number_of(name, taken(field));
}

// "-1" in a setting means that the value is not changed.
template <size_t width> bool is_given(const char (&field)[width])
{
    return taken(field) != "-1";
}

} // namespace simulated_gateway
