// hgagent conformance: tests a device library against what the plug-in relies on.
#pragma once

#include "commands/options.h"

namespace agent {

// Runs the checks, each of which a broken library may crash or hang, and prints what came of them.
// Result: the exit status.
int run_conformance(const Options &options);

} // namespace agent
