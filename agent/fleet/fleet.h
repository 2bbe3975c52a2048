// SPDX-License-Identifier: MIT
// hgagent fleet: many simulated gateways on one broker, each a separate process.
#pragma once

#include "fleet/options.h"

namespace agent::fleet {

// Runs the gateways until SIGTERM or SIGINT. Result: the exit status.
int run_fleet(const FleetOptions &options);

} // namespace agent::fleet
