// What a field of the model may hold. A rule stands in the description of its field (model.h);
// complaint() says what is wrong with a value, or nothing.
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

// An optional field may be left out; it then has no value (empty, 0, false).
enum class Presence { kRequired, kOptional };

// A text that fits a record's field of so many bytes, its NUL included.
struct Text {
    size_t width;
    Presence presence = Presence::kRequired;
};

// A MAC address in the one form of the model, such as 3C:6A:D2:10:4F:20.
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

// What a WAN connection is used for, each at most once, such as TR069,VOIP.
struct ServiceList {
    Presence presence = Presence::kRequired;
};

// A whole number from least to most.
struct Range {
    int64_t least;
    int64_t most;
    Presence presence = Presence::kRequired;
};

// A truth value.
struct Flag {
    Presence presence = Presence::kRequired;
};

// A time of the day, such as 04:30.
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

// The same rule for a field that may be left out.
template <class Rule> constexpr Rule or_none(Rule rule)
{
    rule.presence = Presence::kOptional;
    return rule;
}

std::string complaint(const std::string &value, const Text &rule);
std::string complaint(const std::string &value, const Mac &rule);
std::string complaint(const std::string &value, const Ipv4 &rule);
std::string complaint(const std::string &value, const Ipv6 &rule);
std::string complaint(const std::string &value, const ServiceList &rule);
std::string complaint(const std::string &value, const TimeOfDay &rule);
std::string complaint(const std::string &value, const DaysOfWeek &rule);
std::string complaint(int64_t value, const Range &rule);
std::string complaint(bool value, const Flag &rule);

inline std::string shown(int64_t value)
{
    return std::to_string(value);
}
inline std::string shown(std::string_view value)
{
    return in_quotes(value);
}

template <class Value, class Allowed, size_t count>
std::string complaint(const Value &value, const OneOf<Allowed, count> &rule)
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

// The address as a number; nothing for a text that is no address.
std::optional<uint32_t> parse_ipv4(const std::string &text);
std::string ipv4_text(uint32_t address);

// From a /8 to a /30: a shorter mask is that of no LAN, a longer one leaves no room for a host.
bool is_lan_mask(uint32_t mask);

// Of leading ones, at least one, as in 255.255.255.255.
bool is_mask(uint32_t mask);

// The parts of a text that commas separate.
std::vector<std::string> split_at_commas(std::string_view text);

// A MAC address in the form of the model, from one in letters of any case, with ':', with '-' or
// with nothing between its bytes; nothing for a text that is no MAC address.
std::optional<std::string> parse_mac(std::string_view text);

} // namespace simulated_gateway
