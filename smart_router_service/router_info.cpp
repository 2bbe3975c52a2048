// The router and station reports that the agent asks for by itself: the main router, and its child
// routers by two ways: the list of relations, and the tree of parameters.
#include "router_info.h"

#include <stdio.h>

using namespace smart_router;

namespace {

// ---- The main router ---------------------------------------------------------------------------

constexpr auto kRouterInBrief = fields_of<HgBaseInfo>({
    FIELD(HgBaseInfo, "DeviceType", DeviceType),
    FIELD(HgBaseInfo, "WiFiStatus1", WiFiStatus1),
    FIELD(HgBaseInfo, "WiFiStatus2", WiFiStatus2),
    FIELD(HgBaseInfo, "Name", Name),
    FIELD(HgBaseInfo, "FWVersion", FWVersion),
});

constexpr auto kWanAddress = fields_of<WanIpInfo>({FIELD(WanIpInfo, "ip", ip)});

constexpr auto kLoad = fields_of<DevStatusInfo>({
    FIELD(DevStatusInfo, "Cpu", Cpu),
    FIELD(DevStatusInfo, "Memory", Memory),
});

constexpr auto kLanAddress = fields_of<LanIpInfo>({FIELD(LanIpInfo, "LanIp", GatewayLanIP)});

constexpr auto kWanNeighbours = fields_of<WanIpInfo>({
    FIELD(WanIpInfo, "WanGateWay", WanGateWay),
    FIELD(WanIpInfo, "Dns", Dns),
});

constexpr auto kRouterAtLength = fields_of<HgBaseInfo>({
    FIELD(HgBaseInfo, "Mac", Mac),
    FIELD(HgBaseInfo, "UpSpeed", UpSpeed),
    FIELD(HgBaseInfo, "DownSpeed", DownSpeed),
    FIELD(HgBaseInfo, "SSID1", SSID1),
    FIELD(HgBaseInfo, "SSID2", SSID2),
    FIELD(HgBaseInfo, "HWVersion", HWVersion),
    FIELD(HgBaseInfo, "FWDATA", FWDATA),
    FIELD(HgBaseInfo, "UpTime", UpTime),
    FIELD(HgBaseInfo, "WanUptime", WanUptime),
    FIELD(HgBaseInfo, "ConfiguerStatus", ConfiguerStatus),
    FIELD(HgBaseInfo, "WanConMode", WanLinkMode),
    FIELD(HgBaseInfo, "AddressType", AddressType),
    FIELD(HgBaseInfo, "cpuusage", Cpu),
    FIELD(HgBaseInfo, "ramusage", Memory),
    FIELD(HgBaseInfo, "FireWallEnable", FireWallEnable),
});

constexpr auto kRadioAddresses = fields_of<HgBaseInfo>({
    FIELD(HgBaseInfo, "Wlan0Mac", Wlan0Mac),
    FIELD(HgBaseInfo, "Wlan1Mac", Wlan1Mac),
});

// One operator's app shows the router on a single small page.
bool wants_short_report(const AreaCode &area)
{
    return contains(area, "TH_OLV", Case::kIsIgnored);
}

bool is_connected(const WanIpInfo &wan)
{
    return holds(wan.ConnectionState, "Connected") || holds(wan.ConnectionState, "Connecting");
}

// ---- The devices attached to the main router ---------------------------------------------------

// The result of devapi_get_ad_base_info() for an index without a device.
constexpr int32_t kNoDevice = 1000;

constexpr auto kDeviceKind = fields_of<ReportedDevice>({
    FIELD(ReportedDevice, "DevType", DevModle),
    FIELD(ReportedDevice, "DevModle", info.DevType),
});

constexpr auto kDevice = fields_of<AdBaseInfo>({
    FIELD(AdBaseInfo, "AccessType", AccessType),
    FIELD(AdBaseInfo, "NetStatus", NetStatus),
    FIELD(AdBaseInfo, "AccessEnable", AccessEnable),
    FIELD(AdBaseInfo, "Mac", Mac),
    FIELD(AdBaseInfo, "Name", Name),
    FIELD(AdBaseInfo, "ByName", ByName),
    FIELD(AdBaseInfo, "DevFactory", DevFactory),
    FIELD(AdBaseInfo, "AccessTime", AccessTime),
    FIELD(AdBaseInfo, "ip", ip),
    FIELD(AdBaseInfo, "UpSpeed", UpSpeed),
    FIELD(AdBaseInfo, "DownSpeed", DownSpeed),
});

const char *kind_code(const AdBaseInfo &device)
{
    if (holds(device.DevType, "Computer")) {
        return "3";
    }
    return holds(device.DevType, "Phone") ? "1" : "0";
}

// What the app calls a cable, and each of the bands.
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

// Devices count in kilobits, the app in bytes.
template <size_t width> void put_bytes_per_second(char (&speed)[width])
{
    const double kilobits = strtod(Ended(speed).text(), nullptr);
    snprintf(speed, width, "%.02f", kilobits * 1000.0 * 0.125);
}

// A new object for the device; null when memory ran out. Systems that the device knows by name are
// left out: the app knows a code for none at all only.
cJSON *device_object(ReportedDevice *device)
{
    AdBaseInfo &info = device->info;
    copy_text(device->DevModle, kind_code(info));
    const char *online = number_in(info.NetStatus) != 0 ? "1" : "0";
    copy_text(info.AccessType, access_code(info));
    copy_text(info.NetStatus, online);
    copy_text(info.AccessEnable, online);
    info.DevFactory[0] = '\0';
    put_bytes_per_second(info.UpSpeed);
    put_bytes_per_second(info.DownSpeed);

    JsonItem object(object_of(kDeviceKind, device));
    const bool complete = object.get() != nullptr &&
                          (info.OS[0] != '\0' || add_text(object.get(), "OS", "0")) &&
                          add_fields(object.get(), kDevice, &info);
    return complete ? object.release() : nullptr;
}

// ---- Stations ----------------------------------------------------------------------------------

constexpr int32_t kMostStations = 32;

constexpr auto kStation = fields_of<ReportedDevice>({
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
});

constexpr auto kAccessTime = fields_of<ReportedDevice>({
    FIELD(ReportedDevice, "AccessTime", info.AccessTime),
});

constexpr auto kStationDetails = fields_of<ReportedDevice>({
    FIELD(ReportedDevice, "AccessTime", info.AccessTime),
    FIELD(ReportedDevice, "UID", info.UID),
    FIELD(ReportedDevice, "OS", OS),
    FIELD(ReportedDevice, "Version", info.Version),
    FIELD(ReportedDevice, "GreennetProtectEnable", info.GreennetProtectEnable),
    FIELD(ReportedDevice, "SpeedLimit", info.SpeedLimit),
    FIELD(ReportedDevice, "DownLimit", info.DownLimit),
    FIELD(ReportedDevice, "UpLimit", info.UpLimit),
});

// A new object for a station of a router in the tree of parameters; null when memory ran out.
cJSON *station_object(const AdBaseInfo &info)
{
    ReportedDevice station = {};
    station.info = info;
    complete_station(&station);
    put_elapsed(&station.info, zone_hours());
    JsonItem object(cJSON_CreateObject());
    const bool complete = object.get() != nullptr &&
                          add_text(object.get(), "Mac", station.info.Mac, sizeof info.Mac) &&
                          add_fields(object.get(), kStation, &station) &&
                          add_fields(object.get(), kStationDetails, &station);
    return complete ? object.release() : nullptr;
}

// ---- Child routers in the list of relations ----------------------------------------------------

// Ends a list that runs into itself at its last node, so that it can be walked and freed.
template <class Node> void end_list(Node *first)
{
    Node *slow = first;
    Node *fast = first;
    do {
        if (fast == nullptr || fast->next == nullptr) {
            return;
        }
        slow = slow->next;
        fast = fast->next->next;
    } while (slow != fast);
    // They have met in the circle, as far from its entry as the first node is.
    for (slow = first; slow != fast; slow = slow->next) {
        fast = fast->next;
    }
    while (slow->next != fast) {
        slow = slow->next;
    }
    slow->next = nullptr;
}

// The routers of the topology; the device library fills the list and frees it.
class Topology {
  public:
    Topology() : first_(static_cast<TopoNode *>(calloc(1, sizeof(TopoNode)))) {}
    ~Topology()
    {
        if (first_ != nullptr) {
            devapi_free_topo_list(first_);
        }
    }
    Topology(const Topology &) = delete;
    Topology &operator=(const Topology &) = delete;

    TopoNode *first() const { return first_; } // null when memory ran out

  private:
    TopoNode *first_;
};

// The devices attached to a router; the device library appends them to a node of ours.
class AttachedList {
  public:
    AttachedList() : first_(static_cast<NodeBaseInfo *>(calloc(1, sizeof(NodeBaseInfo)))) {}
    ~AttachedList()
    {
        while (first_ != nullptr) {
            NodeBaseInfo *next = first_->next;
            free(first_);
            first_ = next;
        }
    }
    AttachedList(const AttachedList &) = delete;
    AttachedList &operator=(const AttachedList &) = delete;

    NodeBaseInfo *first() const { return first_; } // null when memory ran out

  private:
    NodeBaseInfo *first_;
};

// The main router's level is 1.
constexpr int32_t kFirstChildLevel = 2;

constexpr char kParentMac[] = "ParentMacAddress";

// The kind of the node that only opens a list.
constexpr int32_t kListHead = 1;

constexpr auto kNode = fields_of<NodeDevInfo>({
    FIELD(NodeDevInfo, "ip", ip),
    FIELD(NodeDevInfo, "AccessType", AccessType),
    FIELD(NodeDevInfo, "LinkSpeed", LinkSpeed),
    FIELD(NodeDevInfo, "dbm", dbm),
    FIELD(NodeDevInfo, "FWVersion", FWVersion),
});

constexpr auto kChildRouter = fields_of<ChildRouterInfo>({
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
});

constexpr auto kChildMac = fields_of<ChildMeshInfo>({FIELD(ChildMeshInfo, "childMac", ChildMac)});
constexpr auto kMeshMac = fields_of<ChildMeshInfo>({FIELD(ChildMeshInfo, "childMac", Mac)});

template <size_t width> bool is_unknown(const char (&field)[width])
{
    return field[0] == '\0' || holds_any_case(field, "NULL");
}

// Adds the MAC address in the form in which users know it, or as it stands.
template <size_t width>
bool add_view_mac(cJSON *object, const char *key, const char (&mac)[width])
{
    char view[VIEW_MAC_SIZE] = "";
    if (devapi_get_viewmac_by_mac(Ended(mac).text(), view) == 0) {
        return add_text(object, key, view, sizeof view);
    }
    return add_text(object, key, mac, width);
}

// Adds the MAC address by which the platform knows the router.
bool add_own_mac(cJSON *object, const char *key)
{
    char mac[32] = "";
    if (devapi_get_iotagtd_device_mac(mac, sizeof mac) != 0) {
        mac[0] = '\0';
    }
    return add_text(object, key, mac, sizeof mac);
}

// Replaces what the topology does not know by what the child router says.
template <size_t width> bool replace(cJSON *object, const char *key, const char (&value)[width])
{
    cJSON_DeleteItemFromObject(object, key);
    return add_text(object, key, value, width);
}

// Adds the routers that hang from the one with the MAC address. Result: false when memory ran out.
bool add_children(cJSON *object, const char *router_mac)
{
    Reply reply;
    cJSON *list = reply.list("ChildInfo");
    if (list == nullptr) {
        LOG_ERROR("create childinfo_json err");
        return false;
    }
    ChildRouterList children;
    read_or_empty<devapi_get_childrouter_list>(children);
    for (size_t at = 0; at < clamped(children.count, MESH_MAX_CHILD_ROUTERS); ++at) {
        ChildMeshInfo child;
        if (read_or_empty<devapi_get_child_mesh_info>(child, children.identifiers[at]) &&
            holds(child.ParentMac, router_mac)) {
            reply.append(list, is_unknown(child.ChildMac) ? kMeshMac : kChildMac, &child);
        }
    }
    return reply.join(object);
}

// Completes a child router that is an attached device too. Result: false when it is none, or when
// memory ran out.
bool add_child_router(cJSON *object, const NodeDevInfo &node)
{
    const Ended mac(node.Mac);
    LOG_DEBUG("child router mac = %s\n", mac.text());
    int32_t index = 0;
    if (devapi_get_hostindex_by_mac(mac.text(), &index) != 1) {
        LOG_ERROR("mac:%s not found in host\n", mac.text());
        return false;
    }
    LOG_DEBUG("get host_index = %d\n", index);
    ChildRouterInfo router;
    read_or_empty<devapi_get_childrouter_info>(router, index);
    BridgeMac bridge;
    if (!add_fields(object, kChildRouter, &router) ||
        (is_unknown(node.FWVersion) && !replace(object, "FWVersion", router.FWVersion)) ||
        (is_unknown(node.ip) && !replace(object, "ip", router.ip))) {
        return false;
    }
    read_bridge_mac(bridge);
    const bool has_parent = holds(router.ParentMac, Ended(bridge).text())
                                ? add_own_mac(object, kParentMac)
                                : add_view_mac(object, kParentMac, router.ParentMac);
    return has_parent && (devapi_get_mesh_type() != 2 || add_children(object, mac.text()));
}

// A new object for a device attached to a router: empty when the device is not known, null when
// memory ran out.
cJSON *attached_object(const NodeBaseInfo &node, const AreaCode &area)
{
    JsonItem object(cJSON_CreateObject());
    ReportedDevice station = {};
    AdBaseInfo &info = station.info;
    int32_t index = 0;
    if (devapi_get_hostindex_by_mac(Ended(node.Mac).text(), &index) == 1) {
        info.HostIndex = index;
    }
    if (devapi_get_childsta_base_info(&info) != 0) {
        return object.release();
    }
    complete_station(&station);
    if (is_unknown(info.ByName)) {
        copy_text(info.ByName, Ended(info.Name).text());
    }
    const bool is_short = wants_short_report(area);
    if (!is_short) {
        put_elapsed(&info, zone_hours());
    }
    const bool complete =
        object.get() != nullptr &&
        add_text(object.get(), "Mac", node.Mac, sizeof node.Mac) &&
        add_fields(object.get(), kStation, &station) &&
        add_text(object.get(), "dbm", info.Dbm, sizeof info.Dbm) &&
        (is_short ? add_fields(object.get(), kAccessTime, &station)
                  : add_fields(object.get(), kStationDetails, &station));
    return complete ? object.release() : nullptr;
}

// ---- Child routers in the tree of parameters ---------------------------------------------------

constexpr char kTree[] = "InternetGatewayDevice.WiFi.MultiAP.APDevice";

constexpr auto kTreeRouter = fields_of<ChildRouterInfo>({
    FIELD(ChildRouterInfo, "Mac", Mac),
    FIELD(ChildRouterInfo, "ip", ip),
    FIELD(ChildRouterInfo, "AccessType", ChildRouterAccessType),
    FIELD(ChildRouterInfo, "LinkSpeed", LinkSpeed),
    FIELD(ChildRouterInfo, "dbm", dbm),
    FIELD(ChildRouterInfo, "FWVersion", FWVersion),
});

// Some apps read the address here.
constexpr auto kTreeAddress = fields_of<ChildRouterInfo>({FIELD(ChildRouterInfo, "ip", ip)});

using Path = char[128];
using Value = char[TOPO_VALUE_SIZE];

// Reads a parameter of a router, or of all of them for position 0. Result: false when that failed.
bool read_parameter(int32_t position, const char *name, Value &value)
{
    Path path;
    if (position == 0) {
        snprintf(path, sizeof path, "%s%s", kTree, name);
    } else {
        snprintf(path, sizeof path, "%s.%d.%s", kTree, position, name);
    }
    memset(value, 0, sizeof value);
    const int32_t result = devapi_topo_xml_getinfo(path, value);
    if (result != 0) {
        LOG_ERROR("%s %d get dev active fail ret=%d\n", __FILE__, __LINE__, result);
        return false;
    }
    return true;
}

// Whether the tree's entry at the position is a child router that is up. Result: false when a
// parameter could not be read.
bool read_is_child(int32_t position, const BridgeMac &bridge, bool *is_child)
{
    Value value;
    *is_child = false;
    if (!read_parameter(position, "X_TS_ParentMACAddress", value)) {
        return false;
    }
    if (is_unknown(value)) { // the main router hangs from nobody
        return true;
    }
    if (!read_parameter(position, "X_TS_Active", value)) {
        return false;
    }
    if (number_in(value) != 1) {
        return true;
    }
    if (!read_parameter(position, "MACAddress", value)) {
        return false;
    }
    *is_child = !holds_any_case(value, Ended(bridge).text());
    return true;
}

// The routers that hang from a router, as an array that belongs to the caller; null when memory ran
// out.
cJSON *children_of(const ChildRouterInfo &router)
{
    JsonItem list(cJSON_CreateArray());
    Allocated<ChildMeshList> children;
    if (list.get() == nullptr || children.get() == nullptr) {
        LOG_ERROR("create childinfo_json err");
        return nullptr;
    }
    if (devapi_get_child_mesh_info_bynewmethod(Ended(router.Mac).text(), children.get()) != 0) {
        return list.release();
    }
    for (size_t at = 0; at < clamped(children->count, MESH_MAX_CHILDREN); ++at) {
        cJSON *child = object_of(kMeshMac, &children->children[at]);
        if (child == nullptr) {
            LOG_ERROR("create childinfo_json err");
            return nullptr;
        }
        cJSON_AddItemToArray(list.get(), child);
    }
    return list.release();
}

// A new object for the child router at the path, with its stations; null when memory ran out.
cJSON *tree_router_object(const char *path, const BridgeMac &bridge)
{
    ChildRouterInfo router = {};
    if (devapi_get_node_dev_info_by_newmetod(path, &router) != 0) {
        router = {};
    }
    const bool hangs_from_us = holds_any_case(router.ParentMac, Ended(bridge).text());
    JsonItem object(cJSON_CreateObject());
    if (object.get() == nullptr || !add_fields(object.get(), kTreeRouter, &router) ||
        !add_fields(object.get(), kChildRouter, &router) ||
        !add_fields(object.get(), kTreeAddress, &router) ||
        !(hangs_from_us ? add_own_mac(object.get(), kParentMac)
                        : add_text(object.get(), kParentMac, router.ParentMac,
                                   sizeof router.ParentMac))) {
        LOG_ERROR("create childinfo_json err");
        return nullptr;
    }
    Model model;
    read_model(model); // asked for in every report, though this one goes by the area alone
    AreaCode area;
    read_area_code(area, sizeof area);
    const bool by_links = wants_mesh_links(area);
    cJSON *mesh = by_links ? mesh_links_of(router) : children_of(router);
    if (mesh == nullptr) {
        return nullptr;
    }
    cJSON_AddItemToObjectCS(object.get(), by_links ? "MeshInfo" : "ChildInfo", mesh);
    json_get_router_sta_info(object.get(), "sub", path);
    return object.release();
}

} // namespace

// ---- The main router ---------------------------------------------------------------------------

int32_t json_get_main_router_info(cJSON *obj)
{
    constexpr char kFailure[] = "get base info error!";
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
    // A gateway that knows part of itself is still worth showing.
    if (!has_status && !has_lan && !has_wan && !has_base) {
        fail(obj, kFailure);
        return -1;
    }
    Reply reply;
    reply.success();
    reply.text("NetStatus", is_connected(wan) ? "1" : "0");
    reply.fields(kRouterInBrief, &base);
    reply.fields(kWanAddress, &wan);
    if (wants_short_report(area)) {
        reply.fields(kLoad, &status);
        reply.fields(kLanAddress, &lan);
        reply.fields(kWanNeighbours, &wan);
    } else {
        reply.fields(kRouterAtLength, &base);
        reply.text("NetQuality", "0");
        reply.fields(kRadioAddresses, &base);
    }
    answer(obj, reply, kFailure);
    return 0;
}

int32_t json_get_main_router_baseinfo(cJSON *obj)
{
    Reply reply;
    cJSON *list = reply.list("MainBaseInfo");
    int32_t count = 0;
    if (minus_one(devapi_get_host_num(&count))) {
        count = 0;
    }
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        ReportedDevice device = {};
        device.info.HostIndex = at + 1;
        const int32_t result = devapi_get_ad_base_info(&device.info);
        if (minus_one(result)) {
            break;
        }
        if (result != kNoDevice && number_in(device.info.LinkStatus) != 0) {
            reply.append(list, device_object(&device));
        }
    }
    return reply.join(obj) ? 0 : -1;
}

int32_t json_get_router_sta_info(cJSON *obj, const char *which, const char *path)
{
    const bool is_main = which != nullptr && strcmp(which, "main") == 0;
    Reply reply;
    cJSON *list = reply.list(is_main ? "MainBaseInfo" : "ChildBaseInfo");
    Allocated<StationList> stations;
    if (stations.get() == nullptr) {
        reply.add(nullptr, nullptr);
    } else if (devapi_get_node_sta_info_by_newmetod(stations.get(), path) == 0) {
        for (size_t at = 0; at < clamped(stations->count, kMostStations); ++at) {
            reply.append(list, station_object(stations->stations[at]));
        }
    }
    if (!reply.join(obj)) {
        LOG_ERROR("%s %d cjson create array failed\n", __FILE__, __LINE__);
        return -1;
    }
    return 0;
}

// ---- Child routers in the list of relations ----------------------------------------------------

void json_get_child_router_baseinfo(const TopoNode *node, cJSON *obj)
{
    AreaCode area;
    read_area_code(area);
    AttachedList attached;
    if (attached.first() == nullptr) {
        return;
    }
    attached.first()->Kind = kListHead;
    const int32_t result = devapi_get_node_baseinfo(node, attached.first());
    end_list(attached.first());
    if (result != 0) {
        return;
    }
    Reply reply;
    cJSON *list = reply.list("ChildBaseInfo");
    for (const NodeBaseInfo *at = attached.first(); at != nullptr; at = at->next) {
        if (at->Kind != kListHead && reply.complete()) {
            reply.append(list, attached_object(*at, area));
        }
    }
    reply.join(obj);
}

int32_t json_get_child_router_info(const TopoNode *node, cJSON *array)
{
    NodeDevInfo info = {};
    const int32_t result = devapi_get_node_dev_info(node, &info);
    if (result != 0) {
        return result;
    }
    JsonItem object(cJSON_CreateObject());
    if (object.get() == nullptr || !add_view_mac(object.get(), "Mac", info.Mac) ||
        !add_fields(object.get(), kNode, &info)) {
        return -1;
    }
    AreaCode area;
    read_area_code(area);
    // One operator's child routers are known to the topology alone.
    if (!contains(area, "OLV", Case::kIsIgnored) && !add_child_router(object.get(), info)) {
        return -1;
    }
    json_get_child_router_baseinfo(node, object.get());
    cJSON_AddItemToArray(array, object.release());
    return 0;
}

int32_t json_get_topo_router_info(cJSON *obj)
{
    Reply reply;
    cJSON *routers = reply.list("ChildRouter");
    char relations[TOPO_RELATION_SIZE + 1] = ""; // one more, for a text without an end
    int32_t mesh = 0;
    int32_t count = 0;
    devapi_get_Multi_Ap_enable(&mesh);
    if (mesh == 1 && devapi_get_topo_relation_ship(relations, TOPO_RELATION_SIZE - 1) == 0 &&
        devapi_get_topo_relation_num(&count) == 0) {
        Topology topology;
        if (topology.first() == nullptr) {
            return -1;
        }
        if (devapi_handle_topo_struct(relations, topology.first()) == 0) {
            devapi_topo_xml_info_list(count, topology.first());
        }
        if (devapi_call_tslink_set_topo_speed() != 0) {
            LOG_ERROR("call tslink set topo speed failed\n");
        }
        end_list(topology.first());
        for (const TopoNode *node = topology.first(); node != nullptr; node = node->next) {
            if (node->level >= kFirstChildLevel && routers != nullptr) {
                json_get_child_router_info(node, routers);
            }
        }
    }
    return reply.join(obj) ? 0 : -1;
}

// ---- Child routers in the tree of parameters ---------------------------------------------------

int32_t json_get_topo_router_agent_info_bynewmethod(cJSON *obj)
{
    BridgeMac bridge;
    read_bridge_mac(bridge);
    Value entries;
    if (!read_parameter(0, "NumberOfEntries", entries)) {
        return -1;
    }
    Reply reply;
    cJSON *routers = reply.list("ChildRouter");
    if (routers == nullptr) {
        LOG_ERROR("create childinfo_json err");
        return -1;
    }
    for (int32_t position = 1, count = number_in(entries); position <= count; ++position) {
        bool is_child = false;
        if (!read_is_child(position, bridge, &is_child)) {
            return -1;
        }
        if (!is_child) {
            continue;
        }
        Path path;
        snprintf(path, sizeof path, "%s.%d.", kTree, position);
        cJSON *router = tree_router_object(path, bridge);
        if (router == nullptr) {
            return -1;
        }
        reply.append(routers, router);
    }
    return reply.join(obj) ? 0 : -1;
}
