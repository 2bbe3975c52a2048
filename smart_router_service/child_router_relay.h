// SPDX-License-Identifier: MIT
// The common part of the relay, which is also exported.
#pragma once

#include "recipes.h"

extern "C" {

// Sends the unchanged object to the child router given by its "DeviceID". Result: 0; -1 when the
// object could not be printed; otherwise that of the device call.
SMART_ROUTER_API int32_t json_child_router_common(cJSON *obj);
}
