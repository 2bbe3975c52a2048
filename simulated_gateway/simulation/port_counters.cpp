// SPDX-License-Identifier: MIT
#include "simulation/port_counters.h"

#include "io/clock.h"
#include "model/port_names.h"
#include "simulation/host_activity.h"

#include <map>

namespace simulated_gateway {
namespace {

// The ports in use, by the MAC addresses of the devices connected by cable: in the order of the
// child routers and hosts, and from the first port again if there are more devices than ports.
using Cabling = std::map<std::string, std::string>;

Cabling cabling(const Home &home)
{
    Cabling cables;
    const auto plug_in = [&](const std::string &mac) {
        const auto next = static_cast<int64_t>(cables.size());
        cables.emplace(mac, lan_port(next % home.ports.lan + 1));
    };
    for (const ChildRouter &router : child_routers(home)) {
        if (router.parent == home.identity.mac && router.link.kind == kCable) {
            plug_in(router.mac);
        }
    }
    for (const Host &host : home.hosts) {
        if (host.router == home.identity.mac && host.ssid == 0) {
            plug_in(host.mac);
        }
    }
    return cables;
}

// The port by which the main router reaches an online host.
std::string port_of(const Home &home, const Cabling &cables, const Host &host)
{
    const ChildRouter *router = place_of(home, host).router;
    if (router == nullptr) {
        return host.ssid == 0 ? cables.at(host.mac)
                              : home.ssids[static_cast<size_t>(host.ssid - 1)].band;
    }
    while (const ChildRouter *parent = parent_of(home, *router)) {
        router = parent;
    }
    return router->link.kind == kCable ? cables.at(router->mac) : router->link.kind;
}

void count(State &state, const std::string &port, int64_t sent, int64_t received)
{
    constexpr int64_t most = INT64_MAX / 2;
    std::vector<PortCounter> &ports = state.port_counters.ports;
    auto found = std::ranges::find(ports, port, &PortCounter::port);
    if (found == ports.end()) {
        found = ports.insert(ports.end(), {port, 0, 0});
    }
    found->sent = std::min(most, found->sent + sent);
    found->received = std::min(most, found->received + received);
}

} // namespace

void count_traffic(State &state)
{
    constexpr int64_t longest = int64_t{366} * 86'400; // prevents overflow of the sums
    constexpr int64_t bytes_of_kbit = 125;
    const Home &home = state.home;
    const int64_t seconds = std::min(seconds_since(state.port_counters.counted_until), longest);
    if (seconds == 0) {
        return;
    }
    const Cabling cables = cabling(home);
    for (const Host &host : home.hosts) {
        if (!is_online(home, host)) {
            continue;
        }
        const Rates rates = rates_of(state, host);
        const int64_t up = rates.up_kbps * bytes_of_kbit * seconds;
        const int64_t down = rates.down_kbps * bytes_of_kbit * seconds;
        count(state, port_of(home, cables, host), down, up);
        count(state, kWanPort, up, down);
    }
    state.port_counters.counted_until = now();
    state.total_demand = {}; // the next change may attach or detach hosts
}

PortCounter counter_of(const State &state, const std::string &port)
{
    const std::vector<PortCounter> &ports = state.port_counters.ports;
    const auto found = std::ranges::find(ports, port, &PortCounter::port);
    return found != ports.end() ? *found : PortCounter{port, 0, 0};
}

} // namespace simulated_gateway
