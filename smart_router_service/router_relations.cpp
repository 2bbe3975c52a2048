// SPDX-License-Identifier: MIT
// The child routers from the topology's list of relations, which the agent requests directly.
#include "router_info.h"

using namespace smart_router;

// ---- The routers of the topology ---------------------------------------------------------------

namespace {

// Breaks the cycle of a list that contains one, so that the list can be walked and freed.
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
    // They have met in the cycle, as far from its entry as the first node is.
    for (slow = first; slow != fast; slow = slow->next) {
        fast = fast->next;
    }
    while (slow->next != fast) {
        slow = slow->next;
    }
    slow->next = nullptr;
}

// The list of the routers of the topology; the device library fills and frees it.
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

// The main router's level is 1.
constexpr int32_t kFirstChildLevel = 2;

// The report of a child router, or the reason why there is none.
struct RouterReport {
    cJSON *object;  // belongs to the caller; null when the router is left out
    int32_t result; // the device's on its failure; -1 if not an attached device or out of memory
    bool complete;  // false when memory ran out
};

RouterReport report_router(const TopoNode &node);

// Appends the child routers of a topology.
void add_routers(Reply &reply, cJSON *list, const TopoNode *first)
{
    for (const TopoNode *node = first; node != nullptr && reply.complete(); node = node->next) {
        if (node->level < kFirstChildLevel) {
            continue;
        }
        const RouterReport report = report_router(*node);
        if (report.object != nullptr || !report.complete) {
            reply.append(list, report.object);
        }
    }
}

bool is_mesh_on()
{
    int32_t state = 0;
    devapi_get_Multi_Ap_enable(&state);
    return state == 1;
}

} // namespace

int32_t json_get_topo_router_info(cJSON *obj)
{
    Reply reply;
    cJSON *routers = reply.list("ChildRouter");
    if (routers == nullptr) {
        return -1;
    }
    char relations[TOPO_RELATION_SIZE + 1] = ""; // one more byte, for a text without a NUL
    int32_t count = 0;
    if (is_mesh_on() && devapi_get_topo_relation_ship(relations, TOPO_RELATION_SIZE - 1) == 0 &&
        devapi_get_topo_relation_num(&count) == 0) {
        Topology topology;
        if (topology.first() == nullptr) {
            return -1;
        }
        if (devapi_handle_topo_struct(relations, topology.first()) == 0) {
            devapi_topo_xml_info_list(count, topology.first());
        }
        if (devapi_call_tslink_set_topo_speed() != 0) {
            log_error("call tslink set topo speed failed\n");
        }
        end_list(topology.first());
        add_routers(reply, routers, topology.first());
    }
    return reply.join(obj) ? 0 : -1;
}

// ---- One child router --------------------------------------------------------------------------

int32_t json_get_child_router_info(const TopoNode *node, cJSON *array)
{
    if (node == nullptr || array == nullptr) {
        return -1;
    }
    const RouterReport report = report_router(*node);
    if (report.object != nullptr) {
        cJSON_AddItemToArray(array, report.object);
    }
    return report.result;
}

namespace {

constexpr auto kNode = Fields{
    FIELD(NodeDevInfo, ip),  FIELD(NodeDevInfo, AccessType), FIELD(NodeDevInfo, LinkSpeed),
    FIELD(NodeDevInfo, dbm), FIELD(NodeDevInfo, FWVersion),
};

// Adds the MAC address in the form that is shown to users, or unchanged when there is none.
template <size_t width> bool add_view_mac(cJSON *object, const char *key, const char (&mac)[width])
{
    char view[VIEW_MAC_SIZE] = "";
    if (devapi_get_viewmac_by_mac(Ended(mac).text(), view) == 0) {
        return add_text(object, key, view, sizeof view);
    }
    return add_text(object, key, mac, width);
}

// Replaces a value that the topology does not know with that of the child router.
template <size_t width> bool replace(cJSON *object, const char *key, const char (&value)[width])
{
    cJSON_DeleteItemFromObject(object, key);
    return add_text(object, key, value, width);
}

// Appends the routers attached to the one with the MAC address. Result: false when memory ran out.
bool append_children(cJSON *list, const char *router_mac)
{
    bool complete = true;
    ChildRouterList children = {};
    devapi_get_childrouter_list(&children);
    for (size_t at = 0; at < clamped(children.count, MESH_MAX_CHILD_ROUTERS); ++at) {
        ChildMeshInfo child = {};
        if (complete && devapi_get_child_mesh_info(&child, children.identifiers[at]) == 0 &&
            holds(child.ParentMac, router_mac)) {
            complete =
                append_if_possible(list, is_unknown(child.ChildMac) ? kMeshMac : kChildMac, &child);
        }
    }
    return complete;
}

// Finds the child router among the attached devices. Result: false, with a line in the log, when it
// is not among them.
bool find_child_router(const NodeDevInfo &node, int32_t *index)
{
    const Ended mac(node.Mac);
    LOG_DEBUG("child router mac = %s\n", mac.text());
    if (devapi_get_hostindex_by_mac(mac.text(), index) != 1) {
        LOG_ERROR("mac:%s not found in host\n", mac.text());
        return false;
    }
    LOG_DEBUG("get host_index = %d\n", *index);
    return true;
}

// Adds what is known about the child router as an attached device. Result: false when memory ran
// out.
bool add_child_router(cJSON *object, const NodeDevInfo &node, int32_t index)
{
    ChildRouterInfo router = {};
    devapi_get_childrouter_info(&router, index);
    if (!add_fields(object, kMeshRouter, &router) ||
        (is_unknown(node.FWVersion) && !replace(object, "FWVersion", router.FWVersion)) ||
        (is_unknown(node.ip) && !replace(object, "ip", router.ip))) {
        return false;
    }
    BridgeMac bridge;
    read_bridge_mac(bridge);
    return holds(router.ParentMac, Ended(bridge).text())
               ? add_own_mac(object)
               : add_view_mac(object, kParentMac, router.ParentMac);
}

RouterReport report_router(const TopoNode &node)
{
    NodeDevInfo info = {};
    const int32_t result = devapi_get_node_dev_info(&node, &info);
    if (result != 0) {
        return {nullptr, result, true};
    }
    JsonItem object(cJSON_CreateObject());
    bool complete = object.get() != nullptr && add_view_mac(object.get(), "Mac", info.Mac) &&
                    add_fields(object.get(), kNode, &info);
    AreaCode area;
    read_area_code(area);
    // One operator's child routers are known only to the topology.
    if (!contains(area, "OLV", Case::kIsIgnored)) {
        int32_t index = 0;
        if (!find_child_router(info, &index)) {
            return {nullptr, -1, true};
        }
        complete = complete && add_child_router(object.get(), info, index);
        if (complete && devapi_get_mesh_type() == 2) {
            JsonItem children(cJSON_CreateArray());
            if (children.get() == nullptr) {
                log_error("create childinfo_json err");
                return {nullptr, -1, true};
            }
            complete = append_children(children.get(), Ended(info.Mac).text());
            cJSON_AddItemToObjectCS(object.get(), "ChildInfo", children.release());
        }
    }
    if (!complete || json_get_child_router_baseinfo(&node, object.get()) != 0) {
        log_error("create childinfo_json err");
        return {nullptr, -1, false};
    }
    return {object.release(), 0, true};
}

} // namespace

// ---- The devices attached to it ----------------------------------------------------------------

namespace {

// The list of the devices attached to a router; the device library appends them to our first node.
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

// The Kind of the first node of a list, which is not a device.
constexpr int32_t kListHead = 1;

// A new object for a device attached to a router: empty when the device is not known, null when
// memory ran out.
cJSON *attached_object(const NodeBaseInfo &node, const AreaCode &area)
{
    JsonItem object(cJSON_CreateObject());
    ReportedDevice station = {};
    AdBaseInfo &info = station.info;
    devapi_get_hostindex_by_mac(Ended(node.Mac).text(), &info.HostIndex);
    if (devapi_get_childsta_base_info(&info) != 0) {
        return object.release();
    }
    complete_station(&station);
    if (is_unknown(info.ByName)) {
        assign(info.ByName, info.Name);
    }
    const bool is_short = wants_short_report(area);
    if (!is_short) {
        put_elapsed(&info, zone_hours());
    }
    const bool complete =
        object.get() != nullptr && add_text(object.get(), "Mac", node.Mac, sizeof node.Mac) &&
        add_fields(object.get(), kMeshStation, &station) &&
        add_text(object.get(), "dbm", info.Dbm, sizeof info.Dbm) &&
        (is_short ? add_text(object.get(), "AccessTime", info.AccessTime, sizeof info.AccessTime)
                  : add_fields(object.get(), kStationDetails, &station));
    return complete ? object.release() : nullptr;
}

} // namespace

int32_t json_get_child_router_baseinfo(const TopoNode *node, cJSON *obj)
{
    if (node == nullptr) {
        return -1;
    }
    AreaCode area;
    read_area_code(area);
    AttachedList attached;
    if (attached.first() == nullptr) {
        return -1;
    }
    attached.first()->Kind = kListHead;
    const int32_t result = devapi_get_node_baseinfo(node, attached.first());
    end_list(attached.first());
    if (result != 0) {
        return 0;
    }
    Reply reply;
    cJSON *list = reply.list("ChildBaseInfo");
    for (const NodeBaseInfo *at = attached.first(); at != nullptr; at = at->next) {
        if (at->Kind != kListHead && reply.complete()) {
            reply.append(list, attached_object(*at, area));
        }
    }
    return reply.join(obj) ? 0 : -1;
}
