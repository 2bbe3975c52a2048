// SPDX-License-Identifier: MIT
// The Wi-Fi of the home: radios, networks, and neighbouring networks.
#pragma once

#include "model/rules.h"
#include "model/settings.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>

namespace simulated_gateway {

constexpr auto kEncryptions = one_of("OPEN", "WPA2", "WPA3", "WPA2/3");
constexpr char kNoEncryption[] = "OPEN";

constexpr size_t kMostWifiSleepPeriods = 3;

// One of the periods in which only the Wi-Fi sleeps.
struct WifiSleepPeriod {
    bool enabled = false;
    std::string start;
    std::string end;
    std::string days;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("start", self.start, TimeOfDay{});
        visit.field("end", self.end, TimeOfDay{});
        visit.field("days", self.days, DaysOfWeek{});
    }
};

constexpr auto kStandards24 = one_of("11b", "11g", "11n", "11ax");
constexpr auto kStandards5 = one_of("11a", "11n", "11ac", "11ax");

// A radio of the main router.
struct Radio {
    std::string band;
    std::string mac;
    bool enabled = false;
    int64_t channel = 0;
    bool automatic_channel = false; // selected by the radio, not by the user
    int64_t bandwidth_mhz = 0;
    std::string standard; // the newest one; the older ones of its band are included
    bool beamforming = false;
    int64_t power_percent = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("band", self.band, kBands);
        visit.field("mac", self.mac, Mac{});
        visit.field("enabled", self.enabled, Flag{});
        visit.field("channel", self.channel, Range{1, 165});
        visit.field("automatic_channel", self.automatic_channel, Flag{Presence::kOptional});
        visit.field("bandwidth_mhz", self.bandwidth_mhz, one_of(20, 40, 80, 160));
        visit.field("standard", self.standard, Text{sizeof(SsidInfo::Mode)});
        visit.field("beamforming", self.beamforming, Flag{Presence::kOptional});
        visit.field("power_percent", self.power_percent, Range{0, 100});
    }
};

// A wireless network. SSIDs are numbered from 1, by position in the list.
struct Ssid {
    std::string name;
    std::string band;
    bool enabled = false;
    bool hidden = false;
    std::string encryption;
    std::string password;
    int64_t on_since = 0; // in seconds since 1970; 0 if it has been on from the start

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("name", self.name, Text{33});
        visit.field("band", self.band, kBands);
        visit.field("enabled", self.enabled, Flag{});
        visit.field("hidden", self.hidden, Flag{Presence::kOptional});
        visit.field("encryption", self.encryption, kEncryptions);
        visit.field("password", self.password, Text{64, Presence::kOptional});
        visit.field("on_since", self.on_since, Range{0, INT64_MAX, Presence::kOptional});
    }
};

// The guest SSID of one band, and how long it stays on once it is switched on.
struct GuestNetwork {
    int64_t ssid = 0; // number of the SSID
    int64_t days = 0; // as requested, kept to be reported; -1 for none
    int64_t hours = 0;
    int64_t seconds = 0;  // computed from days and hours; -1 for no end
    int64_t end_time = 0; // when it will be switched off, in seconds since 1970

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("ssid", self.ssid, Range{1, 8});
        visit.field("days", self.days, Range{-999'999, 9'999'999});
        visit.field("hours", self.hours, Range{-999'999, 9'999'999});
        visit.field("seconds", self.seconds, Range{-1, UINT32_MAX});
        visit.field("end_time", self.end_time, Range{0, INT64_MAX, Presence::kOptional});
    }
};

// Functions that steer clients to the best radio and keep them connected while they roam.
struct Roaming {
    bool station_control = false;
    bool fast_roaming = false;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("station_control", self.station_control, Flag{});
        visit.field("fast_roaming", self.fast_roaming, Flag{});
    }
};

// The router as a client of a neighbour's network.
struct Repeater {
    bool used_by_another = false; // the repeater is in use by another client
    int64_t neighbour = 0;        // number of the neighbour that it has joined; 0 for none

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("used_by_another", self.used_by_another, Flag{});
        visit.field("neighbour", self.neighbour, Range{1, 60, Presence::kOptional});
    }
};

// A neighbour's wireless network within range of the radios. Neighbours are numbered from 1, by
// position in the list.
struct Neighbour {
    std::string name;
    std::string band;
    int64_t channel = 0;
    int64_t signal_dbm = 0;
    std::string encryption;
    std::string password; // without one the network cannot be joined

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("name", self.name, Text{33, Presence::kOptional});
        visit.field("band", self.band, kBands);
        visit.field("channel", self.channel, Range{1, 165});
        visit.field("signal_dbm", self.signal_dbm, Range{-110, -1});
        visit.field("encryption", self.encryption, kEncryptions);
        visit.field("password", self.password, Text{64, Presence::kOptional});
    }
};

} // namespace simulated_gateway
