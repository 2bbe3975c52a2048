// SPDX-License-Identifier: MIT
// The mesh: its routers, and what is attached to each.
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace agent {

// A router or a device, and its link to the router above it. Texts are empty where nothing is
// known.
struct MeshNode {
    std::string name;   // its MAC address when it has none
    std::string access; // kind of the link
    std::string dbm;    // signal strength
    std::string state;  // what is unusual
};

struct Router {
    MeshNode self;
    std::vector<MeshNode> devices;
    bool has_more_devices = false;    // than were reported
    std::vector<size_t> routers = {}; // places of those that hang from it
};

// The routers of the reply of GET_TSLINK_TOPOLOGY_INFO, the main router first. Who hangs from whom
// is said by the report from the tree of parameters. A router of which that says nothing, nothing
// sensible, or what would close a circle, hangs from the main router.
std::vector<Router> routers_of(const cJSON *topology, const cJSON *tree);

} // namespace agent
