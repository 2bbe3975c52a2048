// SPDX-License-Identifier: MIT
#include "model/radio_channels.h"

#include <algorithm>
#include <cstdlib>

namespace simulated_gateway {
namespace {

const std::vector<int64_t> kChannels24 = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
const std::vector<int64_t> kChannels5 = {36, 40, 44, 48, 52, 56, 60, 64, 149, 153, 157, 161, 165};

// Channels that do not overlap and are not shared with radar.
const std::vector<int64_t> kBestChannels24 = {1, 6, 11};
const std::vector<int64_t> kBestChannels5 = {36, 40, 44, 48, 149, 153, 157, 161};

// The lowest channel of the block that the channel is in: channels of 5 GHz are 20 MHz wide,
// numbered every 5 MHz and bonded into wider ones in fixed blocks.
int64_t block_of(int64_t channel, int64_t bandwidth_mhz)
{
    const int64_t first = channel < 149 ? 36 : 149;
    const int64_t width = bandwidth_mhz / 5;
    return first + (channel - first) / width * width;
}

// How much of a neighbour's transmission is received on the channel, in percent. 2.4 GHz channels
// are 5 MHz apart and about 22 MHz wide.
int64_t overlap(const Neighbour &neighbour, const Radio &radio, int64_t channel)
{
    if (neighbour.band != radio.band) {
        return 0;
    }
    if (radio.band == "2.4GHz") {
        constexpr int64_t reach = 5;
        return std::max<int64_t>(0, reach - std::abs(neighbour.channel - channel)) * 100 / reach;
    }
    const bool same_block =
        block_of(neighbour.channel, radio.bandwidth_mhz) == block_of(channel, radio.bandwidth_mhz);
    return same_block ? 100 : 0;
}

} // namespace

std::string band_of(int64_t channel)
{
    if (channel >= 1 && channel <= 14) {
        return "2.4GHz";
    }
    return channel >= 36 && channel <= 165 ? "5GHz" : "";
}

const std::vector<int64_t> &channels_of(const std::string &band)
{
    return band == "2.4GHz" ? kChannels24 : kChannels5;
}

int64_t congestion(const Home &home, const Radio &radio, int64_t channel)
{
    // A network at the noise floor adds no load, one in the next room a third of the time.
    constexpr int64_t noise_dbm = -95;
    int64_t percent = 0;
    for (const Neighbour &neighbour : home.neighbours) {
        const int64_t airtime = std::max<int64_t>(0, neighbour.signal_dbm - noise_dbm) / 2;
        percent += airtime * overlap(neighbour, radio, channel) / 100;
    }
    return std::min<int64_t>(percent, 100);
}

int64_t best_channel(const Home &home, const Radio &radio)
{
    int64_t best = radio.channel;
    for (const int64_t channel : radio.band == "2.4GHz" ? kBestChannels24 : kBestChannels5) {
        if (congestion(home, radio, channel) < congestion(home, radio, best)) {
            best = channel;
        }
    }
    return best;
}

} // namespace simulated_gateway
