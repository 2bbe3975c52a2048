// SPDX-License-Identifier: MIT
#include "model/consistency.h"

#include <set>

namespace simulated_gateway {
namespace {

void check_absence(const Host &host, const std::string &path)
{
    const bool any = !host.away_from.empty() || !host.away_until.empty() || !host.away_days.empty();
    const bool all = !host.away_from.empty() && !host.away_until.empty() && !host.away_days.empty();
    if (any != all) {
        refuse(path + "/away_from", "needs away_until and away_days, and they need it");
    }
    if (any && host.away_from == host.away_until) {
        refuse(path + "/away_until", "equals away_from");
    }
}

void check_period(const ProtectPeriod &period, const std::string &path)
{
    const bool whole = !period.start.empty() && !period.end.empty() && !period.days.empty();
    if (period.enabled && !whole) {
        refuse(path, "needs start, end and days");
    }
    if (whole && period.start == period.end) {
        refuse(path, "ends when it starts");
    }
}

// All of a host but its IP address, which a removed host does not have.
void check_host(const Home &home, const Host &host, const std::string &path, Addresses &addresses)
{
    addresses.claim_mac(host.mac, path + "/mac");
    if (host.router != home.identity.mac && child_router(home.mesh, host.router) == nullptr) {
        refuse(path + "/router", "there is no router " + host.router);
    }
    check_ssid_number(home, host.ssid, path);
    check_signal(host.online && host.ssid != 0, host.signal_dbm, path + "/signal_dbm");
    if (host.roams && host.ssid == 0) {
        refuse(path + "/roams", "there is no radio link");
    }
    check_absence(host, path);
}

} // namespace

void check_hosts(const Home &home, const std::string &path, Addresses &addresses)
{
    for (size_t at = 0; at < home.hosts.size(); ++at) {
        const Host &host = home.hosts[at];
        const std::string place = item(path + "/hosts", at);
        check_host(home, host, place, addresses);
        if (!host.ip.empty()) {
            addresses.claim_lan_address(host.ip, place + "/ip");
        } else if (host.online) {
            refuse(place + "/ip", "is missing, and the host is online");
        } else if (host.address_bound) {
            refuse(place + "/ip", "is missing, and the address is bound");
        }
    }
}

void check_removed_hosts(const State &state, const std::string &path, Addresses &addresses)
{
    for (size_t at = 0; at < state.removed_hosts.size(); ++at) {
        const std::string place = item(path, at) + "/host";
        check_host(state.home, state.removed_hosts[at].host, place, addresses);
    }
}

void check_green_net(const GreenNet &green_net, const std::string &path)
{
    std::set<int64_t> numbers;
    std::map<std::string, std::string> owners;
    for (size_t at = 0; at < green_net.hosts.size(); ++at) {
        const GreenHost &entry = green_net.hosts[at];
        const std::string place = item(path + "/hosts", at);
        if (!numbers.insert(entry.number).second) {
            refuse(place + "/number", "there is another entry " + std::to_string(entry.number));
        }
        const auto [owner, is_new] = owners.emplace(entry.mac, place + "/mac");
        if (!is_new) {
            refuse(place + "/mac", entry.mac + " belongs to " + owner->second);
        }
        for (size_t number = 0; number < entry.periods.size(); ++number) {
            check_period(entry.periods[number], item(place + "/periods", number));
        }
    }
}

} // namespace simulated_gateway
