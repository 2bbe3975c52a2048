// hgagent serve: requests from standard input, one a line, answered on standard output.
#pragma once

#include "commands/options.h"

namespace agent {

// Serves until the input ends or the output is closed, and then until all that the commands started
// has come to its end; or until SIGTERM or SIGINT arrives. Result: the exit status.
int run_serve(const Options &options);

} // namespace agent
