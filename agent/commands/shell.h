// hgagent shell: commands for a running service, typed or from a file.
#pragma once

#include "commands/options.h"

namespace agent {

// Carries out the lines of standard input until it ends, at a terminal with editing, completion and
// history. Result: the exit status.
int run_shell(const Options &options);

} // namespace agent
