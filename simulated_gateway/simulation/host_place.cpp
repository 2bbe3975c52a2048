#include "simulation/host_place.h"

#include "io/clock.h"
#include "simulation/chance.h"
#include "simulation/host_activity.h"

namespace simulated_gateway {
namespace {

constexpr int64_t kDrawSeconds = 900;

// By night people and their devices are where they belong.
bool is_night()
{
    const int64_t hour = now() / 3600 % 24;
    return hour < 6 || hour >= 22;
}

uint64_t draw_for(const Home &home, Quantity quantity, const Host &host,
                  const std::string &router = {})
{
    const uint64_t source = source_of(host.mac) ^ (source_of(router) << 16);
    return draw(home, quantity, source, static_cast<uint64_t>(now() / kDrawSeconds));
}

// Where a wandering host is: next to a router, and so strong there.
struct Whereabouts {
    std::string router;
    int64_t signal_dbm;
};

Whereabouts whereabouts(const Home &home, const Host &host)
{
    const auto routers = child_routers(home);
    const uint64_t bits = draw_for(home, Quantity::kPlace, host);
    const uint64_t choice = bits % (2 * (routers.size() + 1));
    if (choice > routers.size() || is_night() || !is_there(home, host)) {
        return {host.router, host.signal_dbm};
    }
    const ChildRouter *router = choice == 0 ? nullptr : &routers[choice - 1];
    constexpr int64_t strongest = -45;
    return {mac_of(home, router), strongest - static_cast<int64_t>(bits / 64 % 20)};
}

int64_t signal_at(const Home &home, const Host &host, const Whereabouts &place,
                  const std::string &router)
{
    constexpr int64_t least_loss = 10;
    if (router == place.router) {
        return place.signal_dbm;
    }
    const uint64_t bits = draw_for(home, Quantity::kDistance, host, router);
    return place.signal_dbm - least_loss - static_cast<int64_t>(bits % 15);
}

Place best_place(const Home &home, const Host &host)
{
    const Whereabouts where = whereabouts(home, host);
    Place best = {nullptr, true, signal_at(home, host, where, home.identity.mac)};
    for (const ChildRouter &router : child_routers(home)) {
        const int64_t signal_dbm = signal_at(home, host, where, router.mac);
        if (signal_dbm > best.signal_dbm && is_active(home, router)) {
            best = {&router, true, signal_dbm};
        }
    }
    return best;
}

} // namespace

Place place_of(const Home &home, const Host &host)
{
    if (host.roams) {
        return best_place(home, host);
    }
    const ChildRouter *router = child_router_with_mac(home, host.router);
    const bool is_reached =
        router != nullptr ? is_active(home, *router) : host.router == home.identity.mac;
    return {router, is_reached, host.signal_dbm};
}

std::vector<const Host *> hosts_at(const Home &home, const ChildRouter *router)
{
    std::vector<const Host *> hosts;
    for (const Host &host : home.hosts) {
        if (place_of(home, host).router == router) {
            hosts.push_back(&host);
        }
    }
    return hosts;
}

} // namespace simulated_gateway
