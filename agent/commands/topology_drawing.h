// SPDX-License-Identifier: MIT
// Drawings of the mesh.
#pragma once

#include "commands/topology_routers.h"

#include <string>
#include <vector>

namespace agent {

// Both take the routers with the main router first. The drawings have no trailing line end.

// A tree for a terminal, drawn in ASCII or with Unicode lines. Names are left unchanged.
std::string tree_of(const std::vector<Router> &routers, bool ascii);

// A graph in the DOT language of Graphviz.
std::string graph_of(const std::vector<Router> &routers);

} // namespace agent
