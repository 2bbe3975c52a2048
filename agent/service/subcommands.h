// SPDX-License-Identifier: MIT
// The subcommands of the service on the agent's command line.
#pragma once

#include "commands/options.h"

namespace agent::service {

void add_subcommands(CLI::App &app, Options &options);

} // namespace agent::service
