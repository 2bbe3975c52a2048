// SPDX-License-Identifier: MIT
// The WAN connections.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>

namespace simulated_gateway {

// The last three are cleared by a reconnect; a cable has to be plugged in by hand.
constexpr char kCableFault[] = "LINK_DOWN";
constexpr char kAddressFault[] = "NO_ADDRESS";
constexpr auto kWanFaults = one_of(kCableFault, kAddressFault, "AUTH_FAILED", "DNS_FAILED");

constexpr char kPppoeMode[] = "PPPoE";
constexpr char kStaticMode[] = "Static";
constexpr auto kWanModes = one_of("DHCP", kPppoeMode, kStaticMode);
constexpr char kInternetService[] = "INTERNET";

struct Wan {
    std::string name;
    std::string interface;
    std::string services;
    bool bridged = false; // forwards the hosts' traffic and has no addresses
    std::string mode;
    bool connected = false;
    std::string fault; // why it is not connected
    std::string ip;
    std::string subnet_mask;
    std::string gateway;
    std::string primary_dns;
    std::string secondary_dns;
    std::string ipv6_address;
    std::string ipv6_prefix; // for the LAN
    int64_t ipv6_prefix_length = 0;
    std::string ipv6_gateway;
    std::string ipv6_primary_dns;
    std::string ipv6_secondary_dns;
    std::string pppoe_account;
    std::string pppoe_password;
    std::string pppoe_service;
    bool nat = false;
    bool qos = false;
    int64_t vlan_id = 0; // 0 for untagged frames
    int64_t vlan_priority = 0;

    bool operator==(const Wan &) const = default;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("name", self.name, Text{sizeof(WanInfo::WANName)});
        visit.field("interface", self.interface, Text{sizeof(WanInfo::IFNAME)});
        visit.field("services", self.services, ServiceList{});
        visit.field("bridged", self.bridged, Flag{optional});
        visit.field("mode", self.mode, or_none(kWanModes));
        visit.field("connected", self.connected, Flag{});
        visit.field("fault", self.fault, or_none(kWanFaults));
        visit.field("ip", self.ip, Ipv4{optional});
        visit.field("subnet_mask", self.subnet_mask, Ipv4{optional});
        visit.field("gateway", self.gateway, Ipv4{optional});
        visit.field("primary_dns", self.primary_dns, Ipv4{optional});
        visit.field("secondary_dns", self.secondary_dns, Ipv4{optional});
        visit.field("ipv6_address", self.ipv6_address, Ipv6{optional});
        visit.field("ipv6_prefix", self.ipv6_prefix, Ipv6{optional});
        visit.field("ipv6_prefix_length", self.ipv6_prefix_length, Range{1, 128, optional});
        visit.field("ipv6_gateway", self.ipv6_gateway, Ipv6{optional});
        visit.field("ipv6_primary_dns", self.ipv6_primary_dns, Ipv6{optional});
        visit.field("ipv6_secondary_dns", self.ipv6_secondary_dns, Ipv6{optional});
        visit.field("pppoe_account", self.pppoe_account, Text{64, optional});
        visit.field("pppoe_password", self.pppoe_password, Text{64, optional});
        visit.field("pppoe_service", self.pppoe_service, Text{64, optional});
        visit.field("nat", self.nat, Flag{optional});
        visit.field("qos", self.qos, Flag{optional});
        visit.field("vlan_id", self.vlan_id, Range{1, 4094, optional});
        visit.field("vlan_priority", self.vlan_priority, Range{1, 7, optional});
    }
};

// Reconnects. Has no effect while the cable is unplugged, or if the home has no addresses for it.
void reconnect(Wan &wan);

// "Connected" or "Disconnected".
const char *connection_state(const Wan &wan);

} // namespace simulated_gateway
