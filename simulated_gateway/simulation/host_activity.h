// SPDX-License-Identifier: MIT
// What the attached devices do: which are online, at which router, with Internet access or without,
// and at which rates. Those that roam move between the routers by day. The same home gives the same
// result at the same time.
#pragma once

#include "model/model.h"
#include "simulation/mesh.h"
#include "simulation/metrics.h"

namespace simulated_gateway {

// The device with the MAC address, in the model's notation; null if there is none.
template <class AnyHome> auto *host_with_mac(AnyHome &home, const std::string &mac)
{
    const auto found = std::ranges::find(home.hosts, mac, &Host::mac);
    return found != home.hosts.end() ? &*found : nullptr;
}

// Whether the host is at home now and its network is on.
bool is_there(const Home &home, const Host &host);

// The router that a host is attached to, or belongs to while it is not online.
struct Place {
    const ChildRouter *router = nullptr; // null for the main router
    bool is_reached = false;             // whether the router is active
    int64_t signal_dbm = 0;              // typical power at the router; 0 by cable
};

// A host that roams is attached to the router with the strongest signal. Any other is attached to
// its own router; if that is a child router and the mesh is off, its place is with the main router,
// which it does not reach.
Place place_of(const Home &home, const Host &host);

// The hosts whose place is with the router; null for the main router.
std::vector<const Host *> hosts_at(const Home &home, const ChildRouter *router);

// Whether the host is at home and its router is active.
bool is_online(const Home &home, const Host &host);

// All of the values below, computed together.
struct Activity {
    bool online = false;
    int64_t attached_since = 0;
    Rates rates;
    int64_t signal_dbm = 0;
};
Activity activity_of(const State &state, const Host &host);

// When the host was attached, in seconds since 1970; 0 while it is not attached.
int64_t attached_since(const State &state, const Host &host);

int64_t online_hosts(const Home &home);
int64_t online_wifi_clients(const Home &home);
int64_t protected_hosts(const Home &home);

// Whether neither the user nor parental control denies it Internet access.
bool has_access(const Home &home, const Host &host);

// The rates of one device, and the part of the wanted rates of all devices that limits and denied
// access withhold.
Rates rates_of(const State &state, const Host &host);
Rates withheld_rates(const State &state);

// The received power in dBm; 0 unless the host is online by radio.
int64_t signal_dbm(const State &state, const Host &host);

} // namespace simulated_gateway
