// What the gateway measures of itself: values that vary in time around those of an ordinary day.
// The same seed gives the same values at the same time.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

int64_t cpu_percent(const State &state);
int64_t memory_percent(const State &state);
int64_t cpu_celsius(const State &state);

// The rates at which the home would send and receive if every host might as it likes.
Rates wanted_rates(const State &state);

// Rates in kbit/s, and the time to the next gateway and back in ms; 0 without a connection.
int64_t up_kbps(const State &state);
int64_t down_kbps(const State &state);
int64_t delay_ms(const State &state);

// The power at which a transmitter of that number and ordinary power is received, in dBm.
int64_t received_dbm(const State &state, uint64_t transmitter, int64_t ordinary_dbm);

} // namespace simulated_gateway
