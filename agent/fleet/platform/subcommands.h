// SPDX-License-Identifier: MIT
// The platform's side of a fleet on the command line: fleet drive and fleet campaign.
#pragma once

#include "commands/options.h"

namespace agent::fleet::platform {

// Adds them to the subcommand fleet.
void add_subcommands(CLI::App &app, Options &options);

} // namespace agent::fleet::platform
