// Where the attached devices are: those that roam wander by day from router to router.
#pragma once

#include "simulation/mesh.h"

namespace simulated_gateway {

// The router that a host is attached to, or belongs to while it is not online.
struct Place {
    const ChildRouter *router = nullptr; // null for the main router
    bool is_reached = false;             // whether the router is there for it
    int64_t signal_dbm = 0;              // ordinary power at the router; 0 by cable
};

// A host that roams is attached to the router that it hears best. Any other stays with its own; if
// that is a child router of a mesh that is off, it is known to the main router alone.
Place place_of(const Home &home, const Host &host);

// The hosts whose place is with the router; null for the main router.
std::vector<const Host *> hosts_at(const Home &home, const ChildRouter *router);

} // namespace simulated_gateway
