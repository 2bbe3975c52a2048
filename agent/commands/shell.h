// SPDX-License-Identifier: MIT
// hgagent shell: commands for a running service, typed or from a file.
#pragma once

#include "commands/options.h"

namespace agent {

// Adds the subcommand. It runs the lines of standard input until end of input; on a terminal, with
// editing, completion and history.
void add_shell(CLI::App &app, Options &options);

} // namespace agent
