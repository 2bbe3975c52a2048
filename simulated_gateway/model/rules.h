// SPDX-License-Identifier: MIT
// The values that are allowed in a field of the model. The description of a field (model.h) names
// its rule; validation_error() returns what is wrong with a value, or an empty string.
#pragma once

#include "io/text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace simulated_gateway {

// An optional field may be absent; it then has no value (empty, 0, false).
enum class Presence { kRequired, kOptional };

// A text that fits a record's field of the given size, including its NUL.
struct Text {
    size_t width;
    Presence presence = Presence::kRequired;
};

// A MAC address in the model's only notation, such as 3C:6A:D2:10:4F:20.
struct Mac {
    Presence presence = Presence::kRequired;
};

// An IPv4 address, such as 192.168.1.1.
struct Ipv4 {
    Presence presence = Presence::kRequired;
};

// An IPv6 address, such as 2001:db8::1.
struct Ipv6 {
    Presence presence = Presence::kRequired;
};

// The uses of a WAN connection, each at most once, such as TR069,VOIP.
struct ServiceList {
    Presence presence = Presence::kRequired;
};

// An integer from least to most.
struct Range {
    int64_t least;
    int64_t most;
    Presence presence = Presence::kRequired;
};

// A Boolean.
struct Flag {
    Presence presence = Presence::kRequired;
};

// A time of day, such as 04:30.
struct TimeOfDay {
    Presence presence = Presence::kRequired;
};

// Days of the week from 1, Monday, to 7, each at most once, such as 1,3,7.
struct DaysOfWeek {
    Presence presence = Presence::kRequired;
};

// One of a few texts or numbers.
template <class Value, size_t count> struct OneOf {
    std::array<Value, count> values;
    Presence presence = Presence::kRequired;
};

template <class... Values> constexpr auto one_of(Values... values)
{
    return OneOf<std::common_type_t<Values...>, sizeof...(Values)>{{values...}};
}

// The same rule for an optional field.
template <class Rule> constexpr Rule or_none(Rule rule)
{
    rule.presence = Presence::kOptional;
    return rule;
}

std::string validation_error(const std::string &value, const Text &rule);
std::string validation_error(const std::string &value, const Mac &rule);
std::string validation_error(const std::string &value, const Ipv4 &rule);
std::string validation_error(const std::string &value, const Ipv6 &rule);
std::string validation_error(const std::string &value, const ServiceList &rule);
std::string validation_error(const std::string &value, const TimeOfDay &rule);
std::string validation_error(const std::string &value, const DaysOfWeek &rule);
std::string validation_error(int64_t value, const Range &rule);
std::string validation_error(bool value, const Flag &rule);

inline std::string shown(int64_t value)
{
    return std::to_string(value);
}
inline std::string shown(std::string_view value)
{
    return in_quotes(value);
}

template <class Value, class Allowed, size_t count>
std::string validation_error(const Value &value, const OneOf<Allowed, count> &rule)
{
    std::string list;
    for (const Allowed &allowed : rule.values) {
        if (value == allowed) {
            return {};
        }
        list += (list.empty() ? "" : ", ") + shown(allowed);
    }
    return shown(value) + " is none of " + list;
}

// The address as a number; nothing for a text that is not an address.
std::optional<uint32_t> parse_ipv4(const std::string &text);
std::string ipv4_text(uint32_t address);

// From a /8 to a /30: a shorter mask is not used in a LAN, a longer one leaves no room for a host.
bool is_lan_mask(uint32_t mask);

// Contiguous leading ones, at least one, as in 255.255.255.255.
bool is_mask(uint32_t mask);

// The parts of a comma-separated text.
std::vector<std::string> split_at_commas(std::string_view text);

// A MAC address in the model's notation, from one in either case whose bytes are separated by ':',
// by '-' or not at all; nothing for a text that is not a MAC address.
std::optional<std::string> parse_mac(std::string_view text);

} // namespace simulated_gateway
