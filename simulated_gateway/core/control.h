// SPDX-License-Identifier: MIT
// The gateway that the process has open.
#pragma once

#include "core/gateway.h"

#include <memory>

namespace simulated_gateway {

// Opens one by the environment where none is open. Null when that failed, now or before.
std::shared_ptr<Gateway> current_gateway();

} // namespace simulated_gateway
