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

std::string complaint(const std::string &value, const TimeOfDay &)
{
    const auto below = [&](size_t at, std::string_view first_beyond) {
        return std::string_view(value).substr(at, 2) < first_beyond && value[at + 1] <= '9';
    };
    const bool right = value.size() == 5 && value[2] == ':' &&
                       value.find_first_not_of("0123456789:") == std::string::npos &&
                       below(0, "24") && below(3, "60");
    return right ? "" : in_quotes(value) + " is no time like \"04:30\"";
}

std::string complaint(const std::string &value, const DaysOfWeek &)
{
    bool right = value.size() % 2 == 1;
    for (size_t at = 0; at < value.size(); ++at) {
        const bool is_day = value[at] >= '1' && value[at] <= '7';
        right = right && (at % 2 == 0 ? is_day && value.find(value[at]) == at : value[at] == ',');
    }
    return right ? "" : in_quotes(value) + " is no list of days like \"1,3,7\"";
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

bool is_lan_mask(uint32_t mask)
{
    const uint32_t host_bits = ~mask;
    return (host_bits & (host_bits + 1)) == 0 && host_bits >= 3 && host_bits <= 0xffffff;
}

std::string ipv4_text(uint32_t address)
{
    const in_addr network_order = {htonl(address)};
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &network_order, text, sizeof(text));
    return text;
}

} // namespace simulated_gateway
