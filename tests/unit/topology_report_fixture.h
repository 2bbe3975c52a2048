// SPDX-License-Identifier: MIT
// The main router in the topology report.
#pragma once

#include "mesh_fixture.h"
#include "topology_report.h"

inline const std::string kBridge = "3C:6A:D2:10:4F:20";

inline const Names kRouterKeys = {"Name",
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

class TopologyReport : public MeshTest {
  protected:
    TopologyReport()
    {
        fill_places(&base, kMainRouterRecord, value_of);
        recording_device::when<devapi_get_hg_base_info>([this](HgBaseInfo *info) {
            *info = base;
            return 0;
        });
        bridge_mac_is(kBridge);
        child_routers_are({7, 3});
        recording_device::when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t identifier) {
            put(link->nexthopMAC, "hop " + std::to_string(identifier));
            put(link->interface, "ath0");
            put(link->dbm, "-50");
            return 0;
        });
        recording_device::when<devapi_get_child_mesh_info>(
            [](ChildMeshInfo *info, int32_t identifier) {
                put(info->Mac, "backhaul");
                put(info->ChildMac, "child " + std::to_string(identifier));
                put(info->ParentMac, kBridge);
                return 0;
            });
    }

    // The main router's own information, without its mesh and its devices.
    static Request router(std::string (*text)(const Place &) = value_of)
    {
        Request request = expected(select(kMainRouterRecord, kRouterKeys), text)
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
