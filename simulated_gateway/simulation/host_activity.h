// SPDX-License-Identifier: MIT
// What the attached devices do: who is there, at which router, who has access, and at which rates.
// Those that roam wander by day from router to router. The same home gives the same at the same
// time.
#pragma once

#include "model/model.h"
#include "simulation/mesh.h"
#include "simulation/metrics.h"

namespace simulated_gateway {

// The device with the MAC address, in the form of the model; null when there is none.
template <class AnyHome> auto *host_with_mac(AnyHome &home, const std::string &mac)
{
    const auto found = std::ranges::find(home.hosts, mac, &Host::mac);
    return found != home.hosts.end() ? &*found : nullptr;
}

// Whether it is at home at this moment, and the network that it has been on is there for it.
bool is_there(const Home &home, const Host &host);

// The router that a host is attached to, or belongs to while it is not online.
struct Place {
    const ChildRouter *router = nullptr; // null for the main router
    bool is_reached = false;             // whether the router is there for it
    int64_t signal_dbm = 0;              // ordinary power at the router; 0 by cable
};

// A host that roams is attached to the router that it hears best. Any other stays with its own; if
// that is a child router of a mesh that is off, it is known to the main router alone.
Place place_of(const Home &home, const Host &host);

// The hosts whose place is with the router; null for the main router.
std::vector<const Host *> hosts_at(const Home &home, const ChildRouter *router);

// Whether it is attached to a router that is there for it as well.
bool is_online(const Home &home, const Host &host);

// What follows of it, all at once; each can be had by itself below.
struct Activity {
    bool online = false;
    int64_t attached_since = 0;
    Rates rates;
    int64_t signal_dbm = 0;
};
Activity activity_of(const State &state, const Host &host);

// Since when it is attached, in seconds since 1970; 0 while it is not.
int64_t attached_since(const State &state, const Host &host);

int64_t online_hosts(const Home &home);
int64_t online_wifi_clients(const Home &home);
int64_t protected_hosts(const Home &home);

// Whether neither the user nor parental control keeps it from the Internet.
bool has_access(const Home &home, const Host &host);

// The rates of one device; and those that all devices together would have and may not.
Rates rates_of(const State &state, const Host &host);
Rates withheld_rates(const State &state);

// The power at which it is received, in dBm; 0 unless it is online by radio.
int64_t signal_dbm(const State &state, const Host &host);

} // namespace simulated_gateway
