// SPDX-License-Identifier: MIT
#include "device/attached_device.h"

#include "io/clock.h"
#include "model/parental_control.h"
#include "simulation/host_activity.h"

#include <algorithm>
#include <iterator>

namespace simulated_gateway {

std::string number_or_none(int64_t number)
{
    return number != 0 ? std::to_string(number) : "";
}

std::string identifier_of(const std::string &mac)
{
    std::string identifier;
    std::ranges::remove_copy(mac, std::back_inserter(identifier), ':');
    return identifier;
}

const Host *host_at(const Home &home, int64_t index)
{
    return index >= 1 && index <= static_cast<int64_t>(home.hosts.size())
               ? &home.hosts[static_cast<size_t>(index - 1)]
               : nullptr;
}

int32_t index_of(const Home &home, const Host &host)
{
    return static_cast<int32_t>(&host - home.hosts.data()) + 1;
}

Host &named_host(Home &home, const char *name, const std::string &mac)
{
    const std::optional<std::string> parsed = parse_mac(mac);
    if (!parsed) {
        throw Error(std::string(name) + " " + in_quotes(mac) + " is not a MAC address");
    }
    Host *host = host_with_mac(home, *parsed);
    if (host == nullptr) {
        throw Error("there is no device " + *parsed);
    }
    return *host;
}

// The time of attachment by the given clock; empty while the device is not attached.
static std::string access_time(const State &state, int64_t since, Clock clock)
{
    const int64_t behind = clock == Clock::kLocal ? state.home.hours_behind_utc * 3600 : 0;
    return since != 0 ? std::to_string(later(since, -behind)) : "";
}

void fill(AdBaseInfo &info, const State &state, const Host &host, Clock clock)
{
    const Home &home = state.home;
    const Activity activity = activity_of(state, host);
    const bool by_radio = host.ssid != 0;
    put(info.Mac, host.mac);
    put(info.UID, identifier_of(host.mac));
    put(info.DevType, host.kind);
    put(info.DevFactory, host.maker);
    put(info.Name, host.name);
    put(info.ByName, host.alias);
    put(info.OS, host.os);
    put(info.Version, host.os_version);
    put(info.NetStatus, activity.online);
    put(info.NetMonopoly, false);
    put(info.AccessType,
        by_radio ? std::string_view(home.ssids[static_cast<size_t>(host.ssid - 1)].band) : kCable);
    put(info.AccessEnable, has_access(home, host));
    put(info.AccessTime, access_time(state, activity.attached_since, clock));
    put(info.UpSpeed, activity.rates.up_kbps);
    put(info.DownSpeed, activity.rates.down_kbps);
    put(info.ip, host.ip);
    put(info.AccessCode, by_radio);
    put(info.SSIDIndex, number_or_none(host.ssid));
    put(info.LinkStatus, activity.online);
    put(info.SpeedLimit, host.down_limit_kbps != 0);
    put(info.DownLimit, host.down_limit_kbps);
    put(info.UpLimit, 0);
    put(info.GreennetProtectEnable, is_protected(home, host.mac));
    put(info.Dbm, number_or_none(activity.signal_dbm));
    put(info.StaticDhcpEnable, host.address_bound);
}

} // namespace simulated_gateway
