// SPDX-License-Identifier: MIT
// The names of the main router's ports.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

constexpr char kWanPort[] = "WAN";

// The name of a LAN port, by number from 1.
std::string lan_port(int64_t number);

// All ports: the WAN port, the LAN ports, and the radios by band.
std::vector<std::string> all_ports(const Home &home);

// What can be bound to a WAN connection: the LAN ports and the SSIDs.
std::vector<std::string> bindable_ports(const Home &home);

} // namespace simulated_gateway
