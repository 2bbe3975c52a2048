// SPDX-License-Identifier: MIT
#include "model/traffic_type.h"

#include <charconv>

namespace simulated_gateway {
namespace {

std::optional<int64_t> parse_number(const std::string &text, int64_t least, int64_t most)
{
    int64_t number = 0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    const bool right = error == std::errc() && rest == end && number >= least && number <= most;
    return right ? std::optional(number) : std::nullopt;
}

std::optional<int64_t> parse_mac_number(const std::string &text)
{
    const std::optional<std::string> mac = parse_mac(text);
    int64_t number = 0;
    for (const char digit : mac.value_or("")) {
        if (digit != ':') {
            number = number << 4 | (digit <= '9' ? digit - '0' : digit - 'A' + 10);
        }
    }
    return mac ? std::optional(number) : std::nullopt;
}

// The value as a comparable number; nothing for a text that is not a value of the type.
std::optional<int64_t> value_of(const std::string &type, const std::string &text)
{
    if (type == "SMAC") {
        return parse_mac_number(text);
    }
    if (type == "SIP" || type == "DIP") {
        return parse_ipv4(text);
    }
    if (type == "SPORT" || type == "DPORT") {
        return parse_number(text, 1, 65'535);
    }
    return parse_number(text, 0, type == "DSCP" ? 63 : 7);
}

} // namespace

std::string validation_error(const Traffic &traffic)
{
    const std::optional<int64_t> min = value_of(traffic.type, traffic.min);
    const std::optional<int64_t> max = value_of(traffic.type, traffic.max);
    if (!min || !max) {
        return in_quotes(min ? traffic.max : traffic.min) + " is not a value of " + traffic.type;
    }
    return *max < *min ? traffic.max + " is below " + traffic.min : "";
}

} // namespace simulated_gateway
