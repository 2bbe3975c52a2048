// SPDX-License-Identifier: MIT
// hgagent hosts: the devices attached to the gateway, as a table.
#pragma once

#include "commands/options.h"

namespace agent {

// Prints a table of the hosts, as GET_AD_BASE_INFO lists them. Result: the exit status.
int run_hosts(const Options &options);

} // namespace agent
