// SPDX-License-Identifier: MIT
// The topology report: the whole mesh in one reply, from the main router's point of view.
#include "topology_report.h"

using namespace smart_router;

// The number of devices in the report, and how many of them are attached to the main router. Agents
// read both after a report.
int32_t g_dev_num = 0;
int32_t g_active_num = 0;

int32_t json_get_tsnk_topo_info(cJSON *obj)
{
    constexpr const char *kFailure = "Create mainrouter json error";
    JsonItem router(cJSON_CreateObject());
    if (router.get() == nullptr || json_get_hg_base_info_copy(router.get()) != 0) {
        return refuse(obj, kFailure);
    }
    Reply reply;
    reply.add("MainRouter", router.release());
    JsonItem children(cJSON_CreateArray());
    if (children.get() != nullptr) {
        const bool complete = json_get_child_router_topo_info(children.get()) == 0;
        reply.add("ChildRouter", complete ? children.release() : nullptr);
    }
    reply.success();
    return answer(obj, reply, kFailure);
}

// ---- The main router ---------------------------------------------------------------------------

namespace {

// The main router's record, and the values that are reported with it.
struct ReportedRouter {
    HgBaseInfo base;
    char NetQuality[2];
};

constexpr auto kRouter = Fields{
    FIELD_IN(ReportedRouter, base, Name),
    FIELD_IN(ReportedRouter, base, Mac),
    FIELD_IN(ReportedRouter, base, NetStatus),
    FIELD_IN(ReportedRouter, base, UpSpeed),
    FIELD_IN(ReportedRouter, base, DownSpeed),
    FIELD_IN(ReportedRouter, base, WiFiStatus1),
    FIELD_IN(ReportedRouter, base, WiFiStatus2),
    FIELD_IN(ReportedRouter, base, SSID1),
    FIELD_IN(ReportedRouter, base, SSID2),
    FIELD_IN(ReportedRouter, base, ip),
    FIELD_IN(ReportedRouter, base, HWVersion),
    FIELD_IN(ReportedRouter, base, FWVersion),
    FIELD_IN(ReportedRouter, base, FWDATA),
    FIELD_IN(ReportedRouter, base, UpTime),
    FIELD_IN(ReportedRouter, base, WanUptime),
    FIELD_IN(ReportedRouter, base, DeviceType),
    FIELD_IN(ReportedRouter, base, AreaCode),
    FIELD_IN(ReportedRouter, base, ConfiguerStatus),
    FIELD_AS(ReportedRouter, base.WanLinkMode, "WanConMode"),
    FIELD_IN(ReportedRouter, base, AddressType),
    FIELD_IN(ReportedRouter, base, LedLight),
    FIELD_IN(ReportedRouter, base, LedSwitch),
    FIELD_AS(ReportedRouter, base.Cpu, "cpuusage"),
    FIELD_AS(ReportedRouter, base.Memory, "ramusage"),
    FIELD_IN(ReportedRouter, base, QosAcceleratorEnable),
    FIELD_IN(ReportedRouter, base, QQGameAcceleratorEnable),
    FIELD_IN(ReportedRouter, base, FireWallEnable),
    FIELD(ReportedRouter, NetQuality),
    FIELD_IN(ReportedRouter, base, Wlan0Mac),
    FIELD_IN(ReportedRouter, base, Wlan1Mac),
};

constexpr auto kLinkToChild = Fields{
    FIELD(MeshLink, nexthopMAC),
    FIELD(MeshLink, dbm),
};

// Devices have two spellings for a radio that is on.
template <size_t width> void put_radio_state(char (&state)[width])
{
    copy_text(state, holds_any_case(state, "up") || holds(state, "1") ? "1" : "0");
}

// The links to the child routers. Result: false when there is no memory for the list.
bool add_mesh_links(Reply &router)
{
    ChildRouterList children = {};
    devapi_get_childrouter_list(&children);
    cJSON *links = cJSON_CreateArray();
    if (links == nullptr) {
        log_error("create mesh_json err");
        return false;
    }
    router.add("MeshInfo", links);
    const size_t count = clamped(children.count, MESH_MAX_CHILD_ROUTERS);
    for (size_t at = 0; at < count && router.complete(); ++at) {
        MeshLink link = {};
        if (devapi_get_router_mesh_info(&link, children.identifiers[at]) == 0) {
            router.append(links, kLinkToChild, &link);
        }
    }
    return true;
}

// The child routers attached to the main router itself. Result: false when there is no memory for
// the list.
bool add_children(Reply &router, const BridgeMac &bridge)
{
    cJSON *list = cJSON_CreateArray();
    if (list == nullptr) {
        log_error("create childinfo_json err");
        return false;
    }
    router.add("ChildInfo", list);
    ChildRouterList children = {};
    devapi_get_childrouter_list(&children);
    const size_t count = clamped(children.count, MESH_MAX_CHILD_ROUTERS);
    for (size_t at = 0; at < count && router.complete(); ++at) {
        ChildMeshInfo child = {};
        if (devapi_get_child_mesh_info(&child, children.identifiers[at]) == 0 &&
            holds(child.ParentMac, Ended(bridge).text())) {
            router.append(list, kChildMac, &child);
        }
    }
    return true;
}

// The part of the report about the mesh, which depends on the model; some models have none. Result:
// false when there is no memory for it, and then the report of the main router ends here.
bool add_mesh(Reply &router, bool is_operator_model, const AreaCode &area)
{
    BridgeMac bridge;
    read_bridge_mac(bridge);
    if (is_operator_model) {
        return !wants_mesh_links(area) || add_mesh_links(router);
    }
    return devapi_get_mesh_type() != 2 || add_children(router, bridge);
}

// Appends the devices attached to the main router, or the reason why there are none.
void add_devices(Reply &router)
{
    JsonItem devices(cJSON_CreateArray());
    if (devices.get() == nullptr) {
        router.text(kFailReason, "cJSON create array failed!");
        return;
    }
    g_dev_num = 0;
    g_active_num = 0;
    cJSON *list = devices.get();
    if (put_to_json(&list, 0, 1) == -1) {
        router.text(kFailReason, "get main base info error!");
    } else {
        router.add("MainBaseInfo", devices.release());
    }
}

} // namespace

int32_t json_get_hg_base_info_copy(cJSON *obj)
{
    Reply reply;
    ReportedRouter router = {};
    if (devapi_get_hg_base_info(&router.base) != 0) {
        reply.text(kFailReason, "get base info error!");
        return reply.join(obj) ? 0 : -1;
    }
    Model model;
    read_model(model);
    const bool is_operator_model = holds(model, kOperatorModel);
    if (is_operator_model && contains(router.base.AreaCode, "ARVEN")) {
        copy_text(router.base.AreaCode, "ARVEN");
    }
    put_radio_state(router.base.WiFiStatus1);
    put_radio_state(router.base.WiFiStatus2);
    copy_text(router.NetQuality, "0");
    reply.fields(kRouter, &router);
    if (add_mesh(reply, is_operator_model, router.base.AreaCode)) {
        add_devices(reply);
    }
    return reply.join(obj) ? 0 : -1;
}

// ---- The devices attached to the main router ---------------------------------------------------

namespace {

// The number of devices that apps accept in one report.
constexpr int32_t kMostDevices = 32;

// The keys of a device after those that it shares with the station of a child router.
constexpr auto kDeviceEnd = Fields{
    kDeviceLimits,
    FIELD_IN(ReportedDevice, info, GreennetProtectEnable),
    FIELD_AS(ReportedDevice, info.Dbm, "dbm"),
    FIELD_IN(ReportedDevice, info, StaticDhcpEnable),
};

// Writes the text to a field that has a value, and empties a field that has none.
template <size_t width> void put_if_known(char (&field)[width], const char *text)
{
    copy_text(field, holds(field, "NULL") ? "" : text);
}

template <size_t width> void empty_if_unknown(char (&field)[width])
{
    if (holds(field, "NULL")) {
        field[0] = '\0';
    }
}

// Converts the texts of the device to what apps expect here: empty texts for missing values, and
// codes, most of which are the same for all devices.
void complete_device(ReportedDevice *device)
{
    AdBaseInfo &info = device->info;
    if (info.ByName[0] == '\0' || holds(info.ByName, "NULL")) {
        assign(info.ByName, info.Name);
    }
    copy_text(device->DevModle, holds(info.DevType, "NULL") ? "" : "3");
    put_if_known(info.DevType, holds(info.DevType, "Computer") ? "3" : "0");
    put_if_known(info.DevFactory, "unknow"); // the manufacturer is not disclosed
    put_if_known(info.OS, "3");
    put_if_known(info.NetMonopoly, "0");
    // NetStatus only shows whether there is a state; LinkStatus is the state of the link.
    if (!holds(info.NetStatus, "NULL")) {
        assign(info.NetStatus, info.LinkStatus);
    } else {
        info.NetStatus[0] = '\0';
    }
    empty_if_unknown(info.Mac);
    empty_if_unknown(info.UID);
    empty_if_unknown(info.Name);
    empty_if_unknown(info.Version);
    empty_if_unknown(info.ip);
    if (holds(info.AccessTime, "NULL")) {
        info.AccessTime[0] = '\0';
    } else {
        const int32_t hours = zone_hours();
        put_elapsed(&info, devapi_get_systerm_timetype() == 1 ? hours : 0);
    }
}

} // namespace

int32_t put_to_json(cJSON **array, intptr_t argument, int32_t kind)
{
    if (array == nullptr || *array == nullptr) {
        return -1;
    }
    int32_t count = 0;
    int32_t result = devapi_get_dev_tol_num(&count, argument);
    if (result != 0) {
        LOG_ERROR("get total limit fail ret=%d\n", result);
        return result;
    }
    LOG_DEBUG("get total limit = %d\n", count);
    for (int32_t at = 0; at < count; ++at) {
        ReportedDevice device = {};
        device.info.Kind = kind;
        device.info.HostIndex = at + 1;
        if (dev_is_exist(device.info.HostIndex) != 0) {
            continue;
        }
        result = devapi_get_ad_base_info(&device.info);
        if (result == kNoDevice) {
            continue;
        }
        if (result != 0) {
            LOG_ERROR("%s %d get ad base fail ret=%d\n", __FILE__, __LINE__, result);
            return -1;
        }
        // The counters are exported: other code may have set them to any value.
        if (g_dev_num < INT32_MAX) {
            ++g_dev_num;
        }
        if (g_dev_num > kMostDevices) {
            return 0;
        }
        if (kind == 1 && g_active_num < INT32_MAX) {
            ++g_active_num;
        }
        complete_device(&device);
        JsonItem object(object_of(kAttachedDevice, &device));
        if (object.get() == nullptr || !add_fields(object.get(), kDeviceEnd, &device)) {
            return -1;
        }
        cJSON_AddItemToArray(*array, object.release());
    }
    return 0;
}
