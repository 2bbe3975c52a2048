// SPDX-License-Identifier: MIT
// Whether a model is valid: each field by its rule, and the fields in relation to each other.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// Throws an Error that names the first invalid field, such as "/lan/dhcp_pool/end: 192.168.1.5 is
// before the start of the pool".
void check(const Home &home);
void check(const State &state);

} // namespace simulated_gateway
