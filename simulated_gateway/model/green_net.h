// SPDX-License-Identifier: MIT
// Parental control: which devices are protected, and when.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulated_gateway {

constexpr size_t kMostProtectPeriods = 16;

// A time in which a protected device has no access. A newly added period is empty.
struct ProtectPeriod {
    bool enabled = false;
    std::string start;
    std::string end;
    std::string days;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("enabled", self.enabled, Flag{});
        visit.field("start", self.start, TimeOfDay{optional});
        visit.field("end", self.end, TimeOfDay{optional});
        visit.field("days", self.days, DaysOfWeek{optional});
    }
};

// An entry of the table. Its number does not change; its periods are numbered from 1, by position.
struct GreenHost {
    int64_t number = 0;
    std::string mac;
    std::string name; // set by the user
    bool notify = false;
    bool is_protected = false; // its periods are in force
    std::vector<ProtectPeriod> periods;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("number", self.number, Range{1, GREENNET_MAX_HOSTS});
        visit.field("mac", self.mac, Mac{});
        visit.field("name", self.name, Text{sizeof(GreenHostInfo::Name), Presence::kOptional});
        visit.field("notify", self.notify, Flag{});
        visit.field("protected", self.is_protected, Flag{});
        visit.list("periods", self.periods, kMostProtectPeriods);
    }
};

struct GreenNet {
    bool enabled = false;
    bool access_restricted = false; // the main switch of access restriction
    std::vector<GreenHost> hosts;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("access_restricted", self.access_restricted, Flag{});
        visit.list("hosts", self.hosts, GREENNET_MAX_HOSTS);
    }
};

} // namespace simulated_gateway
