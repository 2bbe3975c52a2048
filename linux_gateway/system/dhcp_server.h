// SPDX-License-Identifier: MIT
// The configuration of dnsmasq, as far as it is reported.
#pragma once

#include "system/mac.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace linux_gateway {

struct DhcpServer {
    struct Range {
        std::string start;
        std::string end;
    };

    std::vector<Range> ranges; // of IPv4 addresses
    std::string router;        // address that it hands out; empty: its own
    std::string lease_file;
    std::set<Mac> reserved_hosts; // with a fixed address

    // The first range that begins in the network; null if there is none.
    const Range *range_in(const std::string &address, int prefix_length) const;
};

// Adds what a text of dnsmasq's configuration says. Returns the files and folders that it names.
std::vector<std::string> add_dhcp_settings(DhcpServer &server, std::string_view text);
// Reads files and folders, and what they name.
DhcpServer read_dhcp_server(const std::vector<std::string> &paths);

// Whether a program on this machine receives DHCP requests.
bool is_dhcp_server_running();

// "255.255.255.0" for 24.
std::string mask_of(int prefix_length);

} // namespace linux_gateway
