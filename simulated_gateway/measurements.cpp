#include "measurements.h"

#include "clock.h"

#include <algorithm>

namespace simulated_gateway {
namespace {

enum class Quantity : uint64_t { kCpu = 1, kMemory, kTemperature, kUp, kDown, kDelay, kSignal };

// Mixes bits well (the finalizer of SplitMix64): neighbouring seeds and times share nothing.
uint64_t mixed(uint64_t bits)
{
    bits += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

// A number from -most to most, for one of the sources of a quantity. It stays for a few seconds, so
// that what is asked for at one time fits together.
int64_t deviation(const State &state, Quantity quantity, uint64_t source, int64_t most)
{
    constexpr int64_t slot_seconds = 5;
    const auto seed = static_cast<uint64_t>(state.home.ordinary_day.seed);
    const auto slot = static_cast<uint64_t>(now() / slot_seconds);
    const uint64_t start = mixed(mixed(seed) + static_cast<uint64_t>(quantity)) + slot;
    const uint64_t bits = mixed(source == 0 ? start : mixed(start) + source);
    return static_cast<int64_t>(bits % static_cast<uint64_t>(2 * most + 1)) - most;
}

// The ordinary value, more or less up to so many percent.
int64_t varied(const State &state, Quantity quantity, int64_t ordinary, int64_t most_percent)
{
    return ordinary * (100 + deviation(state, quantity, 0, most_percent)) / 100;
}

// Freed resources fill up again.
bool is_relieved(const State &state)
{
    constexpr int64_t relief_seconds = 600;
    return state.optimization_time != 0 && seconds_since(state.optimization_time) < relief_seconds;
}

} // namespace

int64_t cpu_percent(const State &state)
{
    const int64_t percent = varied(state, Quantity::kCpu, state.home.ordinary_day.cpu_percent, 30);
    return std::min<int64_t>(100, is_relieved(state) ? percent * 3 / 4 : percent);
}

int64_t memory_percent(const State &state)
{
    const int64_t percent =
        varied(state, Quantity::kMemory, state.home.ordinary_day.memory_percent, 5);
    return std::min<int64_t>(100, is_relieved(state) ? percent * 3 / 4 : percent);
}

int64_t cpu_celsius(const State &state)
{
    return varied(state, Quantity::kTemperature, state.home.ordinary_day.cpu_celsius, 5);
}

int64_t up_kbps(const State &state)
{
    const Home &home = state.home;
    return home.wan.connected ? varied(state, Quantity::kUp, home.ordinary_day.up_kbps, 40) : 0;
}

int64_t down_kbps(const State &state)
{
    const Home &home = state.home;
    return home.wan.connected ? varied(state, Quantity::kDown, home.ordinary_day.down_kbps, 40) : 0;
}

int64_t delay_ms(const State &state)
{
    const Home &home = state.home;
    if (!home.wan.connected) {
        return 0;
    }
    // Without QoS a packet waits behind the home's other traffic.
    const int64_t waiting = home.services.qos_acceleration ? 1 : 2;
    return std::max<int64_t>(1, varied(state, Quantity::kDelay, home.ordinary_day.delay_ms, 20) *
                                    waiting);
}

int64_t received_dbm(const State &state, uint64_t transmitter, int64_t ordinary_dbm)
{
    constexpr int64_t most_db = 3;
    return std::min<int64_t>(-1, ordinary_dbm +
                                     deviation(state, Quantity::kSignal, transmitter, most_db));
}

bool is_online(const Home &home, const Host &host)
{
    if (host.ssid == 0) {
        return host.online;
    }
    const Ssid &ssid = home.ssids[static_cast<size_t>(host.ssid - 1)];
    return host.online && ssid.enabled && radio_of(home, ssid.band)->enabled;
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
    return std::ranges::count_if(home.hosts, [](const Host &host) { return host.is_protected; });
}

} // namespace simulated_gateway
