// SPDX-License-Identifier: MIT
// Shared by the router and station reports, and the parts of them that are also exported.
#pragma once

#include "mesh_report.h"

namespace smart_router {

// The keys of a station after its MAC address, except those that only some reports have.
inline constexpr auto kMeshStation = Fields{kDeviceKind, kDeviceAccess, kDeviceTraffic};

inline constexpr auto kStationDetails = Fields{
    FIELD_IN(ReportedDevice, info, AccessTime),
    FIELD_IN(ReportedDevice, info, UID),
    FIELD_IN(ReportedDevice, info, OS),
    FIELD_IN(ReportedDevice, info, Version),
    FIELD_IN(ReportedDevice, info, GreennetProtectEnable),
    kDeviceLimits,
};

// The keys of a child router after those of its link.
inline constexpr auto kMeshRouter = Fields{
    FIELD(ChildRouterInfo, RouterDeviceID), FIELD(ChildRouterInfo, Name),
    FIELD(ChildRouterInfo, NetStatus),      FIELD(ChildRouterInfo, ChildRouterAccessType),
    FIELD(ChildRouterInfo, UpSpeed),        FIELD(ChildRouterInfo, DownSpeed),
    FIELD(ChildRouterInfo, FWDATA),         FIELD(ChildRouterInfo, HWVersion),
    FIELD(ChildRouterInfo, AreaCode),       FIELD(ChildRouterInfo, UpTime),
    FIELD(ChildRouterInfo, DeviceType),     FIELD(ChildRouterInfo, Wlan0Mac),
    FIELD(ChildRouterInfo, Wlan1Mac),
};

// The MAC address under which the mesh knows a router that is attached to another one.
inline constexpr auto kMeshMac = Fields{FIELD_AS(ChildMeshInfo, Mac, "childMac")};

inline constexpr char kParentMac[] = "ParentMacAddress";

template <size_t width> bool is_unknown(const char (&field)[width])
{
    return field[0] == '\0' || holds_any_case(field, "NULL");
}

// Whether the area code is that of the operator whose app shows only a short report.
bool wants_short_report(const AreaCode &area);

// Adds the MAC address under which the platform knows the main router, as the parent's address.
// Result: false when memory ran out.
bool add_own_mac(cJSON *object);

} // namespace smart_router

extern "C" {

// Appends one child router, with its stations, to an array. Result: 0; the device's result when the
// node could not be read; -1 when an argument is null, the node is not an attached device or memory
// ran out. Nothing is appended unless the result is 0.
SMART_ROUTER_API int32_t json_get_child_router_info(const TopoNode *node, cJSON *array);

// Adds "ChildBaseInfo", the devices attached to the node's router, to an object; adds nothing when
// they could not be read. Result: 0; -1, with nothing added, when node is null or memory ran out.
SMART_ROUTER_API int32_t json_get_child_router_baseinfo(const TopoNode *node, cJSON *obj);
}
