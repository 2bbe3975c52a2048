// SPDX-License-Identifier: MIT
// The part of the model that the user sets: logins, schedules, services and LEDs. Also the typical
// measured values.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>

namespace simulated_gateway {

// The frequency bands, of radios and of games.
constexpr auto kBands = one_of("2.4GHz", "5GHz");

// The user's administrator account, or the operator's.
constexpr auto kAdminTypes = one_of("1", "2");
// With the administrator's account, or with a separate password.
constexpr auto kWebLoginTypes = one_of("0", "1");

// The administrator's account, and the login to the router's web pages.
struct Administration {
    std::string admin_type;
    std::string admin_name;
    std::string admin_password;
    std::string web_login_type;
    std::string web_login_password;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("admin_type", self.admin_type, kAdminTypes);
        visit.field("admin_name", self.admin_name, Text{sizeof(LoginInfo::Name)});
        visit.field("admin_password", self.admin_password, Text{sizeof(LoginInfo::Password)});
        visit.field("web_login_type", self.web_login_type, kWebLoginTypes);
        visit.field("web_login_password", self.web_login_password,
                    Text{sizeof(LoginInfo::Password)});
    }
};

// When the router restarts automatically.
struct RebootSchedule {
    bool enabled = false;
    std::string time;
    std::string days;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("time", self.time, TimeOfDay{Presence::kOptional});
        visit.field("days", self.days, DaysOfWeek{Presence::kOptional});
    }
};

// When the router, its Wi-Fi and its LEDs sleep.
struct SleepSchedule {
    bool gateway = false;
    bool wifi = false;
    bool leds = false;
    std::string start;
    std::string end;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("gateway", self.gateway, Flag{});
        visit.field("wifi", self.wifi, Flag{});
        visit.field("leds", self.leds, Flag{});
        visit.field("start", self.start, TimeOfDay{Presence::kOptional});
        visit.field("end", self.end, TimeOfDay{Presence::kOptional});
    }
};

// When the router may update itself.
struct UpdateWindow {
    bool enabled = false;
    std::string start;
    std::string end;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("start", self.start, TimeOfDay{Presence::kOptional});
        visit.field("end", self.end, TimeOfDay{Presence::kOptional});
    }
};

// How the router handles the traffic.
struct Services {
    bool firewall = false;
    bool qos_acceleration = false;
    bool game_acceleration = false;
    int64_t game_port = 0;
    std::string game_band;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("firewall", self.firewall, Flag{});
        visit.field("qos_acceleration", self.qos_acceleration, Flag{});
        visit.field("game_acceleration", self.game_acceleration, Flag{});
        visit.field("game_port", self.game_port, Range{1, 8, optional});
        visit.field("game_band", self.game_band, or_none(kBands));
    }
};

constexpr auto kLedColours = one_of("WHITE", "BLUE", "GREEN", "ORANGE", "RED");

struct Leds {
    bool on = false;
    std::string colour;
    int64_t brightness_percent = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("on", self.on, Flag{});
        visit.field("colour", self.colour, kLedColours);
        visit.field("brightness_percent", self.brightness_percent, Range{0, 100});
    }
};

// Typical values: the seed determines how the measurements vary around them.
struct OrdinaryDay {
    int64_t seed = 0;
    int64_t cpu_percent = 0;
    int64_t memory_percent = 0;
    int64_t cpu_celsius = 0;
    int64_t up_kbps = 0;
    int64_t down_kbps = 0;
    int64_t delay_ms = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("seed", self.seed, Range{0, INT32_MAX});
        visit.field("cpu_percent", self.cpu_percent, Range{0, 100});
        visit.field("memory_percent", self.memory_percent, Range{0, 100});
        visit.field("cpu_celsius", self.cpu_celsius, Range{0, 120});
        visit.field("up_kbps", self.up_kbps, Range{0, 10'000'000});
        visit.field("down_kbps", self.down_kbps, Range{0, 10'000'000});
        visit.field("delay_ms", self.delay_ms, Range{1, 10'000});
    }
};

} // namespace simulated_gateway
