// SPDX-License-Identifier: MIT
// Parts of the mesh-wide update status, which are also exported.
#pragma once

#include "recipes.h"

extern "C" {

// Appends the firmware of each child router to an array. Result: 0, or -1 when array is null or
// memory ran out.
SMART_ROUTER_API int32_t json_get_child_router_update_info(cJSON *array);

// Adds a child router's firmware to an object. Result: 0; -1, with nothing added, when an argument
// is null or memory ran out.
SMART_ROUTER_API int32_t json_insert_childrouter_update_info(cJSON *item,
                                                             const ChildRouterInfo *router);
}
