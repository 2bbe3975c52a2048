// The devices attached to the routers: what is known of them, what the user calls and allows them,
// and the firewall before them all.
#include "address_plan.h"
#include "device_call.h"
#include "host_activity.h"
#include "parental_control.h"

using namespace simulated_gateway;

static const Host *host_at(const Home &home, int32_t index)
{
    return index >= 1 && static_cast<size_t>(index) <= home.hosts.size()
               ? &home.hosts[static_cast<size_t>(index - 1)]
               : nullptr;
}

static Host &named_host(Home &home, const char *name, const std::string &mac)
{
    const std::optional<std::string> parsed = parse_mac(mac);
    if (!parsed) {
        throw Error(std::string(name) + " " + in_quotes(mac) + " is no MAC address");
    }
    Host *host = host_with_mac(home, *parsed);
    if (host == nullptr) {
        throw Error("there is no device " + *parsed);
    }
    return *host;
}

// ---- The list ----------------------------------------------------------------------------------

int32_t devapi_get_host_num(int32_t *count)
{
    return query(__func__, {reply_number("count", count)}, [&](const State &state) {
        *count = static_cast<int32_t>(state.home.hosts.size());
        return 0;
    });
}

static void describe(RecordText &text, const AdBaseInfo &info)
{
    text.field("Kind", info.Kind);
    text.field("HostIndex", info.HostIndex);
    text.field("Mac", info.Mac);
    text.field("UID", info.UID);
    text.field("DevType", info.DevType);
    text.field("DevFactory", info.DevFactory);
    text.field("Name", info.Name);
    text.field("ByName", info.ByName);
    text.field("OS", info.OS);
    text.field("Version", info.Version);
    text.field("NetStatus", info.NetStatus);
    text.field("NetMonopoly", info.NetMonopoly);
    text.field("AccessType", info.AccessType);
    text.field("AccessEnable", info.AccessEnable);
    text.field("AccessTime", info.AccessTime);
    text.field("UpSpeed", info.UpSpeed);
    text.field("DownSpeed", info.DownSpeed);
    text.field("ip", info.ip);
    text.field("AccessCode", info.AccessCode);
    text.field("SSIDIndex", info.SSIDIndex);
    text.field("LinkStatus", info.LinkStatus);
    text.field("SpeedLimit", info.SpeedLimit);
    text.field("DownLimit", info.DownLimit);
    text.field("UpLimit", info.UpLimit);
    text.field("GreennetProtectEnable", info.GreennetProtectEnable);
    text.field("Dbm", info.Dbm);
    text.field("StaticDhcpEnable", info.StaticDhcpEnable);
}

static std::string number_or_none(int64_t number)
{
    return number != 0 ? std::to_string(number) : "";
}

// The MAC address without its colons.
static std::string identifier_of(const Host &host)
{
    std::string identifier = host.mac;
    std::erase(identifier, ':');
    return identifier;
}

static void fill(AdBaseInfo &info, const State &state, const Host &host)
{
    const Home &home = state.home;
    const bool online = is_online(home, host);
    const Rates rates = rates_of(state, host);
    const bool by_radio = host.ssid != 0;
    put(info.Mac, host.mac);
    put(info.UID, identifier_of(host));
    put(info.DevType, host.kind);
    put(info.DevFactory, host.maker);
    put(info.Name, host.name);
    put(info.ByName, host.alias);
    put(info.OS, host.os);
    put(info.Version, host.os_version);
    put(info.NetStatus, online);
    put(info.NetMonopoly, false);
    put(info.AccessType,
        by_radio ? home.ssids[static_cast<size_t>(host.ssid - 1)].band : std::string("cable"));
    put(info.AccessEnable, has_access(home, host));
    put(info.AccessTime, number_or_none(attached_since(state, host)));
    put(info.UpSpeed, rates.up_kbps);
    put(info.DownSpeed, rates.down_kbps);
    put(info.ip, host.ip);
    put(info.AccessCode, by_radio);
    put(info.SSIDIndex, number_or_none(host.ssid));
    put(info.LinkStatus, online);
    put(info.SpeedLimit, host.down_limit_kbps != 0);
    put(info.DownLimit, host.down_limit_kbps);
    put(info.UpLimit, 0);
    put(info.GreennetProtectEnable, is_protected(home, host.mac));
    put(info.Dbm, number_or_none(signal_dbm(state, host)));
    put(info.StaticDhcpEnable, host.address_bound);
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    constexpr int32_t main_routers_own = 1;
    constexpr int32_t no_device = 1000;
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const Host *host = host_at(home, info->HostIndex);
        if (host == nullptr ||
            (info->Kind == main_routers_own && host->router != home.identity.mac)) {
            return no_device;
        }
        fill(*info, state, *host);
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
                refuse_for("DownLimit", complaint(limit, kRateLimits));
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

static void describe(RecordText &text, const AttachDeviceRight &info)
{
    text.field("HostIndex", info.HostIndex);
    text.field("MAC", info.MAC);
    text.field("name", info.name);
    text.field("InternetAccessRight", info.InternetAccessRight);
}

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

static void describe(RecordText &text, const FirewallSwitch &info)
{
    text.field("Enable", info.Enable);
}

int32_t devapi_set_firewall_switch(const FirewallSwitch *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        state.home.services.firewall = taken_flag("Enable", info->Enable);
        return 0;
    });
}
