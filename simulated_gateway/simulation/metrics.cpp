// SPDX-License-Identifier: MIT
#include "simulation/metrics.h"

#include "io/clock.h"
#include "simulation/host_activity.h"
#include "simulation/random.h"

#include <algorithm>

namespace simulated_gateway {
namespace {

// The typical value, varied by up to the given percentage.
int64_t varied(const State &state, Quantity quantity, int64_t ordinary, int64_t most_percent)
{
    return ordinary * (100 + deviation(state.home, quantity, 0, most_percent)) / 100;
}

// Freed resources fill up again after some minutes.
bool was_recently_optimized(const State &state)
{
    constexpr int64_t relief_seconds = 600;
    return state.optimization_time != 0 && seconds_since(state.optimization_time) < relief_seconds;
}

} // namespace

int64_t cpu_percent(const State &state)
{
    const int64_t percent = varied(state, Quantity::kCpu, state.home.ordinary_day.cpu_percent, 30);
    return std::min<int64_t>(100, was_recently_optimized(state) ? percent * 3 / 4 : percent);
}

int64_t memory_percent(const State &state)
{
    const int64_t percent =
        varied(state, Quantity::kMemory, state.home.ordinary_day.memory_percent, 5);
    return std::min<int64_t>(100, was_recently_optimized(state) ? percent * 3 / 4 : percent);
}

int64_t cpu_celsius(const State &state)
{
    return varied(state, Quantity::kTemperature, state.home.ordinary_day.cpu_celsius, 5);
}

Rates wanted_rates(const State &state)
{
    const Home &home = state.home;
    if (!home.wan.connected) {
        return {};
    }
    return {varied(state, Quantity::kUp, home.ordinary_day.up_kbps, 40),
            varied(state, Quantity::kDown, home.ordinary_day.down_kbps, 40)};
}

int64_t up_kbps(const State &state)
{
    return wanted_rates(state).up_kbps - withheld_rates(state).up_kbps;
}

int64_t down_kbps(const State &state)
{
    return wanted_rates(state).down_kbps - withheld_rates(state).down_kbps;
}

int64_t delay_ms(const State &state)
{
    const Home &home = state.home;
    if (!home.wan.connected) {
        return 0;
    }
    // Without QoS a packet is queued behind the home's other traffic.
    const int64_t waiting = home.services.qos_acceleration ? 1 : 2;
    return std::max<int64_t>(1, varied(state, Quantity::kDelay, home.ordinary_day.delay_ms, 20) *
                                    waiting);
}

int64_t received_dbm(const State &state, uint64_t transmitter, int64_t ordinary_dbm)
{
    constexpr int64_t most_db = 3;
    return std::min<int64_t>(
        -1, ordinary_dbm + deviation(state.home, Quantity::kSignal, transmitter, most_db));
}

} // namespace simulated_gateway
