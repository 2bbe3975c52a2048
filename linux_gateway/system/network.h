// SPDX-License-Identifier: MIT
// What the machine's network looks like at one moment.
#pragma once

#include "system/mac.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace linux_gateway {

struct Address {
    std::string text;
    int prefix_length = 0;
    bool is_dynamic = false;     // has a lifetime
    int64_t created_seconds = 0; // since the machine was started
};

// A network interface.
struct Link {
    int index = 0;
    int master = 0; // index of its bridge
    std::string name;
    std::string kind; // "bridge", "veth" and so on; empty for hardware
    Mac mac;
    bool is_up = false; // with a carrier
    bool is_point_to_point = false;
    bool is_wireless = false;
    uint64_t received_bytes = 0;
    uint64_t sent_bytes = 0;
    uint64_t received_packets = 0;
    uint64_t sent_packets = 0;
    std::vector<Address> ipv4;
    std::vector<Address> ipv6; // without link-local ones
};

struct Host {
    Mac mac;
    std::string name; // empty if it gives none
    std::string ipv4;
    std::vector<std::string> ipv6;
    std::string port; // interface of the bridge; empty while it is offline
    bool is_wireless = false;
    bool is_online = false;
    bool shares_port = false; // with other hosts
    bool has_lease = false;   // so its IPv4 address is from the DHCP server
    bool has_reserved_address = false;
    int64_t online_since = 0; // seconds since 1970; 0 while it is offline
};

struct Network {
    Link bridge;
    std::vector<Link> ports; // of the bridge
    std::string wan_name;    // empty if none has been named or found
    std::optional<Link> wan;
    std::string gateway_ipv4; // of the default route
    std::string gateway_ipv6;
    bool has_ipv4_route = false; // a default route over the WAN port
    bool has_ipv6_route = false;
    bool is_route_by_dhcp = false;
    std::vector<Host> hosts; // their order stays while they are there

    // Whether the WAN port has a carrier, an address and a default route.
    bool is_wan_connected() const;
    const Host *host(const Mac &mac) const;
};

} // namespace linux_gateway
