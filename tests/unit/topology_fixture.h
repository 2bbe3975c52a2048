// SPDX-License-Identifier: MIT
// The topology report: the main router, the devices attached to it, and the child routers with
// their stations.
#pragma once

#include "mesh_fixture.h"
#include "topology_report.h"

// ---- The main router ---------------------------------------------------------------------------

inline const std::string kBridge = "3C:6A:D2:10:4F:20";

class TopologyReport : public MeshTest {
  protected:
    TopologyReport()
    {
        fill_places(&base, kMainRouterRecord, value_of);
        when<devapi_get_hg_base_info>([this](HgBaseInfo *info) {
            *info = base;
            return 0;
        });
        bridge_mac_is(kBridge);
        child_routers_are({7, 3});
        when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t identifier) {
            put(link->nexthopMAC, "hop " + std::to_string(identifier));
            put(link->interface, "ath0");
            put(link->dbm, "-50");
            return 0;
        });
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t identifier) {
            put(info->Mac, "backhaul");
            put(info->ChildMac, "child " + std::to_string(identifier));
            put(info->ParentMac, kBridge);
            return 0;
        });
    }

    // The main router's own information, without its mesh and its devices.
    static Request router(std::string (*text)(const Place &) = value_of)
    {
        const Names keys = {"Name",
                            "Mac",
                            "NetStatus",
                            "UpSpeed",
                            "DownSpeed",
                            "WiFiStatus1",
                            "WiFiStatus2",
                            "SSID1",
                            "SSID2",
                            "ip",
                            "HWVersion",
                            "FWVersion",
                            "FWDATA",
                            "UpTime",
                            "WanUptime",
                            "DeviceType",
                            "AreaCode",
                            "ConfiguerStatus",
                            "WanConMode",
                            "AddressType",
                            "LedLight",
                            "LedSwitch",
                            "cpuusage",
                            "ramusage",
                            "QosAcceleratorEnable",
                            "QQGameAcceleratorEnable",
                            "FireWallEnable"};
        Request request = expected(select(kMainRouterRecord, keys), text)
                              .with("WiFiStatus1", R"("0")")
                              .with("WiFiStatus2", R"("0")")
                              .with("NetQuality", R"("0")");
        for (const Place &place : select(kMainRouterRecord, {"Wlan0Mac", "Wlan1Mac"})) {
            request = request.with(place.key, quoted(text(place)));
        }
        return request;
    }
    static Request without_devices(const Request &request)
    {
        return request.with("MainBaseInfo", "[]");
    }

    std::string router_report() { return report(json_get_hg_base_info_copy); }

    // The value of the key in the report of the main router; empty when there is none.
    std::string value(const char *key)
    {
        const Json object = parse(router_report());
        const cJSON *item = cJSON_GetObjectItem(object.get(), key);
        return item != nullptr ? print(item) : "";
    }

    HgBaseInfo base = {};
};

inline const std::string kBothLinks =
    R"([{"nexthopMAC":"hop 7","dbm":"-50"},{"nexthopMAC":"hop 3","dbm":"-50"}])";

// ---- Devices attached to the main router -------------------------------------------------------

// What is reported of a device. The order of the keys in the middle depends on its router.
inline Places device_places(const Names &middle)
{
    Names keys = {"Mac",         "UID",        "DevType",      "DevFactory", "DevModle",
                  "Name",        "ByName",     "OS",           "Version",    "NetStatus",
                  "NetMonopoly", "AccessType", "AccessEnable", "AccessTime", "UpSpeed",
                  "DownSpeed",   "ip"};
    keys.insert(keys.end(), middle.begin(), middle.end());
    keys.insert(keys.end(), {"dbm", "StaticDhcpEnable"});
    return attached_device_places(keys);
}

class TopologyDevices : public MeshTest {
  protected:
    TopologyDevices()
    {
        g_dev_num = 0;
        g_active_num = 0;
        devices_are(1);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
    }

    static void devices_are(int32_t number)
    {
        when<devapi_get_dev_tol_num>([number](int32_t *count, intptr_t) {
            EXPECT_EQ(*count, 0);
            *count = number;
            return 0;
        });
    }

    // The device as it is reported.
    static Request reported(std::string (*text)(const Place &) = value_of)
    {
        return expected(
                   device_places({"SpeedLimit", "DownLimit", "UpLimit", "GreennetProtectEnable"}),
                   text)
            .with("DevType", R"("0")")
            .with("DevFactory", R"("unknow")")
            .with("DevModle", R"("3")")
            .with("OS", R"("3")")
            .with("NetStatus", R"("LinkSta")")
            .with("NetMonopoly", R"("0")")
            .with("AccessTime", R"("100")");
    }

    std::string devices(int32_t kind = 1)
    {
        return report([=](cJSON *array) { return put_to_json(&array, 5, kind); }, "[]");
    }

    // The one device's value under the key.
    std::string value(const char *key)
    {
        const Json array = parse(devices());
        const cJSON *item = cJSON_GetObjectItem(cJSON_GetArrayItem(array.get(), 0), key);
        return item != nullptr ? item->valuestring : "(none)";
    }

    AdBaseInfo device = attached_device();
};

// ---- Child routers with their stations ---------------------------------------------------------

inline const Places kRouterPlaces = select(
    kChildRouterRecord, {"RouterDeviceID", "Name", "Mac", "NetStatus", "ChildRouterAccessType",
                         "UpSpeed", "DownSpeed", "ip", "FWVersion", "FWDATA", "UpTime",
                         "DeviceType", "AreaCode", "HWVersion", "Wlan0Mac", "Wlan1Mac", "dbm"});

inline Request station(std::string (*text)(const Place &) = value_of)
{
    return expected(device_places({"GreennetProtectEnable", "SpeedLimit", "DownLimit", "UpLimit"}),
                    text)
        .with("DevModle", R"("Tessaline")")
        .with("OS", R"("3")")
        .with("AccessTime", R"("100")");
}

class TopologyChildRouters : public MeshTest {
  protected:
    TopologyChildRouters()
    {
        child_routers_are({7});
        child_router_is(child_router());
    }

    static void stations_are(const std::vector<int32_t> &indexes, int32_t count)
    {
        when<devapi_get_childsta_list>([=](ChildStationList *list, const char *) {
            std::copy(indexes.begin(), indexes.end(), list->indexes);
            list->count = count;
            return 0;
        });
    }
    static void station_is(const AdBaseInfo &record)
    {
        writes<devapi_get_childsta_base_info>(record);
    }

    static std::string with_stations(const std::string &stations,
                                     const Request &router = expected(kRouterPlaces))
    {
        return router.with("ChildBaseInfo", stations).json();
    }

    std::string routers() { return report(json_get_child_router_topo_info, "[]"); }
    std::string router(const ChildRouterInfo &record)
    {
        return report([&](cJSON *object) { return json_insert_childrouter_info(object, &record); });
    }
    std::string stations(const char *mac = "the mac")
    {
        return report([=](cJSON *array) { json_get_childsta_info(array, mac); }, "[]");
    }
    std::string station_object(AdBaseInfo *record)
    {
        return report([=](cJSON *object) { return json_insert_childsta_info(object, record); });
    }
};
