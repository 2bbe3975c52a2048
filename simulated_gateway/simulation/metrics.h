// SPDX-License-Identifier: MIT
// The gateway's measurements of itself: values that vary over time around typical ones. The same
// seed gives the same values at the same time.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

int64_t cpu_percent(const State &state);
int64_t memory_percent(const State &state);
int64_t cpu_celsius(const State &state);

// The rates that the home would send and receive if no host were limited.
Rates wanted_rates(const State &state);

// Rates in kbit/s, and the round-trip time to the next gateway in ms; 0 without a connection.
int64_t up_kbps(const State &state);
int64_t down_kbps(const State &state);
int64_t delay_ms(const State &state);

// The received power, in dBm, of a transmitter with the given number and typical power.
int64_t received_dbm(const State &state, uint64_t transmitter, int64_t ordinary_dbm);

} // namespace simulated_gateway
