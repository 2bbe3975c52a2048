// SPDX-License-Identifier: MIT
// Booting the router, and the passage of time.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Boots the router with the home as it is, and with the firmware in the next slot.
void boot(State &state);

// Applies what depends on time: ports count their traffic, guest networks that were switched on
// start their time limit and are switched off at its end, removed hosts reattach.
void let_time_pass(State &state);

} // namespace simulated_gateway
