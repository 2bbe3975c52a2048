// SPDX-License-Identifier: MIT
// The address plan of the LAN: which plans a router accepts, and how the home moves to another one.
#pragma once

#include "model/model.h"

#include <optional>

namespace simulated_gateway {

// Replaces the address plan of the home. A device or a router keeps its LAN address if that is also
// in the new subnet, and otherwise its host part. If that is taken or does not fit, it gets the
// first free address of the pool.
//
// Throws an Error, of at most 63 bytes, that says what is wrong with the plan.
void move_lan(Home &home, const Lan &plan);

// Throws an Error, of at most 63 bytes, unless the host may have the address.
void require_free_address(const Home &home, const Host &host, const std::string &ip);

// The first free address of the pool; nothing if all are in use.
std::optional<std::string> free_pool_address(const Home &home);

} // namespace simulated_gateway
