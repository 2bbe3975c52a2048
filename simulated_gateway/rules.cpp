#include "rules.h"

#include <algorithm>
#include <arpa/inet.h>
#include <utf8.h>

namespace simulated_gateway {

std::string complaint(const std::string &value, const Text &rule)
{
    if (value.empty()) {
        return "is empty";
    }
    if (value.size() >= rule.width) {
        return "is longer than " + std::to_string(rule.width - 1) + " bytes";
    }
    // Also keeps out what a text in C cannot hold, and what would not survive as JSON.
    if (printable(value) != value) {
        return "holds control characters or is no UTF-8";
    }
    return {};
}

std::string complaint(const std::string &value, const Mac &)
{
    constexpr std::string_view form = "xx:xx:xx:xx:xx:xx";
    const bool right = std::ranges::equal(value, form, [](char letter, char expected) {
        const bool digit = (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F');
        return expected == 'x' ? digit : letter == expected;
    });
    return right ? "" : in_quotes(value) + " is no MAC address like \"3C:6A:D2:10:4F:20\"";
}

std::string complaint(const std::string &value, const Ipv4 &)
{
    return parse_ipv4(value) ? "" : in_quotes(value) + " is no IPv4 address";
}

std::string complaint(int64_t value, const Range &rule)
{
    if (value >= rule.least && value <= rule.most) {
        return {};
    }
    return std::to_string(value) + " is not within " + std::to_string(rule.least) + " to " +
           std::to_string(rule.most);
}

std::string complaint(bool, const Flag &)
{
    return {};
}

std::optional<uint32_t> parse_ipv4(const std::string &text)
{
    in_addr address = {};
    // The parser stops at a NUL, which a text from JSON may hold.
    if (text.find('\0') != std::string::npos || inet_pton(AF_INET, text.c_str(), &address) != 1) {
        return std::nullopt;
    }
    return ntohl(address.s_addr);
}

} // namespace simulated_gateway
