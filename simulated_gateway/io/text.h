// SPDX-License-Identifier: MIT
// Texts for people: one-line errors, printable text, and suggestions for misspelled names.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace simulated_gateway {

// Whether the text is UTF-8 without control characters.
bool is_plain(std::string_view text);

// The text with control characters, those that change the writing direction, those without width
// and bytes that are not UTF-8 written as \n or \x1b, so that it stays on one line and can neither
// control a terminal nor look like another text.
std::string printable(std::string_view text);

// Why external input is invalid: one printable line that says where and what.
class Error : public std::runtime_error {
  public:
    explicit Error(const std::string &text) : std::runtime_error(printable(text)) {}
};

// The same in double quotes; quotes within are escaped.
std::string in_quotes(std::string_view text);

// The text without an incomplete character at its end, as a cut after a number of bytes leaves it.
// Anything else that is not UTF-8 stays.
std::string_view whole_characters(std::string_view text);

// "; did you mean NAME?" with the candidate that differs from the name in the fewest characters;
// empty if none is similar.
std::string did_you_mean(std::string_view name, std::span<const std::string_view> candidates);

} // namespace simulated_gateway
