// SPDX-License-Identifier: MIT
// The topology report.
#include "floor.h"

#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <strings.h>

using baseline::add;

namespace {

const char *radio_state(const char *state)
{
    return strcasecmp(state, "up") == 0 || strcmp(state, "1") == 0 ? "1" : "0";
}

bool is_missing(const char *value)
{
    return strcmp(value, "NULL") == 0;
}

const char *known(const char *value)
{
    return is_missing(value) ? "" : value;
}

void put_elapsed(char *access_time, size_t size, bool local_time)
{
    int32_t hours = 0;
    const long long now = time(nullptr);
    devapi_get_local_timezone(&hours);
    const long long elapsed = now - atoll(access_time) - (local_time ? 3600LL * hours : 0);
    snprintf(access_time, size, "%d", static_cast<int>(elapsed));
}

cJSON *device_object(AdBaseInfo *info)
{
    cJSON *object = cJSON_CreateObject();
    add(object, "Mac", known(info->Mac));
    add(object, "UID", known(info->UID));
    add(object, "DevType",
        is_missing(info->DevType)                ? ""
        : strcmp(info->DevType, "Computer") == 0 ? "3"
                                                 : "0");
    add(object, "DevFactory", is_missing(info->DevFactory) ? "" : "unknow");
    add(object, "DevModle", is_missing(info->DevType) ? "" : "3");
    add(object, "Name", known(info->Name));
    add(object, "ByName",
        info->ByName[0] != '\0' && !is_missing(info->ByName) ? info->ByName : info->Name);
    add(object, "OS", is_missing(info->OS) ? "" : "3");
    add(object, "Version", known(info->Version));
    add(object, "NetStatus", is_missing(info->NetStatus) ? "" : info->LinkStatus);
    add(object, "NetMonopoly", is_missing(info->NetMonopoly) ? "" : "0");
    add(object, "AccessType", info->AccessType);
    add(object, "AccessEnable", info->AccessEnable);
    if (is_missing(info->AccessTime)) {
        add(object, "AccessTime", "");
    } else {
        put_elapsed(info->AccessTime, sizeof info->AccessTime, devapi_get_systerm_timetype() == 1);
        add(object, "AccessTime", info->AccessTime);
    }
    add(object, "UpSpeed", info->UpSpeed);
    add(object, "DownSpeed", info->DownSpeed);
    add(object, "ip", known(info->ip));
    add(object, "SpeedLimit", info->SpeedLimit);
    add(object, "DownLimit", info->DownLimit);
    add(object, "UpLimit", info->UpLimit);
    add(object, "GreennetProtectEnable", info->GreennetProtectEnable);
    add(object, "dbm", info->Dbm);
    add(object, "StaticDhcpEnable", info->StaticDhcpEnable);
    return object;
}

cJSON *station_object(AdBaseInfo *info)
{
    cJSON *object = cJSON_CreateObject();
    add(object, "Mac", info->Mac);
    add(object, "UID", info->UID);
    add(object, "DevType", info->DevType);
    add(object, "DevFactory", info->DevFactory);
    add(object, "DevModle", "Tessaline");
    add(object, "Name", info->Name);
    add(object, "ByName", info->ByName[0] != '\0' ? info->ByName : info->Name);
    add(object, "OS", "3");
    add(object, "Version", info->Version);
    add(object, "NetStatus", info->NetStatus);
    add(object, "NetMonopoly", info->NetMonopoly);
    add(object, "AccessType", info->AccessType);
    add(object, "AccessEnable", info->AccessEnable);
    put_elapsed(info->AccessTime, sizeof info->AccessTime, true);
    add(object, "AccessTime", info->AccessTime);
    add(object, "UpSpeed", info->UpSpeed);
    add(object, "DownSpeed", info->DownSpeed);
    add(object, "ip", info->ip);
    add(object, "GreennetProtectEnable", info->GreennetProtectEnable);
    add(object, "SpeedLimit", info->SpeedLimit);
    add(object, "DownLimit", info->DownLimit);
    add(object, "UpLimit", info->UpLimit);
    add(object, "dbm", info->Dbm);
    add(object, "StaticDhcpEnable", info->StaticDhcpEnable);
    return object;
}

void add_devices(cJSON *router)
{
    cJSON *list = cJSON_CreateArray();
    int32_t count = 0;
    if (devapi_get_dev_tol_num(&count, 0) == 0) {
        int reported = 0;
        for (int32_t index = 1; index <= count; ++index) {
            if (dev_is_exist(index) != 0) {
                continue;
            }
            AdBaseInfo info;
            memset(&info, 0, sizeof info);
            info.Kind = 1;
            info.HostIndex = index;
            if (devapi_get_ad_base_info(&info) != 0) {
                continue;
            }
            if (++reported > 32) {
                break;
            }
            cJSON_AddItemToArray(list, device_object(&info));
        }
    }
    cJSON_AddItemToObject(router, "MainBaseInfo", list);
}

void add_children(cJSON *router)
{
    char bridge[HG_BRIDGE_MAC_SIZE] = "";
    ts_sys_mgr_get_brmac(bridge);
    if (devapi_get_mesh_type() != 2) {
        return;
    }
    cJSON *list = cJSON_CreateArray();
    ChildRouterList children;
    memset(&children, 0, sizeof children);
    devapi_get_childrouter_list(&children);
    for (int32_t at = 0; at < children.count; ++at) {
        ChildMeshInfo info;
        memset(&info, 0, sizeof info);
        if (devapi_get_child_mesh_info(&info, children.identifiers[at]) == 0 &&
            strcmp(info.ParentMac, bridge) == 0) {
            cJSON *child = cJSON_CreateObject();
            add(child, "childMac", info.ChildMac);
            cJSON_AddItemToArray(list, child);
        }
    }
    cJSON_AddItemToObject(router, "ChildInfo", list);
}

cJSON *main_router()
{
    HgBaseInfo base;
    memset(&base, 0, sizeof base);
    devapi_get_hg_base_info(&base);
    char model[32] = "";
    devapi_get_devicemodel(model, sizeof model - 1);
    cJSON *router = cJSON_CreateObject();
    add(router, "Name", base.Name);
    add(router, "Mac", base.Mac);
    add(router, "NetStatus", base.NetStatus);
    add(router, "UpSpeed", base.UpSpeed);
    add(router, "DownSpeed", base.DownSpeed);
    add(router, "WiFiStatus1", radio_state(base.WiFiStatus1));
    add(router, "WiFiStatus2", radio_state(base.WiFiStatus2));
    add(router, "SSID1", base.SSID1);
    add(router, "SSID2", base.SSID2);
    add(router, "ip", base.ip);
    add(router, "HWVersion", base.HWVersion);
    add(router, "FWVersion", base.FWVersion);
    add(router, "FWDATA", base.FWDATA);
    add(router, "UpTime", base.UpTime);
    add(router, "WanUptime", base.WanUptime);
    add(router, "DeviceType", base.DeviceType);
    add(router, "AreaCode", base.AreaCode);
    add(router, "ConfiguerStatus", base.ConfiguerStatus);
    add(router, "WanConMode", base.WanLinkMode);
    add(router, "AddressType", base.AddressType);
    add(router, "LedLight", base.LedLight);
    add(router, "LedSwitch", base.LedSwitch);
    add(router, "cpuusage", base.Cpu);
    add(router, "ramusage", base.Memory);
    add(router, "QosAcceleratorEnable", base.QosAcceleratorEnable);
    add(router, "QQGameAcceleratorEnable", base.QQGameAcceleratorEnable);
    add(router, "FireWallEnable", base.FireWallEnable);
    add(router, "NetQuality", "0");
    add(router, "Wlan0Mac", base.Wlan0Mac);
    add(router, "Wlan1Mac", base.Wlan1Mac);
    add_children(router);
    add_devices(router);
    return router;
}

cJSON *child_router(const ChildRouterInfo &info)
{
    cJSON *router = cJSON_CreateObject();
    add(router, "RouterDeviceID", info.RouterDeviceID);
    add(router, "Name", info.Name);
    add(router, "Mac", info.Mac);
    add(router, "NetStatus", info.NetStatus);
    add(router, "ChildRouterAccessType", info.ChildRouterAccessType);
    add(router, "UpSpeed", info.UpSpeed);
    add(router, "DownSpeed", info.DownSpeed);
    add(router, "ip", info.ip);
    add(router, "FWVersion", info.FWVersion);
    add(router, "FWDATA", info.FWDATA);
    add(router, "UpTime", info.UpTime);
    add(router, "DeviceType", info.DeviceType);
    add(router, "AreaCode", info.AreaCode);
    add(router, "HWVersion", info.HWVersion);
    add(router, "Wlan0Mac", info.Wlan0Mac);
    add(router, "Wlan1Mac", info.Wlan1Mac);
    add(router, "dbm", info.dbm);
    char model[32] = "";
    devapi_get_devicemodel(model, sizeof model - 1);

    cJSON *list = cJSON_CreateArray();
    ChildStationList stations;
    memset(&stations, 0, sizeof stations);
    devapi_get_childsta_list(&stations, info.Mac);
    for (int32_t at = 0; at < stations.count; ++at) {
        AdBaseInfo station;
        memset(&station, 0, sizeof station);
        station.HostIndex = stations.indexes[at];
        if (devapi_get_childsta_base_info(&station) == 0) {
            cJSON_AddItemToArray(list, station_object(&station));
        }
    }
    cJSON_AddItemToObject(router, "ChildBaseInfo", list);
    return router;
}

} // namespace

void baseline::get_tsnk_topo_info(cJSON *reply)
{
    cJSON_AddItemToObject(reply, "MainRouter", main_router());
    cJSON *list = cJSON_CreateArray();
    ChildRouterList children;
    memset(&children, 0, sizeof children);
    devapi_get_childrouter_list(&children);
    devapi_call_tslink_set_topo_speed();
    for (int32_t at = 0; at < children.count; ++at) {
        ChildRouterInfo info;
        memset(&info, 0, sizeof info);
        if (devapi_get_childrouter_info(&info, children.identifiers[at]) == 0) {
            cJSON_AddItemToArray(list, child_router(info));
        }
    }
    cJSON_AddItemToObject(reply, "ChildRouter", list);
    add(reply, "Status", "0");
}
