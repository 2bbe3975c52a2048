// SPDX-License-Identifier: MIT
// The parts of the topology report, which are also exported.
#pragma once

#include "mesh_report.h"

namespace smart_router {

// The first keys of each device, whether attached to the main router or to a child router.
inline constexpr auto kAttachedDevice = Fields{
    FIELD_IN(ReportedDevice, info, Mac),
    FIELD_IN(ReportedDevice, info, UID),
    kDeviceKind,
    FIELD_IN(ReportedDevice, info, OS),
    FIELD_IN(ReportedDevice, info, Version),
    kDeviceAccess,
    FIELD_IN(ReportedDevice, info, AccessTime),
    kDeviceTraffic,
};

} // namespace smart_router

extern "C" {

// Fills an object with the main router: its own information, its mesh and the devices attached to
// it; with only a "FailReason" when nothing is known about it, and with one in place of the devices
// when these could not be read. Result: 0; -1, with the object unchanged, when memory for it ran
// out.
SMART_ROUTER_API int32_t json_get_hg_base_info_copy(cJSON *obj);

// Appends the devices attached to the main router to *array, and counts them in g_dev_num and, for
// kind 1, in g_active_num; the report is full when g_dev_num is 32. argument is passed unchanged to
// devapi_get_dev_tol_num(); kind is stored in each record. Result: 0, also when the report is full;
// -1 when there is no array, a device could not be read or memory ran out; the result of the count
// if that failed.
SMART_ROUTER_API int32_t put_to_json(cJSON **array, intptr_t argument, int32_t kind);

// Appends the child routers, each with its stations. Result: 0, or -1 when array is null or memory
// ran out.
SMART_ROUTER_API int32_t json_get_child_router_topo_info(cJSON *array);

// Adds a child router's own information to an object. Result: 0; -1, with nothing added, when an
// argument is null or memory ran out.
SMART_ROUTER_API int32_t json_insert_childrouter_info(cJSON *obj, const ChildRouterInfo *router);

// Appends the stations of the child router with the MAC address, until memory runs out.
SMART_ROUTER_API void json_get_childsta_info(cJSON *array, const char *mac);

// Adds a station to an object, with the time for which it has been attached, which replaces
// AccessTime in the record. Result: 0; -1, with nothing added, when an argument is null or memory
// ran out.
SMART_ROUTER_API int32_t json_insert_childsta_info(cJSON *obj, AdBaseInfo *station);
}
