// SPDX-License-Identifier: MIT
#include "simulation/host_activity.h"

#include "io/clock.h"
#include "model/parental_control.h"
#include "model/weekly_period.h"
#include "simulation/random.h"

#include <optional>

namespace simulated_gateway {
namespace {

constexpr int64_t kSlotSeconds = 3600;

bool is_in_slot(const Home &home, const Host &host, int64_t slot)
{
    if (host.presence_percent == 0) {
        return true;
    }
    const uint64_t bits =
        draw(home, Quantity::kPresence, source_of(host.mac), static_cast<uint64_t>(slot));
    return static_cast<int64_t>(bits % 100) < host.presence_percent;
}

bool is_away(const Host &host)
{
    return !host.away_days.empty() &&
           is_within({host.away_from, host.away_until, host.away_days}, now());
}

const Ssid *ssid_of(const Home &home, const Host &host)
{
    return host.ssid != 0 ? &home.ssids[static_cast<size_t>(host.ssid - 1)] : nullptr;
}

constexpr int64_t kDrawSeconds = 900;

// By night, devices that roam stay at their own routers.
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

// Where a roaming host is: next to a router, with this signal there.
struct RoamingPosition {
    std::string router;
    int64_t signal_dbm;
};

RoamingPosition position_of(const Home &home, const Host &host)
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

int64_t signal_at(const Home &home, const Host &host, const RoamingPosition &place,
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
    const RoamingPosition where = position_of(home, host);
    Place best = {nullptr, true, signal_at(home, host, where, home.identity.mac)};
    for (const ChildRouter &router : child_routers(home)) {
        const int64_t signal_dbm = signal_at(home, host, where, router.mac);
        if (signal_dbm > best.signal_dbm && is_active(home, router)) {
            best = {&router, true, signal_dbm};
        }
    }
    return best;
}

// How much of the home's traffic goes to devices of a kind, compared with others.
struct Demand {
    std::string_view kind;
    int64_t up;
    int64_t down;
};
constexpr Demand kDemands[] = {
    {"Computer", 40, 100}, {"Phone", 25, 60},    {"Tablet", 20, 80},
    {"TV", 10, 250},       {"Console", 30, 150}, {"Camera", 120, 10},
    {"Printer", 2, 2},     {"Speaker", 5, 30},   {"Other", 3, 3},
};

// The demand of a device at this moment; none while it is offline.
Rates demand(const Home &home, const Host &host, bool online)
{
    if (!online) {
        return {};
    }
    constexpr int64_t most_percent = 60;
    const auto &ordinary = *std::ranges::find(kDemands, host.kind, &Demand::kind);
    const uint64_t source = source_of(host.mac);
    const auto varied = [&](Quantity quantity, int64_t value) {
        return value * (100 + deviation(home, quantity, source, most_percent));
    };
    return {varied(Quantity::kHostUp, ordinary.up), varied(Quantity::kHostDown, ordinary.down)};
}

Rates total_demand(const State &state)
{
    return state.total_demand.at(now(), [&] {
        Rates sum;
        for (const Host &host : state.home.hosts) {
            const Rates one = demand(state.home, host, is_online(state.home, host));
            sum.up_kbps += one.up_kbps;
            sum.down_kbps += one.down_kbps;
        }
        return sum;
    });
}

int64_t share(int64_t of, int64_t part, int64_t whole)
{
    return whole == 0 ? 0 : of * part / whole;
}

// The rates of a device without limits.
Rates wanted_by(const State &state, const Host &host, bool online, const Rates &sum)
{
    const Rates all = wanted_rates(state);
    const Rates own = demand(state.home, host, online);
    return {share(all.up_kbps, own.up_kbps, sum.up_kbps),
            share(all.down_kbps, own.down_kbps, sum.down_kbps)};
}

Rates allowed(const Home &home, const Host &host, const Rates &wanted)
{
    if (!has_access(home, host)) {
        return {};
    }
    const int64_t limit = host.down_limit_kbps != 0 ? host.down_limit_kbps : INT64_MAX;
    return {wanted.up_kbps, std::min(wanted.down_kbps, limit)};
}

Rates rates_of(const State &state, const Host &host, bool online)
{
    return allowed(state.home, host, wanted_by(state, host, online, total_demand(state)));
}

// Where a device is attached now; nothing while it is not attached.
std::optional<Place> attachment_of(const Home &home, const Host &host)
{
    if (!is_there(home, host)) {
        return std::nullopt;
    }
    const Place place = place_of(home, host);
    return place.is_reached ? std::optional(place) : std::nullopt;
}

int64_t attached_since(const State &state, const Host &host, const Place &place)
{
    const Home &home = state.home;
    int64_t since = reached_since(state, place.router);
    if (const Ssid *ssid = ssid_of(home, host)) {
        since = std::max(since, ssid->on_since);
    }
    if (!host.away_days.empty()) {
        since = std::max(since, last_end({host.away_from, host.away_until, host.away_days}, now()));
    }
    if (host.presence_percent != 0) {
        int64_t slot = now() / kSlotSeconds;
        while (slot * kSlotSeconds > since && is_in_slot(home, host, slot - 1)) {
            --slot;
        }
        since = std::max(since, slot * kSlotSeconds);
    }
    return std::min(since, now()); // also when the clock has gone back
}

int64_t signal_dbm(const State &state, const Host &host, const Place &place)
{
    return host.ssid != 0 ? received_dbm(state, source_of(host.mac), place.signal_dbm) : 0;
}

} // namespace

bool is_there(const Home &home, const Host &host)
{
    if (!host.online || is_away(host) || !is_in_slot(home, host, now() / kSlotSeconds)) {
        return false;
    }
    const Ssid *ssid = ssid_of(home, host);
    return ssid == nullptr || (ssid->enabled && radio_of(home, ssid->band)->enabled);
}

Place place_of(const Home &home, const Host &host)
{
    if (host.roams) {
        return best_place(home, host);
    }
    if (host.router == home.identity.mac) {
        return {nullptr, true, host.signal_dbm};
    }
    const ChildRouter *router = child_router_with_mac(home, host.router);
    return {router, router != nullptr && is_active(home, *router), host.signal_dbm};
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

bool is_online(const Home &home, const Host &host)
{
    return attachment_of(home, host).has_value();
}

Activity activity_of(const State &state, const Host &host)
{
    const std::optional<Place> place = attachment_of(state.home, host);
    Activity activity = {place.has_value(), 0, rates_of(state, host, place.has_value()), 0};
    if (place) {
        activity.attached_since = attached_since(state, host, *place);
        activity.signal_dbm = signal_dbm(state, host, *place);
    }
    return activity;
}

int64_t attached_since(const State &state, const Host &host)
{
    const std::optional<Place> place = attachment_of(state.home, host);
    return place ? attached_since(state, host, *place) : 0;
}

int64_t online_hosts(const Home &home)
{
    return std::ranges::count_if(home.hosts,
                                 [&](const Host &host) { return is_online(home, host); });
}

int64_t online_wifi_clients(const Home &home)
{
    return std::ranges::count_if(
        home.hosts, [&](const Host &host) { return host.ssid != 0 && is_online(home, host); });
}

int64_t protected_hosts(const Home &home)
{
    return std::ranges::count_if(home.hosts,
                                 [&](const Host &host) { return is_protected(home, host.mac); });
}

bool has_access(const Home &home, const Host &host)
{
    return !host.blocked && !is_restricted(home, host.mac);
}

Rates rates_of(const State &state, const Host &host)
{
    return rates_of(state, host, is_online(state.home, host));
}

Rates withheld_rates(const State &state)
{
    const Home &home = state.home;
    const Rates sum = total_demand(state);
    Rates withheld;
    for (const Host &host : home.hosts) {
        const Rates wanted = wanted_by(state, host, is_online(home, host), sum);
        const Rates got = allowed(home, host, wanted);
        withheld.up_kbps += wanted.up_kbps - got.up_kbps;
        withheld.down_kbps += wanted.down_kbps - got.down_kbps;
    }
    return withheld;
}

int64_t signal_dbm(const State &state, const Host &host)
{
    const std::optional<Place> place = attachment_of(state.home, host);
    return place ? signal_dbm(state, host, *place) : 0;
}

} // namespace simulated_gateway
