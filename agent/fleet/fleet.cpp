// SPDX-License-Identifier: MIT
#include "fleet/fleet.h"

#include "io/exit_status.h"
#include "io/text.h"

namespace agent::fleet {

int run_fleet(const FleetOptions &options)
{
    print_error("a fleet of " + std::to_string(options.count) + " gateways cannot be started yet");
    return kCannotLoad;
}

} // namespace agent::fleet
