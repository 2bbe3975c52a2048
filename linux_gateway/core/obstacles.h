// SPDX-License-Identifier: MIT
// What on this machine keeps the library from working well.
#pragma once

#include "core/configuration.h"
#include "system/network.h"

#include <string>
#include <vector>

namespace linux_gateway {

// A sentence for each: what it is, and what to do about it.
std::vector<std::string> obstacles(const Configuration &configuration, const Network &network);

} // namespace linux_gateway
