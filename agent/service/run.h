// SPDX-License-Identifier: MIT
// hgagent run: the service.
#pragma once

#include "service/config.h"

namespace agent::service {

// Result: the exit status.
int run_service(const RunOptions &options);

} // namespace agent::service
