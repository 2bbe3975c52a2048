// SPDX-License-Identifier: MIT
// What users have set. It is stored in the state file; the rules in the kernel are derived from it.
#pragma once

#include "enforcement/rules.h"
#include "system/mac.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux_gateway {

// The settings of a host. One without any is not stored.
struct HostSettings {
    std::string alias;
    std::string kind;
    bool blocked = false;
    int64_t down_limit_kbps = 0; // 0 for none

    bool operator==(const HostSettings &) const = default;
};

// A period as a client sets it; a newly added one has empty texts.
struct ProtectPeriod {
    bool enabled = false;
    std::string start; // HH:MM
    std::string end;
    std::string days; // 1 (Monday) to 7, without separators

    bool operator==(const ProtectPeriod &) const = default;
};

// An entry of the table of parental control. Its number does not change; its periods are numbered
// from 1, by position.
struct GreenHost {
    Mac mac;
    std::string name;
    bool notify = false;
    bool is_protected = false; // its periods are in force
    std::vector<ProtectPeriod> periods;

    bool operator==(const GreenHost &) const = default;
};

struct State {
    std::string name; // of the gateway; empty: the machine's host name
    std::map<Mac, HostSettings> hosts;
    bool green_net = false;                   // the switch of parental control
    bool access_restricted = false;           // the switch of access restriction
    std::map<int32_t, GreenHost> green_hosts; // by number, from 1 to GREENNET_MAX_HOSTS

    bool operator==(const State &) const = default;
};

constexpr size_t kMostHostSettings = 1024;
constexpr size_t kMostProtectPeriods = 16; // of an entry
constexpr int64_t kMostKbps = 10'000'000;

// Minutes since midnight; nothing unless it is HH:MM.
std::optional<int> minute_of(std::string_view time);

// The number of the entry for the MAC address; 0 if there is none.
int32_t green_number_of(const State &state, const Mac &mac);
// Whether a host is under parental control.
bool is_protected(const State &state, const Mac &mac);
// The rules that follow from the state.
Rules rules_of(const State &state, const std::string &lan_bridge,
               const std::optional<Mac> &management_host);

// As the state file has it. read_state() throws an Error that names the first wrong value.
std::string to_json(const State &state);
State read_state(const std::string &json);

} // namespace linux_gateway
