// SPDX-License-Identifier: MIT
// The home of the gateway, and its current state.
//
// Each struct describes its fields once, in describe(): name, member, rule. Reading a scenario,
// reading and writing the state file and checking values all use that description.
#pragma once

#include "model/firmware.h"
#include "model/green_net.h"
#include "model/hosts.h"
#include "model/mesh.h"
#include "model/rules.h"
#include "model/services.h"
#include "model/settings.h"
#include "model/timed_cache.h"
#include "model/wan.h"
#include "model/wifi.h"
#include "smart_router_service/device_access.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace simulated_gateway {

// What the router is and what it supports.
struct Identity {
    std::string mac;
    std::string device_type;
    std::string model;
    std::string software_version;
    std::string hardware_version;
    std::string firmware_date;
    std::string area_code;
    std::string product_class;
    std::string cpu_class;
    std::string kind;
    std::string second_kind;
    std::string capability;
    std::string card;
    std::string uplink;
    std::string card_number;
    bool ipv6 = false;
    bool vlan_binding = false;
    bool led = false;
    bool nfc = false;
    std::string vlan_capability;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("mac", self.mac, Mac{});
        visit.field("device_type", self.device_type, Text{sizeof(SnInfo::DeviceType)});
        visit.field("model", self.model, Text{32, optional});
        visit.field("software_version", self.software_version, Text{sizeof(SystemInfo::SWVersion)});
        visit.field("hardware_version", self.hardware_version, Text{sizeof(SystemInfo::HDVersion)});
        visit.field("firmware_date", self.firmware_date, Text{sizeof(HgBaseInfo::FWDATA)});
        visit.field("area_code", self.area_code, Text{sizeof(HgBaseInfo::AreaCode), optional});
        visit.field("product_class", self.product_class, Text{sizeof(SystemInfo::ProductCLass)});
        visit.field("cpu_class", self.cpu_class, Text{sizeof(SystemInfo::CPUClass)});
        visit.field("kind", self.kind, Text{sizeof(SystemInfo::DEVType)});
        visit.field("second_kind", self.second_kind, Text{sizeof(SystemInfo::DEVType1), optional});
        visit.field("capability", self.capability, Text{sizeof(SystemInfo::Capability), optional});
        visit.field("card", self.card, Text{sizeof(SystemInfo::Card), optional});
        visit.field("uplink", self.uplink, Text{sizeof(SystemInfo::UPLink), optional});
        visit.field("card_number", self.card_number, Text{sizeof(SystemInfo::Cardno), optional});
        visit.field("ipv6", self.ipv6, Flag{});
        visit.field("vlan_binding", self.vlan_binding, Flag{});
        visit.field("led", self.led, Flag{});
        visit.field("nfc", self.nfc, Flag{});
        visit.field("vlan_capability", self.vlan_capability,
                    Text{sizeof(SystemInfo::VLANCapability), optional});
    }
};

struct DhcpPool {
    bool enabled = false;
    std::string start;
    std::string end;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("start", self.start, Ipv4{});
        visit.field("end", self.end, Ipv4{});
    }
};

struct Lan {
    std::string ip;
    std::string subnet_mask;
    DhcpPool dhcp_pool;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("ip", self.ip, Ipv4{});
        visit.field("subnet_mask", self.subnet_mask, Ipv4{});
        visit.object("dhcp_pool", self.dhcp_pool);
    }
};

constexpr size_t kMostOtherWans = 7;

// The content of a scenario.
struct Home {
    std::string name; // set by the user
    bool configured = false;
    int64_t hours_behind_utc = 0; // of local time
    bool local_times = false;     // whether the table of attached devices reports local times
    Identity identity;
    Administration administration;
    RebootSchedule reboot_schedule;
    UpdateWindow update_schedule;
    SleepSchedule sleep;
    std::vector<WifiSleepPeriod> wifi_sleep;
    Services services;
    ServiceSwitches service_switches;
    Qos qos;
    Ports ports;
    Line line;
    Leds leds;
    OrdinaryDay ordinary_day;
    Lan lan;
    Wan wan; // the Internet connection
    std::vector<Wan> other_wans;
    std::vector<Radio> radios;
    std::vector<Ssid> ssids;
    std::vector<GuestNetwork> guest_networks;
    Roaming roaming;
    Repeater repeater;
    std::vector<Neighbour> neighbours;
    Mesh mesh;
    MeshControl mesh_control;
    std::vector<Host> hosts;
    GreenNet green_net;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("name", self.name, Text{sizeof(HgBaseInfo::Name)});
        visit.field("configured", self.configured, Flag{});
        visit.field("hours_behind_utc", self.hours_behind_utc, Range{-14, 12, Presence::kOptional});
        visit.field("local_times", self.local_times, Flag{Presence::kOptional});
        visit.object("identity", self.identity);
        visit.object("administration", self.administration);
        visit.object("reboot_schedule", self.reboot_schedule);
        visit.object("update_schedule", self.update_schedule);
        visit.object("sleep", self.sleep);
        visit.list("wifi_sleep", self.wifi_sleep, kMostWifiSleepPeriods);
        visit.object("services", self.services);
        visit.object("service_switches", self.service_switches);
        visit.object("qos", self.qos);
        visit.object("ports", self.ports);
        visit.object("line", self.line);
        visit.object("leds", self.leds);
        visit.object("ordinary_day", self.ordinary_day);
        visit.object("lan", self.lan);
        visit.object("wan", self.wan);
        visit.list("other_wans", self.other_wans, kMostOtherWans);
        visit.list("radios", self.radios, 2);
        visit.list("ssids", self.ssids, 8);
        visit.list("guest_networks", self.guest_networks, 2);
        visit.object("roaming", self.roaming);
        visit.object("repeater", self.repeater);
        visit.list("neighbours", self.neighbours, 60);
        visit.object("mesh", self.mesh);
        visit.object("mesh_control", self.mesh_control);
        visit.list("hosts", self.hosts, kMostHosts);
        visit.object("green_net", self.green_net);
    }
};

struct Rates {
    int64_t up_kbps = 0;
    int64_t down_kbps = 0;
};

// All persistent state: the firmware, the home as it is, and its factory state.
struct State {
    std::string scenario;  // name of the scenario that was loaded
    std::string opened_as; // the one that it was opened with, if the host has loaded another since
    int64_t boot_time = 0; // seconds since 1970
    int64_t boot_count = 0;
    int64_t wan_time = 0;          // when the WAN was connected
    int64_t optimization_time = 0; // when resources were last freed; 0 if not since the boot
    int64_t link_speed_time = 0; // when the mesh links were last measured; 0 if not since the boot
    UnderWay under_way;
    PortCounters port_counters;
    Firmware firmware;
    std::vector<RemovedHost> removed_hosts;
    Home home;
    Home factory;
    mutable TimedCache<Rates> total_demand; // of all hosts (simulation/host_activity.cpp)

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("scenario", self.scenario, Text{256});
        visit.field("opened_as", self.opened_as, Text{256, Presence::kOptional});
        visit.field("boot_time", self.boot_time, Range{0, INT64_MAX});
        visit.field("boot_count", self.boot_count, Range{1, INT32_MAX});
        visit.field("wan_time", self.wan_time, Range{0, INT64_MAX});
        visit.field("optimization_time", self.optimization_time,
                    Range{0, INT64_MAX, Presence::kOptional});
        visit.field("link_speed_time", self.link_speed_time,
                    Range{0, INT64_MAX, Presence::kOptional});
        visit.object("under_way", self.under_way);
        visit.object("port_counters", self.port_counters);
        visit.object("firmware", self.firmware);
        visit.list("removed_hosts", self.removed_hosts, kMostHosts);
        visit.object("home", self.home);
        visit.object("factory", self.factory);
    }
};

// Boots the firmware in the next slot.
void start_firmware(State &state);

// The radio of a band; null if there is none.
template <class AnyHome> auto *radio_of(AnyHome &home, const std::string &band)
{
    const auto found = std::ranges::find(home.radios, band, &Radio::band);
    return found != home.radios.end() ? &*found : nullptr;
}

// Switches a network on or off. A radio is on while any of its networks is.
void switch_network(Home &home, Ssid &ssid, bool on);

// Reconnects the WAN to the Internet.
void reconnect(State &state);

} // namespace simulated_gateway
