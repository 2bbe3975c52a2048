// SPDX-License-Identifier: MIT
// Random draws from the home's seed: the same home gives the same result at the same time.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// The quantities that vary at random, independently of each other.
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

// The random source of a device.
uint64_t source_of(const std::string &mac);

// Random bits for a source of a quantity in a time slot.
uint64_t draw(const Home &home, Quantity quantity, uint64_t source, uint64_t slot);

// A number from -most to most. It is constant for a few seconds, so that values requested together
// are consistent.
int64_t deviation(const Home &home, Quantity quantity, uint64_t source, int64_t most);

} // namespace simulated_gateway
