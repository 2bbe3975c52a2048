// The names of the main router's ports.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

constexpr char kWanPort[] = "WAN";

// A port for a cable, by its number from 1.
std::string lan_port(int64_t number);

// All ports: that to the WAN, those for cables, and the radios by their bands.
std::vector<std::string> all_ports(const Home &home);

// What can be bound to a WAN connection: the ports for cables, and the SSIDs.
std::vector<std::string> bindable_ports(const Home &home);

} // namespace simulated_gateway
