// SPDX-License-Identifier: MIT
#include "core/fields.h"

#include "system/error.h"
#include "system/text.h"

#include <algorithm>

namespace linux_gateway {

constexpr std::string_view kNoValue = "NULL";

void put_text(std::span<char> field, std::string_view text)
{
    const std::string_view written =
        whole_characters((text.empty() ? kNoValue : text).substr(0, field.size() - 1));
    std::ranges::fill(field, '\0');
    std::ranges::copy(written, field.begin());
}

std::string taken_text(std::span<const char> field)
{
    const std::string_view text =
        whole_characters({field.data(), strnlen(field.data(), field.size())});
    return text == kNoValue ? "" : std::string(text);
}

bool flag_of(const char *name, const std::string &text)
{
    if (text != "0" && text != "1") {
        throw Error(std::string(name) + ": " + in_quotes(text) + " is neither 0 nor 1");
    }
    return text == "1";
}

int64_t number_of(const char *name, const std::string &text)
{
    const std::optional<int64_t> number = number_in<int64_t>(text);
    if (!number) {
        throw Error(std::string(name) + ": " + in_quotes(text) + " is not a number");
    }
    return *number;
}

Mac required_mac(const char *name, const std::string &text)
{
    const std::optional<Mac> mac = parse_mac(text);
    if (!mac) {
        throw Error(std::string(name) + ": " + in_quotes(text) + " is not a MAC address");
    }
    return *mac;
}

} // namespace linux_gateway
