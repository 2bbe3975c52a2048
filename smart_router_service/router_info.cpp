// SPDX-License-Identifier: MIT
// Reports that the agent requests directly: the main router, the devices attached to it, and the
// stations of any router.
#include "router_info.h"

#include <stdio.h>

using namespace smart_router;

// ---- The main router ---------------------------------------------------------------------------

namespace {

constexpr auto kRouterInBrief = Fields{
    FIELD(HgBaseInfo, DeviceType), FIELD(HgBaseInfo, WiFiStatus1), FIELD(HgBaseInfo, WiFiStatus2),
    FIELD(HgBaseInfo, Name),       FIELD(HgBaseInfo, FWVersion),
};

constexpr auto kLoad = Fields{
    FIELD(DevStatusInfo, Cpu),
    FIELD(DevStatusInfo, Memory),
};

constexpr auto kLanAddress = Fields{FIELD_AS(LanIpInfo, GatewayLanIP, "LanIp")};

constexpr auto kWanNeighbours = Fields{
    FIELD(WanIpInfo, WanGateWay),
    FIELD(WanIpInfo, Dns),
};

constexpr auto kRouterAtLength = Fields{
    FIELD(HgBaseInfo, Mac),
    FIELD(HgBaseInfo, UpSpeed),
    FIELD(HgBaseInfo, DownSpeed),
    FIELD(HgBaseInfo, SSID1),
    FIELD(HgBaseInfo, SSID2),
    FIELD(HgBaseInfo, HWVersion),
    FIELD(HgBaseInfo, FWDATA),
    FIELD(HgBaseInfo, UpTime),
    FIELD(HgBaseInfo, WanUptime),
    FIELD(HgBaseInfo, ConfiguerStatus),
    FIELD_AS(HgBaseInfo, WanLinkMode, "WanConMode"),
    FIELD(HgBaseInfo, AddressType),
    FIELD_AS(HgBaseInfo, Cpu, "cpuusage"),
    FIELD_AS(HgBaseInfo, Memory, "ramusage"),
    FIELD(HgBaseInfo, FireWallEnable),
};

constexpr auto kRadioAddresses = Fields{
    FIELD(HgBaseInfo, Wlan0Mac),
    FIELD(HgBaseInfo, Wlan1Mac),
};

bool is_connected(const WanIpInfo &wan)
{
    return holds(wan.ConnectionState, "Connected") || holds(wan.ConnectionState, "Connecting");
}

} // namespace

int32_t json_get_main_router_info(cJSON *obj)
{
    constexpr const char *kFailure = "get base info error!";
    AreaCode area;
    read_area_code(area);
    LOG_DEBUG("area_code = %s\n", Ended(area).text());
    DevStatusInfo status;
    LanIpInfo lan;
    WanIpInfo wan;
    HgBaseInfo base;
    const bool has_status = read_or_empty<devapi_get_dev_status_info>(status);
    const bool has_lan = read_or_empty<devapi_get_lan_ip_info>(lan);
    const bool has_wan = read_or_empty<devapi_get_wan_ip_info>(wan);
    const bool has_base = read_or_empty<devapi_get_hg_base_info>(base);
    // Partial information is still reported.
    if (!has_status && !has_lan && !has_wan && !has_base) {
        return refuse(obj, kFailure);
    }
    SuccessReply reply;
    reply.text("NetStatus", is_connected(wan) ? "1" : "0");
    reply.fields(kRouterInBrief, &base);
    reply.text("ip", wan.ip, sizeof wan.ip);
    if (wants_short_report(area)) {
        reply.fields(kLoad, &status);
        reply.fields(kLanAddress, &lan);
        reply.fields(kWanNeighbours, &wan);
    } else {
        reply.fields(kRouterAtLength, &base);
        reply.text("NetQuality", "0");
        reply.fields(kRadioAddresses, &base);
    }
    return answer(obj, reply, kFailure);
}

// ---- The devices attached to the main router ---------------------------------------------------

namespace {

constexpr auto kDevice = Fields{
    FIELD(AdBaseInfo, AccessType), FIELD(AdBaseInfo, NetStatus),  FIELD(AdBaseInfo, AccessEnable),
    FIELD(AdBaseInfo, Mac),        FIELD(AdBaseInfo, Name),       FIELD(AdBaseInfo, ByName),
    FIELD(AdBaseInfo, DevFactory), FIELD(AdBaseInfo, AccessTime), FIELD(AdBaseInfo, ip),
    FIELD(AdBaseInfo, UpSpeed),    FIELD(AdBaseInfo, DownSpeed),
};

const char *kind_code(const AdBaseInfo &device)
{
    if (holds(device.DevType, "Computer")) {
        return "3";
    }
    return holds(device.DevType, "Phone") ? "1" : "0";
}

// The app's codes for a cable and for each band.
const char *access_code(const AdBaseInfo &device)
{
    if (holds(device.AccessCode, "0")) {
        return "1";
    }
    if (!holds(device.AccessCode, "1")) {
        return "0";
    }
    SsidInfo ssid = {};
    ssid.SSIDIndex = number_in(device.SSIDIndex);
    if (devapi_get_ssid_info(&ssid) != 0) {
        return "0";
    }
    return number_in(ssid.Type) != 0 ? "4" : "2";
}

// Devices report kilobits, the app expects bytes.
template <size_t width> void put_bytes_per_second(char (&speed)[width])
{
    const double kilobits = strtod(Ended(speed).text(), nullptr);
    snprintf(speed, width, "%.02f", kilobits * 1000.0 * 0.125);
}

// A new object for the device; null when memory ran out.
cJSON *device_object(AdBaseInfo &info)
{
    // The app expects a code as the type; the type as the device reports it becomes the model.
    JsonItem object(cJSON_CreateObject());
    bool complete = object.get() != nullptr && add_text(object.get(), "DevType", kind_code(info)) &&
                    add_text(object.get(), "DevModle", info.DevType, sizeof info.DevType);
    // The app has a code for an unknown operating system, but none for known ones.
    if (complete && info.OS[0] == '\0') {
        complete = add_text(object.get(), "OS", "0");
    }
    const char *online = number_in(info.NetStatus) != 0 ? "1" : "0";
    copy_text(info.AccessType, access_code(info));
    copy_text(info.NetStatus, online);
    copy_text(info.AccessEnable, online);
    info.DevFactory[0] = '\0';
    put_bytes_per_second(info.UpSpeed);
    put_bytes_per_second(info.DownSpeed);
    return complete && add_fields(object.get(), kDevice, &info) ? object.release() : nullptr;
}

} // namespace

int32_t json_get_main_router_baseinfo(cJSON *obj)
{
    Reply reply;
    cJSON *list = reply.list("MainBaseInfo");
    int32_t count = 0;
    if (minus_one(devapi_get_host_num(&count))) {
        count = 0;
    }
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        AdBaseInfo device = {};
        device.HostIndex = at + 1;
        const int32_t result = devapi_get_ad_base_info(&device);
        if (minus_one(result)) {
            break;
        }
        if (result != kNoDevice && number_in(device.LinkStatus) != 0) {
            reply.append(list, device_object(device));
        }
    }
    return reply.join(obj) ? 0 : -1;
}

// ---- The stations of a router ------------------------------------------------------------------

namespace {

constexpr int32_t kMostStations = 32;

// A new object for a station of a router in the parameter tree; null when memory ran out.
cJSON *station_object(const AdBaseInfo &info)
{
    ReportedDevice station = {};
    station.info = info;
    complete_station(&station);
    put_elapsed(&station.info, zone_hours());
    JsonItem object(cJSON_CreateObject());
    const bool complete = object.get() != nullptr &&
                          add_text(object.get(), "Mac", station.info.Mac, sizeof info.Mac) &&
                          add_fields(object.get(), kMeshStation, &station) &&
                          add_fields(object.get(), kStationDetails, &station);
    return complete ? object.release() : nullptr;
}

} // namespace

int32_t json_get_router_sta_info(cJSON *obj, const char *which, const char *path)
{
    const bool is_main = which != nullptr && strcmp(which, "main") == 0;
    Reply reply;
    cJSON *list = reply.list(is_main ? "MainBaseInfo" : "ChildBaseInfo");
    Allocated<StationList> stations;
    size_t count = 0;
    if (stations.get() != nullptr && path != nullptr) {
        devapi_get_node_sta_info_by_newmetod(stations.get(), path);
        count = clamped(stations->count, kMostStations);
    }
    for (size_t at = 0; at < count && reply.complete(); ++at) {
        reply.append(list, station_object(stations->stations[at]));
    }
    if (stations.get() == nullptr || !reply.join(obj)) {
        LOG_ERROR("%s %d cjson create array failed\n", __FILE__, __LINE__);
        return -1;
    }
    return 0;
}

// ---- What other reports share ------------------------------------------------------------------

bool smart_router::wants_short_report(const AreaCode &area)
{
    return contains(area, "TH_OLV", Case::kIsIgnored);
}

bool smart_router::add_own_mac(cJSON *object)
{
    char mac[32] = "";
    devapi_get_iotagtd_device_mac(mac, sizeof mac);
    return add_text(object, kParentMac, mac, sizeof mac);
}
