// SPDX-License-Identifier: MIT
// The child routers from the gateway's parameter tree, which the agent requests directly.
#include "router_info.h"

#include <stdio.h>

using namespace smart_router;

// ---- The routers of the tree -------------------------------------------------------------------

namespace {

constexpr char kTree[] = "InternetGatewayDevice.WiFi.MultiAP.APDevice";

using Path = char[128];
using Value = char[TOPO_VALUE_SIZE];

// Reads a parameter of a router, or of all routers for position 0. Result: false on failure.
// cppcheck-suppress constParameter ; the device writes it
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
    if (is_unknown(value)) { // the main router has no parent
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

// A new object for the child router at the path, with its stations where there is memory for them;
// null when memory ran out for the router itself.
cJSON *tree_router_object(const char *path, const BridgeMac &bridge);

} // namespace

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
        log_error("create childinfo_json err");
        return -1;
    }
    const int32_t count = number_in(entries);
    for (int32_t at = 0; at < count; ++at) {
        const int32_t position = at + 1;
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

// ---- One child router --------------------------------------------------------------------------

namespace {

constexpr auto kTreeRouter = Fields{
    FIELD(ChildRouterInfo, Mac),
    FIELD(ChildRouterInfo, ip),
    FIELD_AS(ChildRouterInfo, ChildRouterAccessType, "AccessType"),
    FIELD(ChildRouterInfo, LinkSpeed),
    FIELD(ChildRouterInfo, dbm),
    FIELD(ChildRouterInfo, FWVersion),
};

// The routers attached to a router, as an array that belongs to the caller; null when memory ran
// out.
cJSON *children_of(const ChildRouterInfo &router)
{
    JsonItem list(cJSON_CreateArray());
    Allocated<ChildMeshList> children;
    if (list.get() == nullptr || children.get() == nullptr) {
        log_error("create childinfo_json err");
        return nullptr;
    }
    devapi_get_child_mesh_info_bynewmethod(Ended(router.Mac).text(), children.get());
    for (size_t at = 0; at < clamped(children->count, MESH_MAX_CHILDREN); ++at) {
        cJSON *child = object_of(kMeshMac, &children->children[at]);
        if (child == nullptr) {
            log_error("create childinfo_json err");
            return nullptr;
        }
        cJSON_AddItemToArray(list.get(), child);
    }
    return list.release();
}

cJSON *tree_router_object(const char *path, const BridgeMac &bridge)
{
    ChildRouterInfo router = {};
    devapi_get_node_dev_info_by_newmetod(path, &router);
    const bool is_direct_child = holds_any_case(router.ParentMac, Ended(bridge).text());
    JsonItem object(cJSON_CreateObject());
    if (object.get() == nullptr || !add_fields(object.get(), kTreeRouter, &router) ||
        !add_fields(object.get(), kMeshRouter, &router) ||
        // Repeated here, since some apps read the address from this position.
        !add_text(object.get(), "ip", router.ip, sizeof router.ip) ||
        !(is_direct_child
              ? add_own_mac(object.get())
              : add_text(object.get(), kParentMac, router.ParentMac, sizeof router.ParentMac))) {
        log_error("create childinfo_json err");
        return nullptr;
    }
    Model model;
    read_model(model); // each report reads it, although this one depends only on the area
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
