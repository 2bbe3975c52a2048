// SPDX-License-Identifier: MIT
// `hgagent fleet` on the agent's command line, with its own subcommands.
#pragma once

#include "commands/options.h"

namespace agent::fleet {

void add_fleet(CLI::App &app, Options &options);

} // namespace agent::fleet
