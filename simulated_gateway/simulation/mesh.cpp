// SPDX-License-Identifier: MIT
#include "simulation/mesh.h"

#include "io/clock.h"
#include "simulation/metrics.h"
#include "simulation/random.h"

namespace simulated_gateway {
namespace {

// A radio link is up while the main router's radio of its band is on: the routers of a mesh share
// their Wi-Fi settings.
bool is_up(const Home &home, const RouterLink &link)
{
    if (link.kind == kCable) {
        return true;
    }
    const Radio *radio = radio_of(home, link.kind);
    return radio != nullptr && radio->enabled;
}

} // namespace

std::span<const ChildRouter> child_routers(const Home &home)
{
    return home.mesh.enabled ? std::span(home.mesh.child_routers) : std::span<const ChildRouter>();
}

const ChildRouter *child_router_with_mac(const Home &home, const std::string &mac)
{
    const auto routers = child_routers(home);
    const auto found = std::ranges::find(routers, mac, &ChildRouter::mac);
    return found != routers.end() ? &*found : nullptr;
}

const ChildRouter *child_router_at(const Home &home, int64_t index)
{
    const auto routers = child_routers(home);
    const int64_t at = index - static_cast<int64_t>(home.hosts.size()) - 1;
    return at >= 0 && at < static_cast<int64_t>(routers.size()) ? &routers[static_cast<size_t>(at)]
                                                                : nullptr;
}

int32_t index_of(const Home &home, const ChildRouter &router)
{
    const auto at = static_cast<size_t>(&router - home.mesh.child_routers.data());
    return static_cast<int32_t>(home.hosts.size() + at + 1);
}

const std::string &mac_of(const Home &home, const ChildRouter *router)
{
    return router != nullptr ? router->mac : home.identity.mac;
}

const ChildRouter *parent_of(const Home &home, const ChildRouter &router)
{
    return router.parent != home.identity.mac ? child_router_with_mac(home, router.parent)
                                              : nullptr;
}

bool is_active(const Home &home, const ChildRouter &router)
{
    if (!home.mesh.link_layer_up) {
        return false;
    }
    const ChildRouter *at = &router;
    for (; at != nullptr; at = parent_of(home, *at)) {
        if (at->offline || at->start_time > now() || !is_up(home, at->link)) {
            return false;
        }
    }
    return true;
}

std::vector<const ChildRouter *> active_children(const Home &home, const ChildRouter *parent)
{
    std::vector<const ChildRouter *> children;
    for (const ChildRouter &router : child_routers(home)) {
        if (parent_of(home, router) == parent && is_active(home, router)) {
            children.push_back(&router);
        }
    }
    return children;
}

std::vector<const ChildRouter *> active_routers(const Home &home)
{
    std::vector<const ChildRouter *> routers = active_children(home, nullptr);
    for (size_t at = 0; at < routers.size(); ++at) {
        const auto children = active_children(home, routers[at]);
        routers.insert(routers.end(), children.begin(), children.end());
    }
    return routers;
}

bool is_below(const Home &home, const ChildRouter *router, const ChildRouter &other)
{
    while (router != nullptr && router != &other) {
        router = parent_of(home, *router);
    }
    return router != nullptr;
}

int64_t up_since(const State &state, const ChildRouter *router)
{
    return router != nullptr ? std::max(state.boot_time, router->start_time) : state.boot_time;
}

int64_t reached_since(const State &state, const ChildRouter *router)
{
    int64_t since = state.boot_time;
    for (; router != nullptr; router = parent_of(state.home, *router)) {
        since = std::max(since, router->start_time);
    }
    return since;
}

int64_t link_speed_mbps(const State &state, const ChildRouter &router)
{
    constexpr uint64_t most_percent_lost = 40;
    const RouterLink &link = router.link;
    if (link.kind == kCable || state.link_speed_time == 0) {
        return link.speed_mbps;
    }
    const uint64_t bits = draw(state.home, Quantity::kLinkSpeed, source_of(router.mac),
                               static_cast<uint64_t>(state.link_speed_time));
    const auto lost = static_cast<int64_t>(bits % most_percent_lost);
    return std::max<int64_t>(1, link.speed_mbps * (100 - lost) / 100);
}

int64_t link_dbm(const State &state, const ChildRouter &router)
{
    return router.link.kind == kCable
               ? 0
               : received_dbm(state, source_of(router.mac), router.link.signal_dbm);
}

} // namespace simulated_gateway
