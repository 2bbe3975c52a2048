// hgagent topology: the mesh, for people.
#pragma once

#include "commands/options.h"

namespace agent {

// Draws the mesh as GET_TSLINK_TOPOLOGY_INFO reports it. Result: the exit status.
int run_topology(const Options &options);

} // namespace agent
