// What the router and station reports share, and their pieces that are exported as well.
#pragma once

#include "mesh_report.h"

namespace smart_router {

// A station's keys after its MAC address, up to those that only some reports have.
inline constexpr auto kMeshStation = Fields{
    FIELD(ReportedDevice, "DevType", info.DevType),
    FIELD(ReportedDevice, "DevFactory", info.DevFactory),
    FIELD(ReportedDevice, "DevModle", DevModle),
    FIELD(ReportedDevice, "Name", info.Name),
    FIELD(ReportedDevice, "ByName", info.ByName),
    FIELD(ReportedDevice, "NetStatus", info.NetStatus),
    FIELD(ReportedDevice, "NetMonopoly", info.NetMonopoly),
    FIELD(ReportedDevice, "AccessType", info.AccessType),
    FIELD(ReportedDevice, "AccessEnable", info.AccessEnable),
    FIELD(ReportedDevice, "UpSpeed", info.UpSpeed),
    FIELD(ReportedDevice, "DownSpeed", info.DownSpeed),
    FIELD(ReportedDevice, "ip", info.ip),
};

inline constexpr auto kStationDetails = Fields{
    FIELD(ReportedDevice, "AccessTime", info.AccessTime),
    FIELD(ReportedDevice, "UID", info.UID),
    FIELD(ReportedDevice, "OS", info.OS),
    FIELD(ReportedDevice, "Version", info.Version),
    FIELD(ReportedDevice, "GreennetProtectEnable", info.GreennetProtectEnable),
    FIELD(ReportedDevice, "SpeedLimit", info.SpeedLimit),
    FIELD(ReportedDevice, "DownLimit", info.DownLimit),
    FIELD(ReportedDevice, "UpLimit", info.UpLimit),
};

// A child router's keys after those of its link.
inline constexpr auto kMeshRouter = Fields{
    FIELD(ChildRouterInfo, "RouterDeviceID", RouterDeviceID),
    FIELD(ChildRouterInfo, "Name", Name),
    FIELD(ChildRouterInfo, "NetStatus", NetStatus),
    FIELD(ChildRouterInfo, "ChildRouterAccessType", ChildRouterAccessType),
    FIELD(ChildRouterInfo, "UpSpeed", UpSpeed),
    FIELD(ChildRouterInfo, "DownSpeed", DownSpeed),
    FIELD(ChildRouterInfo, "FWDATA", FWDATA),
    FIELD(ChildRouterInfo, "HWVersion", HWVersion),
    FIELD(ChildRouterInfo, "AreaCode", AreaCode),
    FIELD(ChildRouterInfo, "UpTime", UpTime),
    FIELD(ChildRouterInfo, "DeviceType", DeviceType),
    FIELD(ChildRouterInfo, "Wlan0Mac", Wlan0Mac),
    FIELD(ChildRouterInfo, "Wlan1Mac", Wlan1Mac),
};

// The MAC address by which the mesh knows a router that hangs from another one.
inline constexpr auto kMeshMac = Fields{FIELD(ChildMeshInfo, "childMac", Mac)};

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
