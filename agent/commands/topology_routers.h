// SPDX-License-Identifier: MIT
// The mesh: its routers, and what is attached to each.
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace agent {

// A router or a device, and its link to its parent router. Unknown texts are empty.
struct MeshNode {
    std::string name;   // its MAC address when it has none
    std::string access; // type of the link
    std::string dbm;    // signal strength
    std::string state;  // empty if normal
};

struct Router {
    MeshNode self;
    std::vector<MeshNode> devices;
    bool has_more_devices = false;    // more than were reported
    std::vector<size_t> routers = {}; // indexes of its child routers
};

// The routers of the reply of GET_TSLINK_TOPOLOGY_INFO, the main router first. The report from the
// tree of parameters gives each router's parent. If the parent is missing or invalid, or would
// close a cycle, the router is placed below the main router.
std::vector<Router> routers_of(const cJSON *topology, const cJSON *tree);

} // namespace agent
