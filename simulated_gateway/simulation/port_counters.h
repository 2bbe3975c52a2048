// SPDX-License-Identifier: MIT
// The traffic counters of the main router's ports.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Adds the traffic of the hosts since the last call, at their current rates.
void count_traffic(State &state);

// The counters of a port.
PortCounter counter_of(const State &state, const std::string &port);

} // namespace simulated_gateway
