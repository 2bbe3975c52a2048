// SPDX-License-Identifier: MIT
// The options of `hgagent fleet`, the gateways.
#pragma once

#include "commands/options.h"
#include "fleet/gateway_id.h"
#include "service/mqtt_call/broker_arguments.h"

#include <cstdint>
#include <string>

namespace agent::fleet {

struct FleetOptions {
    uint32_t count = 0;
    uint32_t first = 1; // the number of the first gateway
    service::BrokerArguments broker;
    std::string prefix = kDefaultPrefix;
    std::string mix = "three_storey_house"; // SCENARIO[=WEIGHT],...
    uint64_t seed = 1;
    double ramp = 0;             // starts per second; 0: as fast as the broker takes them
    std::string states;          // folder; empty: a state is lost when its gateway ends
    bool churn = false;          // faults by plan
    std::string policy;          // file; needed unless the broker is on this machine
    double reconnect_spread = 0; // seconds; 0: by the number of gateways
    std::string metrics;         // file; empty: none
    std::string log;             // file for the gateways' own lines; empty: none
    HostOptions host;            // those before the subcommand
    int32_t log_level = 3;
};

} // namespace agent::fleet
