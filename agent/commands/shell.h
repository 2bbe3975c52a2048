// SPDX-License-Identifier: MIT
// hgagent shell: commands for a running service, typed or from a file.
#pragma once

#include "commands/options.h"

namespace agent {

// Adds the subcommand. It carries out the lines of standard input until that ends, at a terminal
// with editing, completion and history.
void add_shell(CLI::App &app, Options &options);

} // namespace agent
