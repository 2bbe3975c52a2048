// What the router and station reports share, and their pieces that are exported as well.
#pragma once

#include "mesh_report.h"

namespace smart_router {

// A station's keys after its MAC address, up to those that only some reports have.
inline constexpr auto kMeshStation = Fields{kDeviceKind, kDeviceAccess, kDeviceTraffic};

inline constexpr auto kStationDetails = Fields{
    FIELD_IN(ReportedDevice, info, AccessTime),
    FIELD_IN(ReportedDevice, info, UID),
    FIELD_IN(ReportedDevice, info, OS),
    FIELD_IN(ReportedDevice, info, Version),
    FIELD_IN(ReportedDevice, info, GreennetProtectEnable),
    kDeviceLimits,
};

// A child router's keys after those of its link.
inline constexpr auto kMeshRouter = Fields{
    FIELD(ChildRouterInfo, RouterDeviceID), FIELD(ChildRouterInfo, Name),
    FIELD(ChildRouterInfo, NetStatus),      FIELD(ChildRouterInfo, ChildRouterAccessType),
    FIELD(ChildRouterInfo, UpSpeed),        FIELD(ChildRouterInfo, DownSpeed),
    FIELD(ChildRouterInfo, FWDATA),         FIELD(ChildRouterInfo, HWVersion),
    FIELD(ChildRouterInfo, AreaCode),       FIELD(ChildRouterInfo, UpTime),
    FIELD(ChildRouterInfo, DeviceType),     FIELD(ChildRouterInfo, Wlan0Mac),
    FIELD(ChildRouterInfo, Wlan1Mac),
};

// The MAC address by which the mesh knows a router that hangs from another one.
inline constexpr auto kMeshMac = Fields{FIELD_AS(ChildMeshInfo, Mac, "childMac")};

inline constexpr char kParentMac[] = "ParentMacAddress";

template <size_t width> bool is_unknown(const char (&field)[width])
{
    return field[0] == '\0' || holds_any_case(field, "NULL");
}

// One operator's app shows the router on a single small page.
bool wants_short_report(const AreaCode &area);

// Adds the MAC address by which the platform knows the main router as that of the parent. Result:
// false when memory ran out.
bool add_own_mac(cJSON *object);

} // namespace smart_router

extern "C" {

// Appends one child router, with its stations, to an array. Result: 0; the device's result when the
// node could not be read; -1 when an argument is null, the node is no attached device or memory ran
// out. Nothing is appended unless it is 0.
SMART_ROUTER_API int32_t json_get_child_router_info(const TopoNode *node, cJSON *array);

// Adds "ChildBaseInfo", the devices attached to the node's router, to an object; nothing when they
// could not be read. Result: 0; -1, with nothing added, when node is null or memory ran out.
SMART_ROUTER_API int32_t json_get_child_router_baseinfo(const TopoNode *node, cJSON *obj);
}
