// The records of the routers of the mesh, which several reports are made of.
#pragma once

#include "core/device_call.h"
#include "simulation/mesh.h"

namespace simulated_gateway {

void fill(ChildRouterInfo &info, const State &state, const ChildRouter &router);
// The main router as if it were one of its own child routers.
void fill_main_router(ChildRouterInfo &info, const State &state);

void fill(ChildMeshInfo &info, const Home &home, const ChildRouter &router);

// The link by which a router reaches the next one, of which one is the child of the other.
void fill(MeshLink &link, const State &state, const std::string &next, const ChildRouter &child);

// As a text: how a child router reaches its parent, how strong the two hear each other.
std::string link_dbm_text(const State &state, const ChildRouter &router);

// The router with the MAC address in any form, or with the identifier; they throw an Error when
// there is none.
const ChildRouter &child_router_named(const Home &home, const char *mac);
const ChildRouter &child_router_numbered(const Home &home, int64_t identifier);

} // namespace simulated_gateway
