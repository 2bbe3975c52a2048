// Texts for people: errors of one line, texts made printable, the name that was probably meant.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace simulated_gateway {

// Whether the text is UTF-8 without control characters.
bool is_plain(std::string_view text);

// The text with control characters, those that turn the direction of writing, those without a width
// and bytes that are no UTF-8 written as \n or \x1b, so that it stays on one line and can neither
// steer a terminal nor look like another text.
std::string printable(std::string_view text);

// Why something that came from outside does not hold: one printable line that says where and what.
class Error : public std::runtime_error {
  public:
    explicit Error(const std::string &text) : std::runtime_error(printable(text)) {}
};

// The same in double quotes, which are escaped within.
std::string in_quotes(std::string_view text);

// The text without the part of a letter at its end: what is left of a longer text that was cut by
// bytes. Whatever else is no UTF-8 stays.
std::string_view whole_letters(std::string_view text);

// "; did you mean NAME?" with the candidate that differs from the name in the fewest letters; empty
// when not even that one is like it.
std::string did_you_mean(std::string_view name, std::span<const std::string_view> candidates);

} // namespace simulated_gateway
