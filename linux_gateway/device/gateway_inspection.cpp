// SPDX-License-Identifier: MIT
// What an inspection of the gateway finds: its connection and its load.
#include "core/device_call.h"
#include "core/internet.h"
#include "system/dhcp_server.h"
#include "system/load_meter.h"
#include "system/probes.h"

#include "smart_router_service/device_access.h"

#include <algorithm>

using namespace linux_gateway;

// ---- Connection --------------------------------------------------------------------------------

int32_t devapi_inspect_net_connect(NetInspectInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Network &network = *view.network;
        const bool is_connected = network.is_wan_connected();
        const bool has_ipv4 = network.wan && !network.wan->ipv4.empty();
        put(info->WanStatus, connection_state(is_connected));
        put(info->NetStatus, is_connected);
        put(info->WanIP, has_ipv4 ? network.wan->ipv4.front().text : "");
        put(info->NetMask, has_ipv4 ? mask_of(network.wan->ipv4.front().prefix_length) : "");
        put(info->DnsStatus,
            is_connected && does_name_server_answer(name_servers(view.configuration)));
        put(info->NetQuality, "");
        return 0;
    });
}

int32_t devapi_get_uplink_status(char *status, int32_t size)
{
    return query(__func__, [&](const View &view) {
        if (size <= 0) {
            throw Error("there is no room for the status");
        }
        put_text({status, static_cast<size_t>(size)}, view.network->is_wan_connected() ? "1" : "0");
        return 0;
    });
}

static const char *fault_of(const View &view)
{
    const Network &network = *view.network;
    if (!network.wan || !network.wan->is_up) {
        return "LINK_DOWN";
    }
    if (!network.is_wan_connected()) {
        return "NO_ADDRESS";
    }
    return does_name_server_answer(name_servers(view.configuration)) ? "" : "DNS_FAILED";
}

int32_t devapi_get_net_fault_info(char *reason)
{
    constexpr size_t size = 16;
    return query(__func__, [&](const View &view) {
        put_text({reason, size}, fault_of(view));
        return 0;
    });
}

// ---- Resources ---------------------------------------------------------------------------------

int32_t devapi_inspect_hg_resource(ResourceInfo *info)
{
    return query(__func__, [&](const View &view) {
        const std::shared_ptr<const Load> load = view.meter.load();
        put(info->CpuPercent, load->cpu_percent);
        put(info->MemPercent, load->memory_percent);
        put(info->LanDevNum, std::ranges::count(view.network->hosts, true, &Host::is_online));
        put(info->ProtectedDevNum,
            std::ranges::count_if(view.state->green_hosts, [&](const auto &entry) {
                return is_protected(*view.state, entry.second.mac);
            }));
        return 0;
    });
}
