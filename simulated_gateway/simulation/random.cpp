// SPDX-License-Identifier: MIT
#include "simulation/random.h"

#include "io/clock.h"

namespace simulated_gateway {
namespace {

// Mixes bits well (the finalizer of SplitMix64), so that neighbouring seeds and times give
// unrelated results.
uint64_t mixed(uint64_t bits)
{
    bits += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

} // namespace

uint64_t source_of(const std::string &mac)
{
    uint64_t number = 0;
    for (const char digit : mac) {
        if (digit != ':') {
            number =
                number << 4 | static_cast<uint64_t>(digit <= '9' ? digit - '0' : digit - 'A' + 10);
        }
    }
    return number;
}

uint64_t draw(const Home &home, Quantity quantity, uint64_t source, uint64_t slot)
{
    const auto seed = static_cast<uint64_t>(home.ordinary_day.seed);
    const uint64_t start = mixed(mixed(seed) + static_cast<uint64_t>(quantity)) + slot;
    return mixed(source == 0 ? start : mixed(start) + source);
}

int64_t deviation(const Home &home, Quantity quantity, uint64_t source, int64_t most)
{
    constexpr int64_t slot_seconds = 5;
    const uint64_t bits = draw(home, quantity, source, static_cast<uint64_t>(now() / slot_seconds));
    return static_cast<int64_t>(bits % static_cast<uint64_t>(2 * most + 1)) - most;
}

} // namespace simulated_gateway
