// SPDX-License-Identifier: MIT
// Shared by the topology report and the reports that the agent requests directly: the operators'
// area codes, the devices attached to a router, and the links between routers.
#pragma once

#include "recipes.h"

namespace smart_router {

// The model that is sold by operators and has a different report of its mesh.
inline constexpr char kOperatorModel[] = "QX2040B";

using Model = char[32];
// Reads the model of the router; it may lack a NUL.
void read_model(Model &model);

using AreaCode = char[32];
// Reads the code of the operator's area, at most size bytes; it may lack a NUL.
void read_area_code(AreaCode &code, int32_t size = sizeof(AreaCode) - 1);
// Whether the code is that of one of the three operators whose reports include the links between
// routers.
bool wants_mesh_links(const AreaCode &code);

// Reads the MAC address of the LAN bridge, under which child routers know the main router.
using BridgeMac = char[HG_BRIDGE_MAC_SIZE];
void read_bridge_mac(BridgeMac &mac);

// The mesh links of a router, as an array that belongs to the caller; null when memory ran out.
cJSON *mesh_links_of(const ChildRouterInfo &router);

// An attached device as it is reported: its record, and the values that are reported with it.
struct ReportedDevice {
    AdBaseInfo info;
    char DevModle[10];
};

// Fields that the reports of a device have in common, in groups.
inline constexpr auto kDeviceKind = Fields{
    FIELD_IN(ReportedDevice, info, DevType), FIELD_IN(ReportedDevice, info, DevFactory),
    FIELD(ReportedDevice, DevModle),         FIELD_IN(ReportedDevice, info, Name),
    FIELD_IN(ReportedDevice, info, ByName),
};
inline constexpr auto kDeviceAccess = Fields{
    FIELD_IN(ReportedDevice, info, NetStatus),
    FIELD_IN(ReportedDevice, info, NetMonopoly),
    FIELD_IN(ReportedDevice, info, AccessType),
    FIELD_IN(ReportedDevice, info, AccessEnable),
};
inline constexpr auto kDeviceTraffic = Fields{
    FIELD_IN(ReportedDevice, info, UpSpeed),
    FIELD_IN(ReportedDevice, info, DownSpeed),
    FIELD_IN(ReportedDevice, info, ip),
};
inline constexpr auto kDeviceLimits = Fields{
    FIELD_IN(ReportedDevice, info, SpeedLimit),
    FIELD_IN(ReportedDevice, info, DownLimit),
    FIELD_IN(ReportedDevice, info, UpLimit),
};

// The result of devapi_get_ad_base_info() for an index without a device.
constexpr int32_t kNoDevice = 1000;

// The MAC address of a router that is attached to the main router.
inline constexpr auto kChildMac = Fields{
    FIELD_AS(ChildMeshInfo, ChildMac, "childMac"),
};

// Copies a text from field to field; the source may lack a NUL.
template <size_t width> void assign(char (&to)[width], const char (&from)[width])
{
    memcpy(to, from, width);
}

// Completes a station of a child router, whose model and operating system are constants.
void complete_station(ReportedDevice *station);

// The hours by which the router's clock is ahead of local time; 0 when the device does not report
// them.
int32_t zone_hours();

// Replaces the time at which the device was attached by the seconds that have passed since then,
// given the hours by which the clock is ahead of the device's times.
void put_elapsed(AdBaseInfo *device, int32_t hours_ahead);

} // namespace smart_router
