// SPDX-License-Identifier: MIT
#include "core/fields.h"

#include <algorithm>
#include <charconv>

namespace simulated_gateway {

void refuse_for(const char *name, const std::string &error)
{
    if (!error.empty()) {
        throw Error(std::string(name) + " " + error);
    }
}

bool flag_of(const char *name, const std::string &text)
{
    refuse_for(name, validation_error(text, one_of("0", "1")));
    return text == "1";
}

int64_t number_of(const char *name, const std::string &text)
{
    int64_t number = 0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) {
        throw Error(std::string(name) + " is not a number");
    }
    return number;
}

void put_text(std::span<char> field, std::string_view text)
{
    std::string_view fitting = text.empty() ? kNoValue : text;
    if (fitting.size() >= field.size()) {
        fitting = whole_characters(fitting.substr(0, field.size() - 1));
    }
    std::ranges::copy(fitting, field.begin());
    field[fitting.size()] = '\0';
}

void put_number(std::span<char> field, int64_t number)
{
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    put_text(field, {digits, end});
}

} // namespace simulated_gateway
