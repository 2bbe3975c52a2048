// The one clock of the gateway: whatever asks for the time asks here.
#pragma once

#include <cstdint>
#include <optional>

namespace simulated_gateway {

// Seconds since 1970.
int64_t now();

// Never negative, also when the clock went back.
int64_t seconds_since(int64_t time);

// The time so many seconds after a time of 1970 or later, at most the last one that there is.
int64_t later(int64_t time, int64_t seconds);

// Stops the clock at a time, so that every value that goes by it stays the same; without one it
// runs with that of the machine.
void fix_clock(std::optional<int64_t> time);
bool clock_runs();

} // namespace simulated_gateway
