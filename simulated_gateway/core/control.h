// SPDX-License-Identifier: MIT
// The gateway that the process has open.
#pragma once

#include "core/gateway.h"

#include <memory>

namespace simulated_gateway {

// Opens one with the settings of the environment if none is open. Null if that fails or has failed
// before.
std::shared_ptr<Gateway> current_gateway();

} // namespace simulated_gateway
