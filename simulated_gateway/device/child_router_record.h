// SPDX-License-Identifier: MIT
// The records of the mesh routers, which several reports contain.
#pragma once

#include "core/device_call.h"
#include "simulation/mesh.h"

namespace simulated_gateway {

void fill(ChildRouterInfo &info, const State &state, const ChildRouter &router);
// The main router in the record of a child router.
void fill_main_router(ChildRouterInfo &info, const State &state);

void fill(ChildMeshInfo &info, const Home &home, const ChildRouter &router);

// The link between a router and the next one; one of the two is the other's child.
void fill(MeshLink &link, const State &state, const std::string &next, const ChildRouter &child);

// The signal strength of the link to the parent, as text.
std::string link_dbm_text(const State &state, const ChildRouter &router);

// The router with the MAC address in any notation, or with the identifier. Both throw an Error if
// there is none.
const ChildRouter &child_router_named(const Home &home, const char *mac);
const ChildRouter &child_router_numbered(const Home &home, int64_t identifier);

} // namespace simulated_gateway
