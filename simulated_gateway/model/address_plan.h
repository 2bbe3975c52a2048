// The address plan of the LAN: which ones a router accepts, and moving the home into another one.
#pragma once

#include "model/model.h"

#include <optional>

namespace simulated_gateway {

// Puts the plan in the place of the home's own. Whatever holds an address of the LAN keeps it where
// it is one of the new subnet as well, and else keeps its host part. Where that is taken or does
// not fit, it gets the first address of the pool that is free.
//
// Throws an Error, of at most 63 bytes, that says what is wrong with the plan.
void move_lan(Home &home, const Lan &plan);

// Throws an Error, of at most 63 bytes, unless the host may have the address.
void require_free_address(const Home &home, const Host &host, const std::string &ip);

// The first address of the pool that nobody holds; nothing when there is none.
std::optional<std::string> free_pool_address(const Home &home);

} // namespace simulated_gateway
