// The router starts, and time passes.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Starts the router anew with the home as it is, and with the firmware that is to be next.
void boot(State &state);

// What the clock brings about: ports count what they have carried, guest networks that have come on
// start their time and go off at its end, removed hosts attach anew.
void let_time_pass(State &state);

} // namespace simulated_gateway
