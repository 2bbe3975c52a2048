// SPDX-License-Identifier: MIT
// The child routers in the topology report, each with its stations.
#pragma once

#include "mesh_fixture.h"
#include "topology_report.h"

inline const Places kRouterPlaces = select(
    kChildRouterRecord, {"RouterDeviceID", "Name", "Mac", "NetStatus", "ChildRouterAccessType",
                         "UpSpeed", "DownSpeed", "ip", "FWVersion", "FWDATA", "UpTime",
                         "DeviceType", "AreaCode", "HWVersion", "Wlan0Mac", "Wlan1Mac", "dbm"});

inline Places station_places()
{
    Places places = kAttachedDevice;
    places.push_back({"DevModle", 0, 32});
    return select(places, {"Mac",
                           "UID",
                           "DevType",
                           "DevFactory",
                           "DevModle",
                           "Name",
                           "ByName",
                           "OS",
                           "Version",
                           "NetStatus",
                           "NetMonopoly",
                           "AccessType",
                           "AccessEnable",
                           "AccessTime",
                           "UpSpeed",
                           "DownSpeed",
                           "ip",
                           "GreennetProtectEnable",
                           "SpeedLimit",
                           "DownLimit",
                           "UpLimit",
                           "dbm",
                           "StaticDhcpEnable"});
}

inline Request station(std::string (*text)(const Place &) = value_of)
{
    return expected(station_places(), text)
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
        recording_device::when<devapi_get_childsta_list>([=](ChildStationList *list, const char *) {
            std::copy(indexes.begin(), indexes.end(), list->indexes);
            list->count = count;
            return 0;
        });
    }
    static void station_is(const AdBaseInfo &record)
    {
        recording_device::when<devapi_get_childsta_base_info>([=](AdBaseInfo *info) {
            *info = record;
            return 0;
        });
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
