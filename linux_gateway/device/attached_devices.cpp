// SPDX-License-Identifier: MIT
// The attached hosts: their records, and what users set for them: name, type, access to the
// Internet and download limit.
#include "core/device_call.h"
#include "system/load_meter.h"
#include "system/text.h"

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <array>

using namespace linux_gateway;

// ---- Reading -----------------------------------------------------------------------------------

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

int32_t devapi_get_host_num(int32_t *count)
{
    return query(__func__, [&](const View &view) {
        *count = static_cast<int32_t>(view.network->hosts.size());
        return 0;
    });
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

// ---- Settings ----------------------------------------------------------------------------------

// One that is attached, or was when something was set for it.
static Mac known_host(const State &state, const View &view, const std::string &text)
{
    const Mac mac = required_mac("MAC", text);
    if (view.network->host(mac) == nullptr && !state.hosts.contains(mac)) {
        throw Error("there is no device " + to_text(mac));
    }
    return mac;
}

// Empty for the type that hosts have without a setting.
static std::string kind_of(const std::string &text)
{
    constexpr std::array<std::string_view, 9> kinds = {
        "Computer", "Phone", "Tablet", "TV", "Console", "Camera", "Printer", "Speaker", "Other"};
    if (std::ranges::find(kinds, text) == kinds.end()) {
        throw Error("DevType: " + in_quotes(text) + " is not a type of device");
    }
    return text == kinds.back() ? "" : text;
}

static bool is_given(const std::string &text)
{
    return !text.empty() && text != "-1";
}

static int64_t limit_of(const std::string &text)
{
    const int64_t limit = number_of("DownLimit", text);
    if (limit < 0 || limit > kMostKbps) {
        throw Error("DownLimit: " + text + " is not within 0 to " + std::to_string(kMostKbps));
    }
    return limit;
}

// Addresses are reserved in the configuration of the DHCP server, which belongs to the user: a
// request may only confirm what is there.
static void require_reservation(const Host *host, const AdBaseInfo &info)
{
    const bool is_wanted = flag_of("StaticDhcpEnable", taken(info.StaticDhcpEnable));
    const bool is_there = host != nullptr && host->has_reserved_address;
    if (is_wanted != is_there || (is_wanted && taken(info.ip) != host->ipv4)) {
        throw Error("StaticDhcpEnable: dnsmasq's configuration reserves addresses");
    }
}

int32_t devapi_set_ad_base_info(AdBaseSetting *wanted)
{
    return setting(__func__, wanted->FailReason, [&](State &state, const View &view) {
        const AdBaseInfo &info = wanted->info;
        const Mac mac = known_host(state, view, taken(info.Mac));
        HostSettings &host = state.hosts[mac];
        host.kind = kind_of(taken(info.DevType));
        host.alias = taken(info.ByName);
        host.blocked = !flag_of("AccessEnable", taken(info.AccessEnable));
        if (const std::string limit = taken(info.DownLimit); is_given(limit)) {
            host.down_limit_kbps = limit_of(limit);
        }
        if (is_given(taken(info.StaticDhcpEnable))) {
            require_reservation(view.network->host(mac), info);
        }
    });
}

constexpr char kMayAccess[] = "ALLOW";
constexpr char kMayNotAccess[] = "DENY";

// A period of parental control does not change the right: clients that set what they have read
// would make it permanent.
int32_t devapi_get_attach_device_right(AttachDeviceRight *info)
{
    return query(__func__, [&](const View &view) {
        const std::vector<Host> &hosts = view.network->hosts;
        if (info->HostIndex < 1 || info->HostIndex > static_cast<int64_t>(hosts.size())) {
            throw Error("there is no device " + std::to_string(info->HostIndex));
        }
        const Host &host = hosts[static_cast<size_t>(info->HostIndex - 1)];
        const auto found = view.state->hosts.find(host.mac);
        const bool is_blocked = found != view.state->hosts.end() && found->second.blocked;
        put(info->MAC, to_text(host.mac));
        put(info->name, host.name);
        put(info->InternetAccessRight, is_blocked ? kMayNotAccess : kMayAccess);
        return 0;
    });
}

int32_t devapi_set_attach_device_right(const AttachDeviceRight *info)
{
    return setting(__func__, [&](State &state, const View &view) {
        const Mac mac = known_host(state, view, taken(info->MAC));
        const std::string right = taken(info->InternetAccessRight);
        if (right != kMayAccess && right != kMayNotAccess) {
            throw Error("InternetAccessRight: " + in_quotes(right) + " is neither ALLOW nor DENY");
        }
        state.hosts[mac].blocked = right == kMayNotAccess;
    });
}
