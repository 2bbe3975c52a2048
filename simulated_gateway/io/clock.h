// SPDX-License-Identifier: MIT
// The only clock of the gateway: all code uses it for the time.
#pragma once

#include <cstdint>
#include <optional>

namespace simulated_gateway {

// Seconds since 1970.
int64_t now();

// Never negative, even if the clock was set back.
int64_t seconds_since(int64_t time);

// The time the given seconds after a time of 1970 or later; at most INT64_MAX.
int64_t later(int64_t time, int64_t seconds);

// Stops the clock at a time, so that every value that depends on it is constant. Without a time it
// follows the machine's clock.
void fix_clock(std::optional<int64_t> time);
// Moves the clock forward; it runs or is stopped as before. Result: false, with the clock
// unchanged, if a running clock would be more than a hundred years ahead of the machine's.
bool advance_clock(int64_t seconds);
bool clock_runs();
// Seconds that a running clock is ahead of the machine's.
int64_t clock_lead();

} // namespace simulated_gateway
