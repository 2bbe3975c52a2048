// What the ports of the main router carry.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Counts what the hosts have sent and received since it was last counted, at the rates that they
// have now.
void count_traffic(State &state);

// The counters of a port.
PortCounter counter_of(const State &state, const std::string &port);

} // namespace simulated_gateway
