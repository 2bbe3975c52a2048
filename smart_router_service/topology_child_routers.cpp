// SPDX-License-Identifier: MIT
// The child routers in the topology report, each with its stations.
#include "topology_report.h"

using namespace smart_router;

namespace {

// The log lines for an entry that memory ran out for.
constexpr char kNoRouter[] = "create child_router_itme err\n";
constexpr char kNoStation[] = "create child_sta_itme err\n";

} // namespace

// ---- Child routers -----------------------------------------------------------------------------

int32_t json_get_child_router_topo_info(cJSON *array)
{
    if (array == nullptr) {
        return -1;
    }
    ChildRouterList children = {};
    devapi_get_childrouter_list(&children);
    if (devapi_call_tslink_set_topo_speed() != 0) {
        log_error("call tslink set topo speed failed!\n");
    }
    for (size_t at = 0; at < clamped(children.count, MESH_MAX_CHILD_ROUTERS); ++at) {
        JsonItem object(cJSON_CreateObject());
        if (object.get() == nullptr) {
            log_error(kNoRouter);
            return -1;
        }
        ChildRouterInfo router = {};
        const int32_t result = devapi_get_childrouter_info(&router, children.identifiers[at]);
        if (result != 0) {
            LOG_ERROR("get child_router_info err %d\n", result);
            continue;
        }
        if (json_insert_childrouter_info(object.get(), &router) != 0) {
            log_error(kNoRouter);
            return -1;
        }
        cJSON *stations = cJSON_CreateArray();
        if (stations == nullptr) {
            log_error("create child_array err!\n");
            continue;
        }
        json_get_childsta_info(stations, Ended(router.Mac).text());
        cJSON_AddItemToObjectCS(object.get(), "ChildBaseInfo", stations);
        cJSON_AddItemToArray(array, object.release());
    }
    return 0;
}

namespace {

constexpr auto kReportedRouter = Fields{
    FIELD(ChildRouterInfo, RouterDeviceID),
    FIELD(ChildRouterInfo, Name),
    FIELD(ChildRouterInfo, Mac),
    FIELD(ChildRouterInfo, NetStatus),
    FIELD(ChildRouterInfo, ChildRouterAccessType),
    FIELD(ChildRouterInfo, UpSpeed),
    FIELD(ChildRouterInfo, DownSpeed),
    FIELD(ChildRouterInfo, ip),
    FIELD(ChildRouterInfo, FWVersion),
    FIELD(ChildRouterInfo, FWDATA),
    FIELD(ChildRouterInfo, UpTime),
    FIELD(ChildRouterInfo, DeviceType),
    FIELD(ChildRouterInfo, AreaCode),
    FIELD(ChildRouterInfo, HWVersion),
    FIELD(ChildRouterInfo, Wlan0Mac),
    FIELD(ChildRouterInfo, Wlan1Mac),
    FIELD(ChildRouterInfo, dbm),
};

} // namespace

int32_t json_insert_childrouter_info(cJSON *obj, const ChildRouterInfo *router)
{
    if (obj == nullptr || router == nullptr) {
        log_error("child_router_info is NULL\n");
        return -1;
    }
    Reply reply;
    reply.fields(kReportedRouter, router);
    Model model;
    read_model(model);
    if (holds_any_case(model, kOperatorModel)) {
        cJSON *links = mesh_links_of(*router);
        if (links != nullptr) {
            reply.add("MeshInfo", links);
        }
    }
    return reply.join(obj) ? 0 : -1;
}

// ---- Stations of a child router ----------------------------------------------------------------

void json_get_childsta_info(cJSON *array, const char *mac)
{
    if (array == nullptr || mac == nullptr) {
        log_error("param is NULL\n");
        return;
    }
    ChildStationList stations = {};
    devapi_get_childsta_list(&stations, mac);
    for (size_t at = 0; at < clamped(stations.count, MESH_MAX_STATIONS); ++at) {
        JsonItem object(cJSON_CreateObject());
        if (object.get() == nullptr) {
            log_error(kNoStation);
            return;
        }
        AdBaseInfo station = {};
        station.HostIndex = stations.indexes[at];
        if (devapi_get_childsta_base_info(&station) != 0) {
            log_error("get ad_base info err\n");
            continue;
        }
        if (json_insert_childsta_info(object.get(), &station) != 0) {
            log_error(kNoStation);
            return;
        }
        cJSON_AddItemToArray(array, object.release());
    }
}

namespace {

// The keys of a station after those of each attached device.
constexpr auto kStationEnd = Fields{
    FIELD_IN(ReportedDevice, info, GreennetProtectEnable),
    kDeviceLimits,
    FIELD_AS(ReportedDevice, info.Dbm, "dbm"),
    FIELD_IN(ReportedDevice, info, StaticDhcpEnable),
};

} // namespace

int32_t json_insert_childsta_info(cJSON *obj, AdBaseInfo *station)
{
    if (obj == nullptr || station == nullptr) {
        log_error("child_router_info is NULL\n");
        return -1;
    }
    put_elapsed(station, zone_hours());
    ReportedDevice reported = {};
    reported.info = *station;
    complete_station(&reported);
    if (reported.info.ByName[0] == '\0') {
        assign(reported.info.ByName, reported.info.Name);
    }
    Reply reply;
    reply.fields(kAttachedDevice, &reported);
    reply.fields(kStationEnd, &reported);
    return reply.join(obj) ? 0 : -1;
}
