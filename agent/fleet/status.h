// SPDX-License-Identifier: MIT
// The numbers of a running fleet, as a table for people and as metrics for Prometheus.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace agent::fleet {

struct Status {
    // Gateways, each counted once.
    uint32_t up = 0;
    uint32_t connecting = 0; // running, without a connection
    uint32_t starting = 0;   // or waiting for their turn to start
    uint32_t off = 0;        // without power, by plan
    uint32_t failed = 0;     // ended, waiting to be started again

    // Since the start of the fleet.
    uint64_t requests = 0;
    uint64_t connections = 0;
    uint64_t losses = 0; // of connections
    uint64_t takeovers = 0;
    uint64_t crashes = 0;
    uint64_t hangs = 0;
    uint64_t failed_starts = 0;
    uint64_t power_losses = 0;
    uint64_t waves = 0; // of cut connections
    double processor_seconds = 0;

    double requests_per_second = 0;
    double processors = 0;    // of the machine's, in use
    uint64_t memory_each = 0; // bytes of private memory, by a sample
};

// The lines of a table.
std::vector<std::string> table_of(const Status &status);

// In the text format of Prometheus.
std::string metrics_of(const Status &status);

} // namespace agent::fleet
