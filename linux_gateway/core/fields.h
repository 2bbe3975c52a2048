// SPDX-License-Identifier: MIT
// The fields of records: reading their values and writing them.
#pragma once

#include "system/mac.h"

#include <concepts>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace linux_gateway {

// Writes a text into a field, truncated to its width after a complete character. An empty text is
// written as "NULL", which is what a field without a value contains.
void put_text(std::span<char> field, std::string_view text);

template <size_t width> void put(char (&field)[width], std::string_view text)
{
    put_text(field, text);
}
// A number, or a flag as "1" or "0".
template <size_t width, std::integral Number> void put(char (&field)[width], Number value)
{
    put_text(field, std::to_string(static_cast<int64_t>(value)));
}

// The text in a field: not read beyond the field, and without the incomplete character that
// truncation by the plug-in may have left at its end. "NULL" is the empty text.
std::string taken_text(std::span<const char> field);

template <size_t width> std::string taken(const char (&field)[width])
{
    return taken_text(field);
}

// The value of a text from a client. Each throws an Error that begins with the name if the text is
// none.
bool flag_of(const char *name, const std::string &text);
int64_t number_of(const char *name, const std::string &text);
Mac required_mac(const char *name, const std::string &text);

} // namespace linux_gateway
