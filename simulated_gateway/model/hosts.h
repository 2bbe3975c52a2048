// SPDX-License-Identifier: MIT
// The devices that are attached to the routers.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>

namespace simulated_gateway {

constexpr auto kHostKinds =
    one_of("Computer", "Phone", "Tablet", "TV", "Console", "Camera", "Printer", "Speaker", "Other");
constexpr Range kRateLimits = {1, 10'000'000, Presence::kOptional};

// Eight child routers with the most stations they can report, and those of the main router.
constexpr size_t kMostHosts = 1024;

struct Host {
    std::string name;
    std::string mac;
    std::string ip;
    std::string kind;
    std::string maker;
    std::string os;
    std::string os_version;
    std::string alias; // name set by the user
    bool online = false;
    std::string away_from; // time of day, on some days of the week
    std::string away_until;
    std::string away_days;
    int64_t presence_percent = 0; // of the hours, at random; 0 for always
    std::string router;           // MAC address of the router that it is attached to
    int64_t ssid = 0;             // number of the SSID; 0 for a cable
    int64_t signal_dbm = 0;       // only for a radio link
    bool roams = false;           // moves from router to router by day
    bool blocked = false;         // by the user
    int64_t down_limit_kbps = 0;  // 0 for no limit
    bool address_bound = false;   // the DHCP server reserves the address for it

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("name", self.name, Text{sizeof(AdBaseInfo::Name)});
        visit.field("mac", self.mac, Mac{});
        visit.field("ip", self.ip, Ipv4{optional});
        visit.field("kind", self.kind, kHostKinds);
        visit.field("maker", self.maker, Text{sizeof(AdBaseInfo::DevFactory), optional});
        visit.field("os", self.os, Text{sizeof(AdBaseInfo::OS), optional});
        visit.field("os_version", self.os_version, Text{sizeof(AdBaseInfo::Version), optional});
        visit.field("alias", self.alias, Text{sizeof(AdBaseInfo::ByName), optional});
        visit.field("online", self.online, Flag{});
        visit.field("away_from", self.away_from, TimeOfDay{optional});
        visit.field("away_until", self.away_until, TimeOfDay{optional});
        visit.field("away_days", self.away_days, DaysOfWeek{optional});
        visit.field("presence_percent", self.presence_percent, Range{1, 99, optional});
        visit.field("router", self.router, Mac{});
        visit.field("ssid", self.ssid, Range{1, 8, optional});
        visit.field("signal_dbm", self.signal_dbm, Range{-110, -1, optional});
        visit.field("roams", self.roams, Flag{optional});
        visit.field("blocked", self.blocked, Flag{optional});
        visit.field("down_limit_kbps", self.down_limit_kbps, kRateLimits);
        visit.field("address_bound", self.address_bound, Flag{optional});
    }
};

// A host that the user has removed from the list. It is listed again when it reattaches.
struct RemovedHost {
    Host host;
    int64_t time = 0; // when it was removed, in seconds since 1970

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.object("host", self.host);
        visit.field("time", self.time, Range{0, INT64_MAX});
    }
};

} // namespace simulated_gateway
