// SPDX-License-Identifier: MIT
// Reads the state of the network from the kernel and from the DHCP server.
#pragma once

#include "system/network.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace linux_gateway {

// Where to look.
struct NetworkSources {
    std::string lan_bridge;
    std::string wan_port; // empty: the one of the default route
    std::string lease_file;
    std::set<Mac> known_hosts;    // listed even when nothing is seen of them
    std::set<Mac> reserved_hosts; // the DHCP server reserves an address for them
};

// The interfaces of the machine with their addresses. Throws an Error.
std::vector<Link> read_interfaces();

class NetworkReader {
  public:
    // Throws an Error.
    Network read(const NetworkSources &sources);

  private:
    struct Seen {
        uint64_t order = 0;
        int64_t online_since = 0; // seconds since 1970; 0 while it is offline
    };

    std::string wan_port_;     // found last
    std::map<Mac, Seen> seen_; // the hosts of the last snapshot
    uint64_t next_order_ = 0;
};

} // namespace linux_gateway
