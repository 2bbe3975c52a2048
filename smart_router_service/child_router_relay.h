// The relay's common part, which is exported as well.
#pragma once

#include "recipes.h"

extern "C" {

// Sends the object as it stands to the child router that its "DeviceID" names. Result: 0; -1 when
// it could not be printed; else that of the device.
SMART_ROUTER_API int32_t json_child_router_common(cJSON *obj);
}
