// SPDX-License-Identifier: MIT
// One gateway of a fleet: what a process that the fleet has forked does.
#pragma once

#include "fleet/options.h"
#include "fleet/slot.h"
#include "service/gate/policy.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace agent::fleet {

struct GatewaySettings {
    std::string id;
    uint32_t number = 0;
    std::string scenario;
    std::string state; // file; empty: none
    std::vector<std::string> faults;
    bool was_off = false; // without power
};

// What all gateways have in common, read before the first is forked.
struct CommonSettings {
    FleetOptions options;
    bool is_trusted = false; // the broker is on this machine: everything is allowed
    service::Policy policy;
    std::chrono::milliseconds reconnect_spread{0};
};

// Runs until SIGTERM. SIGUSR1 cuts its connection. Result: the exit status.
int run_gateway(const CommonSettings &common, const GatewaySettings &settings, Slot &slot);

} // namespace agent::fleet
