// The hosts that the user has removed from the list of attached devices.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Removes the host from the list, with the user's settings for it.
void remove_host(State &state, const Host &host);

// Lists the hosts again that have reattached since they were removed.
void let_removed_hosts_attach(State &state);

// On a boot all hosts that are switched on reattach.
void let_all_attach_anew(State &state);

} // namespace simulated_gateway
