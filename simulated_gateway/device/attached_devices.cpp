// SPDX-License-Identifier: MIT
// The devices attached to the routers: their records, names and permissions as set by the user, and
// the firewall that protects them.
#include "device/attached_device.h"
#include "model/address_plan.h"
#include "simulation/host_activity.h"

using namespace simulated_gateway;

// ---- The list ----------------------------------------------------------------------------------

int32_t devapi_get_host_num(int32_t *count)
{
    return query(__func__, {reply_number("count", count)}, [&](const State &state) {
        *count = static_cast<int32_t>(state.home.hosts.size());
        return 0;
    });
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    constexpr int32_t main_routers_own = 1;
    constexpr int32_t no_device = 1000;
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const Host *host = host_at(home, info->HostIndex);
        if (host == nullptr ||
            (info->Kind == main_routers_own && place_of(home, *host).router != nullptr)) {
            return no_device;
        }
        fill(*info, state, *host, home.local_times ? Clock::kLocal : Clock::kUtc);
        return 0;
    });
}

// ---- Settings of one device --------------------------------------------------------------------

static void describe(RecordText &text, const AdBaseSetting &setting)
{
    text.field("Mac", setting.info.Mac);
    text.field("DevType", setting.info.DevType);
    text.field("ByName", setting.info.ByName);
    text.field("AccessEnable", setting.info.AccessEnable);
    text.field("DownLimit", setting.info.DownLimit);
    text.field("StaticDhcpEnable", setting.info.StaticDhcpEnable);
    text.field("ip", setting.info.ip);
    text.field("FailReason", setting.FailReason);
}

static void bind_address(Home &home, Host &host, const std::string &ip)
{
    require_free_address(home, host, ip);
    host.ip = ip;
    host.address_bound = true;
}

int32_t devapi_set_ad_base_info(AdBaseSetting *wanted)
{
    return setting(__func__, {request_with_reason("setting", wanted)}, [&](State &state) {
        const AdBaseInfo &info = wanted->info;
        Home &home = state.home;
        Host &host = named_host(home, "MAC", taken(info.Mac));
        host.kind = taken("DevType", info.DevType, kHostKinds);
        host.alias = taken_or_none("ByName", info.ByName);
        host.blocked = !taken_flag("AccessEnable", info.AccessEnable);
        if (is_given(info.DownLimit)) {
            const int64_t limit = taken_number("DownLimit", info.DownLimit);
            if (limit != 0) {
                refuse_for("DownLimit", validation_error(limit, kRateLimits));
            }
            host.down_limit_kbps = limit;
        }
        if (is_given(info.StaticDhcpEnable)) {
            if (taken_flag("StaticDhcpEnable", info.StaticDhcpEnable)) {
                bind_address(home, host, taken(info.ip));
            } else {
                host.address_bound = false;
            }
        }
        return 0;
    });
}

// ---- Access rights and firewall ----------------------------------------------------------------

constexpr char kMayAccess[] = "ALLOW";
constexpr char kMayNotAccess[] = "DENY";

int32_t devapi_get_attach_device_right(AttachDeviceRight *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const Host *host = host_at(home, info->HostIndex);
        if (host == nullptr) {
            throw Error("there is no device " + std::to_string(info->HostIndex));
        }
        put(info->MAC, host->mac);
        put(info->name, host->name);
        put(info->InternetAccessRight,
            std::string(has_access(home, *host) ? kMayAccess : kMayNotAccess));
        return 0;
    });
}

int32_t devapi_set_attach_device_right(const AttachDeviceRight *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        Host &host = named_host(state.home, "MAC", taken(info->MAC));
        host.blocked = taken("InternetAccessRight", info->InternetAccessRight,
                             one_of(kMayAccess, kMayNotAccess)) == kMayNotAccess;
        return 0;
    });
}

int32_t devapi_set_firewall_switch(const FirewallSwitch *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        state.home.services.firewall = taken_flag("Enable", info->Enable);
        return 0;
    });
}
