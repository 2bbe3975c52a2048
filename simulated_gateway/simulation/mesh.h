// The routers of the mesh: which there are, how they hang together, and how good their links are.
// The main router is the null child router.
//
// Child routers are attached devices, too. Their host indexes follow those of the hosts, and are
// their identifiers everywhere.
#pragma once

#include "model/model.h"

#include <span>

namespace simulated_gateway {

// Those that there are; none while the mesh is off.
std::span<const ChildRouter> child_routers(const Home &home);

// Null when there is none.
const ChildRouter *child_router_with_mac(const Home &home, const std::string &mac);
const ChildRouter *child_router_at(const Home &home, int64_t index);

int32_t index_of(const Home &home, const ChildRouter &router);
const std::string &mac_of(const Home &home, const ChildRouter *router);
const ChildRouter *parent_of(const Home &home, const ChildRouter &router);

// Whether it is reached from the main router: neither it nor a router between the two is off or
// starts, and no link between them is down.
bool is_active(const Home &home, const ChildRouter &router);

// The active ones, parents before their children; all of them, or those that hang from a router.
std::vector<const ChildRouter *> active_routers(const Home &home);
std::vector<const ChildRouter *> active_children(const Home &home, const ChildRouter *parent);

// Whether the router is the other one, or hangs from it at any depth.
bool is_below(const Home &home, const ChildRouter *router, const ChildRouter &other);

// Since when a router runs, and since when it and all routers above it do.
int64_t up_since(const State &state, const ChildRouter *router);
int64_t reached_since(const State &state, const ChildRouter *router);

// The link to the parent: its speed as it was last measured, and the power at which the two hear
// each other, in dBm, 0 unless it is by radio.
int64_t link_speed_mbps(const State &state, const ChildRouter &router);
int64_t link_dbm(const State &state, const ChildRouter &router);

} // namespace simulated_gateway
