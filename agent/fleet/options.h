// SPDX-License-Identifier: MIT
// The options of `hgagent fleet`, the gateways.
#pragma once

#include "fleet/gateway_id.h"

#include <cstdint>
#include <string>

namespace agent::fleet {

struct FleetOptions {
    uint32_t count = 0;
    uint32_t first = 1; // the number of the first gateway
    std::string broker; // URL
    std::string prefix = kDefaultPrefix;
    std::string root = "gateway";
    std::string mix = "three_storey_house"; // SCENARIO[=WEIGHT],...
    uint64_t seed = 1;
    double ramp = 0;    // starts per second; 0: as fast as the broker takes them
    std::string states; // folder; empty: states are lost when a gateway ends
};

} // namespace agent::fleet
