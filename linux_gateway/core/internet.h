// SPDX-License-Identifier: MIT
// The Internet connection, as several device functions report it.
#pragma once

#include "core/configuration.h"
#include "system/network.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace linux_gateway {

constexpr std::string_view kStaticMode = "Static";

// "Connected" or "Disconnected".
const char *connection_state(bool is_connected);
// DHCP, PPPoE or Static.
std::string_view wan_mode(const Network &network);
// Seconds since it got its address; 0 while it is not connected.
int64_t wan_uptime(const Network &network);

std::vector<std::string> name_servers(const Configuration &configuration);

// The network part of an IPv6 address; empty if there is no address.
std::string ipv6_network(const Address &address);

// The text of the first address; empty if there is none.
std::string first_text(const std::vector<Address> &addresses);
// The first IPv4 address of the bridge. Throws an Error if it has none.
Address lan_address(const Network &network);

} // namespace linux_gateway
