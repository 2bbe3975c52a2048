// hgagent serve: requests from standard input, one a line, answered on standard output.
#pragma once

#include "options.h"

namespace agent {

// Serves until the input ends, the output is closed, or SIGTERM or SIGINT arrives. Result: the exit
// status.
int run_serve(const HostOptions &host, const ServeOptions &options);

} // namespace agent
