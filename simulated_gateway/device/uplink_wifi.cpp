// SPDX-License-Identifier: MIT
// The router as a repeater that joins a neighbouring network.
#include "core/device_call.h"
#include "simulation/neighbourhood.h"

#include <algorithm>

using namespace simulated_gateway;

// The number of the neighbour that a scan would find now; of several with the name, the strongest.
// The home's own networks are excluded: joining one would create a loop.
static int64_t neighbour_in_reach(const State &state, const std::string &name,
                                  const std::string &band)
{
    const std::vector<HeardNetwork> heard = heard_networks(state);
    const auto found = std::ranges::find_if(heard, [&](const HeardNetwork &network) {
        return network.neighbour != 0 && network.name == name && network.band == band;
    });
    if (found == heard.end()) {
        throw Error("there is no network " + in_quotes(name) + " in reach on " + in_quotes(band));
    }
    return found->neighbour;
}

static bool is_key(const UplinkWifiInfo &info, const Neighbour &neighbour)
{
    const Ciphers ciphers = ciphers_of(neighbour.encryption);
    if (taken(info.ENCRYPT) != neighbour.encryption || taken(info.WPACypher) != ciphers.wpa ||
        taken(info.WPA2Cypher) != ciphers.wpa2) {
        throw Error("the network has a different encryption");
    }
    return neighbour.encryption == kNoEncryption ||
           (!neighbour.password.empty() && taken(info.PWD) == neighbour.password);
}

int32_t devapi_set_uplink_wifi_info(UplinkWifiInfo *info)
{
    constexpr int32_t someone_uses_it = -2;
    return setting(__func__, {exchange("info", info)}, [&](State &state) {
        Home &home = state.home;
        if (home.repeater.used_by_another) {
            return someone_uses_it;
        }
        const std::string name = taken("SSID", info->SSID, Text{33});
        const int64_t number = neighbour_in_reach(state, name, taken(info->Band));
        const Neighbour &neighbour = home.neighbours[static_cast<size_t>(number - 1)];
        if (!is_key(*info, neighbour)) {
            throw Error("PWD is not the key of the network");
        }
        home.repeater.neighbour = number;
        put(info->SSID, neighbour.name);
        return 0;
    });
}
