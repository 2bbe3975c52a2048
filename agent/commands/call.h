// SPDX-License-Identifier: MIT
// hgagent call: one command from the command line.
#pragma once

#include "commands/options.h"

namespace agent {

// Runs the command, prints its reply, and waits until all work that it started has ended. Result:
// the exit status.
int run_call(const Options &options);

} // namespace agent
