// SPDX-License-Identifier: MIT
// Radio channels: which exist, how congested they are, and which is the best.
#pragma once

#include "model/model.h"

#include <string>
#include <vector>

namespace simulated_gateway {

// "2.4GHz" or "5GHz"; empty for a number that is not a channel.
std::string band_of(int64_t channel);

// Those that the router's own radio may use.
const std::vector<int64_t> &channels_of(const std::string &band);

// The load that neighbouring networks put on a channel of a radio, in percent of the time.
int64_t congestion(const Home &home, const Radio &radio, int64_t channel);

// The channel that a radio would select: the least congested one. Of several, its current channel,
// otherwise the lowest.
int64_t best_channel(const Home &home, const Radio &radio);

} // namespace simulated_gateway
