// hgagent call: one command from the command line.
#pragma once

#include "options.h"

namespace agent {

// Runs the command and prints its reply. Result: the exit status.
int run_call(const HostOptions &host, const CallOptions &options);

} // namespace agent
