// SPDX-License-Identifier: MIT
// The topology of the mesh as a tree of parameters. The entries of the tree are the main router,
// followed by the child routers, numbered from 1.
#include "device/attached_device.h"
#include "device/child_router_record.h"
#include "simulation/host_activity.h"

#include <charconv>

using namespace simulated_gateway;

static constexpr std::string_view kRoot = "InternetGatewayDevice.WiFi.MultiAP.APDevice";

[[noreturn]] static void refuse_path(std::string_view path)
{
    throw Error("there is no " + std::string(path));
}

// The target of a path: a router and one of its parameters.
struct Parameter {
    const ChildRouter *router; // null for the main router
    std::string_view name;
};

static Parameter parameter_at(const Home &home, std::string_view path)
{
    std::string_view rest = path;
    if (!rest.starts_with(kRoot)) {
        refuse_path(path);
    }
    rest.remove_prefix(kRoot.size());
    size_t entry = 0;
    if (!rest.starts_with('.')) {
        refuse_path(path);
    }
    const char *end_of_path = rest.data() + rest.size();
    const auto [end, error] = std::from_chars(rest.data() + 1, end_of_path, entry);
    if (error != std::errc() || end == end_of_path || *end != '.' || entry < 1 ||
        entry > child_routers(home).size() + 1) {
        refuse_path(path);
    }
    return {entry == 1 ? nullptr : &child_routers(home)[entry - 2], {end + 1, end_of_path}};
}

static const ChildRouter *router_at(const Home &home, const char *path)
{
    const Parameter parameter = parameter_at(home, path);
    if (!parameter.name.empty()) {
        refuse_path(path);
    }
    return parameter.router;
}

static std::string value_of(const Home &home, const char *path)
{
    if (path == std::string(kRoot) + "NumberOfEntries") {
        return std::to_string(child_routers(home).size() + 1);
    }
    const auto [router, name] = parameter_at(home, path);
    if (name == "MACAddress") {
        return mac_of(home, router);
    }
    if (name == "X_TS_ParentMACAddress") {
        return router != nullptr ? router->parent : kNoValue;
    }
    if (name == "X_TS_Active") {
        return router == nullptr || is_active(home, *router) ? "1" : "0";
    }
    refuse_path(path);
}

int32_t devapi_topo_xml_getinfo(const char *path, char *value)
{
    return query(__func__, {request_text("path", path), reply_text("value", value)},
                 [&](const State &state) {
                     put_text({value, TOPO_VALUE_SIZE}, value_of(state.home, path));
                     return 0;
                 });
}

int32_t devapi_get_node_dev_info_by_newmetod(const char *path, ChildRouterInfo *info)
{
    return query(__func__, {request_text("path", path), reply("info", info)},
                 [&](const State &state) {
                     if (const ChildRouter *router = router_at(state.home, path)) {
                         fill(*info, state, *router);
                         put(info->LinkSpeed, link_speed_mbps(state, *router));
                     } else {
                         fill_main_router(*info, state);
                         put(info->LinkSpeed, "");
                     }
                     return 0;
                 });
}

int32_t devapi_get_node_sta_info_by_newmetod(StationList *list, const char *path)
{
    return query(__func__, {reply("list", list), request_text("path", path)},
                 [&](const State &state) {
                     const ChildRouter *router = router_at(state.home, path);
                     list->count = 0;
                     for (const Host *host : hosts_at(state.home, router)) {
                         if (list->count < MESH_MAX_STATIONS) {
                             AdBaseInfo &info = list->stations[list->count++];
                             info.HostIndex = index_of(state.home, *host);
                             fill(info, state, *host, Clock::kLocal);
                         }
                     }
                     return 0;
                 });
}
