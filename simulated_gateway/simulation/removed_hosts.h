// SPDX-License-Identifier: MIT
// The hosts that the user has removed from the list of attached devices.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Removes the host from the list, with the user's settings for it.
void remove_host(State &state, const Host &host);

// Lists the hosts again that have reattached since they were removed.
void reattach_removed_hosts(State &state);

// On a boot all hosts that are switched on reattach.
void reattach_all_hosts(State &state);

} // namespace simulated_gateway
