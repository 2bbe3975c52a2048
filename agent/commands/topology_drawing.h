// SPDX-License-Identifier: MIT
// The mesh as a drawing.
#pragma once

#include "commands/topology_routers.h"

#include <string>
#include <vector>

namespace agent {

// Both take the routers with the main router first. The drawings end in no line end.

// A tree in a terminal, in letters of ASCII or in Unicode's lines. Names stand as they are.
std::string tree_of(const std::vector<Router> &routers, bool ascii);

// A graph in the language of Graphviz.
std::string graph_of(const std::vector<Router> &routers);

} // namespace agent
