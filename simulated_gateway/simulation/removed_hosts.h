// The hosts that the user has removed from the list of attached devices.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Takes the host out of the list, with what the user has set for it.
void remove_host(State &state, const Host &host);

// Those that have attached anew since they were removed are listed again.
void let_removed_hosts_attach(State &state);

// At a boot everything that is there attaches anew.
void let_all_attach_anew(State &state);

} // namespace simulated_gateway
