// SPDX-License-Identifier: MIT
#include "simulation/neighbourhood.h"

#include "simulation/mesh.h"
#include "simulation/metrics.h"

#include <algorithm>
#include <functional>

namespace simulated_gateway {
namespace {

// Below this level the receiver finds nothing but noise.
constexpr int64_t kSensitivityDbm = -88;

// Child routers are placed where they receive the main router well, and so it receives them.
constexpr int64_t kChildRouterDbm = -55;

bool hears(const Home &home, const std::string &band)
{
    const Radio *radio = radio_of(home, band);
    return radio != nullptr && radio->enabled;
}

} // namespace

std::vector<HeardNetwork> heard_networks(const State &state)
{
    const Home &home = state.home;
    std::vector<HeardNetwork> heard;
    const bool has_child_routers = !active_routers(home).empty();
    uint64_t transmitter = 0;
    const auto receive = [&](const auto &network, const std::string &name, int64_t channel,
                             int64_t ordinary_dbm, int64_t neighbour) {
        const int64_t signal_dbm = received_dbm(state, transmitter, ordinary_dbm);
        if (hears(home, network.band) && signal_dbm >= kSensitivityDbm) {
            heard.push_back(
                {name, network.band, channel, network.encryption, signal_dbm, neighbour});
        }
    };
    for (size_t at = 0; at < home.neighbours.size(); ++at) {
        const Neighbour &neighbour = home.neighbours[at];
        ++transmitter;
        receive(neighbour, neighbour.name, neighbour.channel, neighbour.signal_dbm,
                static_cast<int64_t>(at + 1));
    }
    for (const Ssid &ssid : home.ssids) {
        ++transmitter;
        if (ssid.enabled && has_child_routers) {
            receive(ssid, ssid.hidden ? "" : ssid.name, radio_of(home, ssid.band)->channel,
                    kChildRouterDbm, 0);
        }
    }
    std::ranges::stable_sort(heard, std::ranges::greater(), &HeardNetwork::signal_dbm);
    return heard;
}

Ciphers ciphers_of(const std::string &encryption)
{
    return {"NONE", encryption == kNoEncryption ? "NONE" : "AES"};
}

} // namespace simulated_gateway
