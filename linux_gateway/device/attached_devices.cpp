// SPDX-License-Identifier: MIT
// The records of the attached hosts.
#include "core/device_call.h"
#include "system/load_meter.h"

#include "smart_router_service/device_access.h"

#include <algorithm>

using namespace linux_gateway;

// Traffic is counted by port, so the rates of hosts that share one are not known.
static std::optional<Rates> rates_of(const View &view, const Host &host)
{
    return host.is_online && !host.shares_port
               ? std::optional(view.meter.load()->rates_of(host.port))
               : std::nullopt;
}

static void fill(AdBaseInfo &info, const View &view, const Host &host)
{
    const auto found = view.state->hosts.find(host.mac);
    const HostSettings settings = found != view.state->hosts.end() ? found->second : HostSettings();
    const std::optional<Rates> rates = rates_of(view, host);
    put(info.Mac, to_text(host.mac));
    put(info.UID, to_identifier(host.mac));
    put(info.DevType, settings.kind.empty() ? "Other" : settings.kind);
    put(info.DevFactory, "");
    put(info.Name, host.name);
    put(info.ByName, settings.alias);
    put(info.OS, "");
    put(info.Version, "");
    put(info.NetStatus, host.is_online);
    put(info.NetMonopoly, false);
    put(info.AccessType, host.is_wireless ? "" : "cable");
    put(info.AccessEnable, !settings.blocked);
    put(info.AccessTime, host.online_since != 0 ? std::to_string(host.online_since) : "");
    // The port receives what the host sends.
    put(info.UpSpeed, rates ? std::to_string(rates->received_kbps) : "");
    put(info.DownSpeed, rates ? std::to_string(rates->sent_kbps) : "");
    put(info.ip, !host.ipv4.empty() ? host.ipv4 : host.ipv6.empty() ? "" : host.ipv6.front());
    put(info.AccessCode, host.is_wireless);
    put(info.SSIDIndex, "");
    put(info.LinkStatus, host.is_online);
    put(info.SpeedLimit, settings.down_limit_kbps != 0);
    put(info.DownLimit, settings.down_limit_kbps);
    put(info.UpLimit, 0);
    put(info.GreennetProtectEnable, is_protected(*view.state, host.mac));
    put(info.Dbm, "");
    put(info.StaticDhcpEnable, host.has_reserved_address);
}

static int32_t count_hosts(const char *function, int32_t *count)
{
    return query(function, [&](const View &view) {
        *count = static_cast<int32_t>(view.network->hosts.size());
        return 0;
    });
}

int32_t devapi_get_host_num(int32_t *count)
{
    return count_hosts(__func__, count);
}

int32_t devapi_get_dev_tol_num(int32_t *count, intptr_t)
{
    return count_hosts(__func__, count);
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    constexpr int32_t no_device = 1000;
    return query(__func__, [&](const View &view) {
        const std::vector<Host> &hosts = view.network->hosts;
        if (info->HostIndex < 1 || info->HostIndex > static_cast<int64_t>(hosts.size())) {
            return no_device;
        }
        fill(*info, view, hosts[static_cast<size_t>(info->HostIndex - 1)]);
        return 0;
    });
}

int32_t devapi_get_hostindex_by_mac(const char *mac, int32_t *index)
{
    return query(__func__, [&](const View &view) {
        const std::vector<Host> &hosts = view.network->hosts;
        const auto found = std::ranges::find(hosts, required_mac("mac", mac), &Host::mac);
        *index = found != hosts.end() ? static_cast<int32_t>(found - hosts.begin()) + 1 : 0;
        return found != hosts.end() ? 1 : 0;
    });
}
