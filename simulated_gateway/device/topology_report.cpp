// SPDX-License-Identifier: MIT
// The routers of the mesh and their stations, one by one, and the main router's part of the
// topology report.
#include "device/attached_device.h"
#include "device/child_router_record.h"
#include "io/clock.h"
#include "simulation/host_activity.h"
#include "simulation/metrics.h"

using namespace simulated_gateway;

// ---- Child routers -----------------------------------------------------------------------------

int32_t devapi_get_childrouter_list(ChildRouterList *list)
{
    return query(__func__, {reply("list", list)}, [&](const State &state) {
        list->count = 0;
        for (const ChildRouter &router : child_routers(state.home)) {
            list->identifiers[list->count++] = index_of(state.home, router);
        }
        return 0;
    });
}

int32_t devapi_get_childrouter_info(ChildRouterInfo *info, int32_t identifier)
{
    return query(__func__, {reply("info", info), number("identifier", identifier)},
                 [&](const State &state) {
                     fill(*info, state, child_router_numbered(state.home, identifier));
                     return 0;
                 });
}

int32_t devapi_get_router_mesh_info(MeshLink *link, int32_t identifier)
{
    return query(__func__, {reply("link", link), number("identifier", identifier)},
                 [&](const State &state) {
                     const Home &home = state.home;
                     const ChildRouter *router = &child_router_numbered(home, identifier);
                     if (!is_active(home, *router)) {
                         throw Error(router->mac + " is offline");
                     }
                     while (const ChildRouter *parent = parent_of(home, *router)) {
                         router = parent;
                     }
                     fill(*link, state, router->mac, *router);
                     return 0;
                 });
}

int32_t devapi_get_child_mesh_info(ChildMeshInfo *info, int32_t identifier)
{
    return query(__func__, {reply("info", info), number("identifier", identifier)},
                 [&](const State &state) {
                     fill(*info, state.home, child_router_numbered(state.home, identifier));
                     return 0;
                 });
}

int32_t devapi_get_child_mesh_info_bynewmethod(const char *mac, ChildMeshList *list)
{
    return query(__func__, {request_text("mac", mac), reply("list", list)},
                 [&](const State &state) {
                     const Home &home = state.home;
                     const ChildRouter &router = child_router_named(home, mac);
                     list->count = 0;
                     for (const ChildRouter *child : active_children(home, &router)) {
                         fill(list->children[list->count++], home, *child);
                     }
                     return 0;
                 });
}

int32_t devapi_get_mesh_type()
{
    return query(__func__, {}, [](const State &state) {
        const Mesh &mesh = state.home.mesh;
        return mesh.enabled ? static_cast<int32_t>(mesh.type) : 0;
    });
}

int32_t devapi_call_tslink_set_topo_speed()
{
    return setting(__func__, {}, [](State &state) {
        if (!state.home.mesh.link_layer_up) {
            throw Error("the link layer of the mesh is down");
        }
        state.link_speed_time = now();
        return 0;
    });
}

// ---- Stations ----------------------------------------------------------------------------------

int32_t devapi_get_childsta_list(ChildStationList *list, const char *mac)
{
    return query(__func__, {reply("list", list), request_text("mac", mac)},
                 [&](const State &state) {
                     const Home &home = state.home;
                     const ChildRouter &router = child_router_named(home, mac);
                     list->count = 0;
                     for (const Host *host : hosts_at(home, &router)) {
                         if (list->count < MESH_MAX_STATIONS) {
                             list->indexes[list->count++] = index_of(home, *host);
                         }
                     }
                     return 0;
                 });
}

int32_t devapi_get_childsta_base_info(AdBaseInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Host *host = host_at(state.home, info->HostIndex);
        if (host == nullptr || place_of(state.home, *host).router == nullptr) {
            throw Error("there is no station " + std::to_string(info->HostIndex) +
                        " of a child router");
        }
        fill(*info, state, *host, Clock::kLocal);
        return 0;
    });
}

int32_t devapi_get_dev_tol_num(int32_t *count, intptr_t argument)
{
    return query(__func__, {reply_number("count", count), number("argument", argument)},
                 [&](const State &state) {
                     *count = static_cast<int32_t>(state.home.hosts.size() +
                                                   child_routers(state.home).size());
                     return 0;
                 });
}

// ---- The main router ---------------------------------------------------------------------------

static int32_t put_code(char *code, int32_t size, const std::string &value)
{
    if (size <= 0) {
        throw Error("there is no room for the text");
    }
    put_text({code, static_cast<size_t>(size)}, value);
    return 0;
}

int32_t devapi_get_devicemodel(char *model, int32_t size)
{
    return query(
        __func__, {reply_text("model", model), number("size", size)},
        [&](const State &state) { return put_code(model, size, state.home.identity.model); });
}

int32_t devapi_get_basic_area_code(char *code, int32_t size)
{
    return query(
        __func__, {reply_text("code", code), number("size", size)},
        [&](const State &state) { return put_code(code, size, state.home.identity.area_code); });
}

int32_t devapi_get_local_timezone(int32_t *hours)
{
    return query(__func__, {reply_number("hours", hours)}, [&](const State &state) {
        *hours = static_cast<int32_t>(state.home.hours_behind_utc);
        return 0;
    });
}

int32_t devapi_get_systerm_timetype()
{
    return query(__func__, {}, [](const State &state) { return state.home.local_times ? 1 : 0; });
}

int32_t devapi_get_dev_status_info(DevStatusInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        put(info->Cpu, cpu_percent(state));
        put(info->Memory, memory_percent(state));
        return 0;
    });
}
