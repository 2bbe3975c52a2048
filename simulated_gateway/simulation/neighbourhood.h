// SPDX-License-Identifier: MIT
// The networks that the radios receive.
#pragma once

#include "model/model.h"

#include <string>
#include <vector>

namespace simulated_gateway {

struct HeardNetwork {
    std::string name; // empty for a hidden network
    std::string band;
    int64_t channel;
    std::string encryption;
    int64_t signal_dbm;
    int64_t neighbour; // its number; 0 for a network of the home, repeated by the child routers
};

// The networks in range now, the strongest first. A radio that is off receives nothing.
std::vector<HeardNetwork> heard_networks(const State &state);

// The ciphers that a network offers for WPA, and for WPA2 and later.
struct Ciphers {
    std::string wpa;
    std::string wpa2;
};
Ciphers ciphers_of(const std::string &encryption);

} // namespace simulated_gateway
