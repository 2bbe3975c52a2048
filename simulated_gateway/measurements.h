// What the gateway measures of itself: values that vary in time around those of an ordinary day.
// The same seed gives the same values at the same time.
#pragma once

#include "model.h"

namespace simulated_gateway {

int64_t cpu_percent(const State &state);
int64_t memory_percent(const State &state);
int64_t cpu_celsius(const State &state);

// Rates in kbit/s, and the time to the next gateway and back in ms; 0 without a connection.
int64_t up_kbps(const State &state);
int64_t down_kbps(const State &state);
int64_t delay_ms(const State &state);

// The power at which a transmitter of that number and ordinary power is received, in dBm.
int64_t received_dbm(const State &state, uint64_t transmitter, int64_t ordinary_dbm);

// Whether the network that the host has been on is still there for it.
bool is_online(const Home &home, const Host &host);
int64_t online_hosts(const Home &home);
int64_t online_wifi_clients(const Home &home);
int64_t protected_hosts(const Home &home);

} // namespace simulated_gateway
