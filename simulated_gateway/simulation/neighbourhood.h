// What the radios hear of the networks around them.
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
    int64_t neighbour; // its number; 0 for a network of the home, which the child routers repeat
};

// The networks that are in reach at this moment, the strongest first. A radio that is off hears
// nothing.
std::vector<HeardNetwork> heard_networks(const State &state);

// The ciphers of the two generations of WPA that a network offers.
struct Ciphers {
    std::string wpa;
    std::string wpa2;
};
Ciphers ciphers_of(const std::string &encryption);

} // namespace simulated_gateway
