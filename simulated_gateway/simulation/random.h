// Random draws from the seed of the ordinary day: the same home draws the same at the same time.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// What varies at random, each by itself.
enum class Quantity : uint64_t {
    kCpu = 1,
    kMemory,
    kTemperature,
    kUp,
    kDown,
    kDelay,
    kSignal,
    kPresence,
    kHostUp,
    kHostDown,
    kPlace,
    kDistance,
    kLinkSpeed
};

// The source of a device's draws.
uint64_t source_of(const std::string &mac);

// Bits at random, for one of the sources of a quantity in a slot of time.
uint64_t draw(const Home &home, Quantity quantity, uint64_t source, uint64_t slot);

// A number from -most to most. It stays for a few seconds, so that what is asked for at one time
// fits together.
int64_t deviation(const Home &home, Quantity quantity, uint64_t source, int64_t most);

} // namespace simulated_gateway
