// The pieces of the router and station reports, which are exported as well.
#pragma once

#include "mesh_report.h"

extern "C" {

// Appends one child router, with its stations, to an array. Result: 0; the device's result when the
// node could not be read; -1 when it is no attached device or memory ran out, and then nothing was
// appended.
SMART_ROUTER_API int32_t json_get_child_router_info(const TopoNode *node, cJSON *array);

// Adds "ChildBaseInfo", the devices attached to the node's router, to an object; nothing when they
// could not be read.
SMART_ROUTER_API void json_get_child_router_baseinfo(const TopoNode *node, cJSON *obj);
}
