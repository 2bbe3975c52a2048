// SPDX-License-Identifier: MIT
// Texts from outside: host names, lines of files, values of settings.
#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux_gateway {

// The text on one line: without control characters, and with U+FFFD for what is not UTF-8.
std::string printable(std::string_view text);
// The same in double quotes.
std::string in_quotes(std::string_view text);

// The text without an incomplete character at its end, as a cut after a number of bytes leaves it.
std::string_view whole_characters(std::string_view text);

std::string_view trimmed(std::string_view text);
// The parts between the separators; empty ones as well.
std::vector<std::string_view> split(std::string_view text, char separator);
// The parts between spaces and tabs, without empty ones.
std::vector<std::string_view> words_of(std::string_view text);

// The whole text as a decimal number.
template <std::integral Number> std::optional<Number> number_in(std::string_view text)
{
    Number number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && !text.empty() ? std::optional(number)
                                                                : std::nullopt;
}

} // namespace linux_gateway
