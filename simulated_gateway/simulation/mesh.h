// SPDX-License-Identifier: MIT
// The routers of the mesh: which exist, how they are connected, and how good their links are. A
// null child router stands for the main router.
//
// Child routers are attached devices, too. Their host indexes follow those of the hosts and are
// used as their identifiers everywhere.
#pragma once

#include "model/model.h"

#include <span>

namespace simulated_gateway {

// All existing child routers; none while the mesh is off.
std::span<const ChildRouter> child_routers(const Home &home);

// Null if there is none.
const ChildRouter *child_router_with_mac(const Home &home, const std::string &mac);
const ChildRouter *child_router_at(const Home &home, int64_t index);

int32_t index_of(const Home &home, const ChildRouter &router);
const std::string &mac_of(const Home &home, const ChildRouter *router);
const ChildRouter *parent_of(const Home &home, const ChildRouter &router);

// Whether it can be reached from the main router: no router on the way, itself included, is off or
// starting, and no link on the way is down.
bool is_active(const Home &home, const ChildRouter &router);

// The active routers, parents before their children: all of them, or the children of one router.
std::vector<const ChildRouter *> active_routers(const Home &home);
std::vector<const ChildRouter *> active_children(const Home &home, const ChildRouter *parent);

// Whether the router is the other one or below it at any depth.
bool is_below(const Home &home, const ChildRouter *router, const ChildRouter &other);

// When a router was started, and when it and all routers above it were.
int64_t up_since(const State &state, const ChildRouter *router);
int64_t reached_since(const State &state, const ChildRouter *router);

// The link to the parent: its speed when last measured, and its signal strength in dBm, 0 unless it
// is a radio link.
int64_t link_speed_mbps(const State &state, const ChildRouter &router);
int64_t link_dbm(const State &state, const ChildRouter &router);

} // namespace simulated_gateway
