// SPDX-License-Identifier: MIT
#include "model/rules.h"

#include <algorithm>
#include <arpa/inet.h>
#include <set>
#include <utf8.h>

namespace simulated_gateway {

std::string validation_error(const std::string &value, const Text &rule)
{
    if (value.empty()) {
        return "is empty";
    }
    if (value.size() >= rule.width) {
        return "is longer than " + std::to_string(rule.width - 1) + " bytes";
    }
    // Also rejects what a C string cannot contain, and what JSON would not preserve.
    if (!is_plain(value)) {
        return "contains control characters or is not UTF-8";
    }
    return {};
}

std::string validation_error(const std::string &value, const Mac &)
{
    constexpr std::string_view form = "xx:xx:xx:xx:xx:xx";
    const bool right = std::ranges::equal(value, form, [](char letter, char expected) {
        const bool digit = (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F');
        return expected == 'x' ? digit : letter == expected;
    });
    return right ? "" : in_quotes(value) + " is not a MAC address like \"3C:6A:D2:10:4F:20\"";
}

std::string validation_error(const std::string &value, const Ipv4 &)
{
    return parse_ipv4(value) ? "" : in_quotes(value) + " is not an IPv4 address";
}

std::string validation_error(const std::string &value, const Ipv6 &)
{
    in6_addr address = {};
    const bool right =
        value.find('\0') == std::string::npos && inet_pton(AF_INET6, value.c_str(), &address) == 1;
    return right ? "" : in_quotes(value) + " is not an IPv6 address";
}

std::string validation_error(const std::string &value, const ServiceList &)
{
    std::set<std::string> services;
    for (const std::string &service : split_at_commas(value)) {
        std::string wrong =
            validation_error(service, one_of("INTERNET", "IPTV", "TR069", "VOIP", "OTHER"));
        if (!wrong.empty()) {
            return wrong;
        }
        if (!services.insert(service).second) {
            return in_quotes(value) + " names " + service + " twice";
        }
    }
    return {};
}

std::string validation_error(const std::string &value, const TimeOfDay &)
{
    const auto below = [&](size_t at, std::string_view first_beyond) {
        return std::string_view(value).substr(at, 2) < first_beyond && value[at + 1] <= '9';
    };
    const bool right = value.size() == 5 && value[2] == ':' &&
                       value.find_first_not_of("0123456789:") == std::string::npos &&
                       below(0, "24") && below(3, "60");
    return right ? "" : in_quotes(value) + " is not a time like \"04:30\"";
}

std::string validation_error(const std::string &value, const DaysOfWeek &)
{
    bool right = value.size() % 2 == 1;
    for (size_t at = 0; at < value.size(); ++at) {
        const bool is_day = value[at] >= '1' && value[at] <= '7';
        right = right && (at % 2 == 0 ? is_day && value.find(value[at]) == at : value[at] == ',');
    }
    return right ? "" : in_quotes(value) + " is not a list of days like \"1,3,7\"";
}

std::string validation_error(int64_t value, const Range &rule)
{
    if (value >= rule.least && value <= rule.most) {
        return {};
    }
    return std::to_string(value) + " is not within " + std::to_string(rule.least) + " to " +
           std::to_string(rule.most);
}

std::string validation_error(bool, const Flag &)
{
    return {};
}

std::optional<uint32_t> parse_ipv4(const std::string &text)
{
    in_addr address = {};
    // The parser stops at a NUL, which a JSON string may contain.
    if (text.find('\0') != std::string::npos || inet_pton(AF_INET, text.c_str(), &address) != 1) {
        return std::nullopt;
    }
    return ntohl(address.s_addr);
}

bool is_mask(uint32_t mask)
{
    const uint32_t host_bits = ~mask;
    return mask != 0 && (host_bits & (host_bits + 1)) == 0;
}

bool is_lan_mask(uint32_t mask)
{
    const uint32_t host_bits = ~mask;
    return is_mask(mask) && host_bits >= 3 && host_bits <= 0xffffff;
}

std::string ipv4_text(uint32_t address)
{
    const in_addr network_order = {htonl(address)};
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &network_order, text, sizeof(text));
    return text;
}

std::vector<std::string> split_at_commas(std::string_view text)
{
    std::vector<std::string> parts;
    size_t start = 0;
    for (size_t comma = 0; comma != std::string_view::npos; start = comma + 1) {
        comma = text.find(',', start);
        parts.emplace_back(text.substr(start, comma - start));
    }
    return parts;
}

std::optional<std::string> parse_mac(std::string_view text)
{
    const size_t step = text.size() == 12 ? 2 : 3;
    const char separator = text.size() == 17 ? text[2] : ':';
    if ((text.size() != 12 && text.size() != 17) || (separator != ':' && separator != '-')) {
        return std::nullopt;
    }
    std::string mac;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool between = at % step == 2;
        if (between && text[at] != separator) {
            return std::nullopt;
        }
        if (at != 0 && at % step == 0) {
            mac += ':';
        }
        if (!between) {
            const char letter = text[at];
            mac += letter >= 'a' && letter <= 'f' ? static_cast<char>(letter - 'a' + 'A') : letter;
        }
    }
    return validation_error(mac, Mac{}).empty() ? std::optional(mac) : std::nullopt;
}

} // namespace simulated_gateway
