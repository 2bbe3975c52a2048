// hgagent report: what the plug-in tells its agent without any command.
#pragma once

#include "commands/options.h"

namespace agent {

// Lists the reports, or builds the one that was asked for and prints it. Result: the exit status.
int run_report(const Options &options);

} // namespace agent
