// SPDX-License-Identifier: MIT
// The SSID settings that a list of settings changes, and the settings common to all of the Wi-Fi.
#include "device/wireless_network.h"

using namespace simulated_gateway;

// ---- SSIDs -------------------------------------------------------------------------------------

int32_t devapi_set_ssid_list_info(const SsidInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        Home &home = state.home;
        if (is_given(info->Bandwidth)) {
            const std::string &band = ssid_at(home, info->SSIDIndex).band;
            radio_of(home, band)->bandwidth_mhz = taken_number("Bandwidth", info->Bandwidth);
        }
        take_ssid(*info, home);
        return 0;
    });
}

int32_t devapi_get_ssid_num(int32_t *count)
{
    return query(__func__, {reply_number("count", count)}, [&](const State &state) {
        *count = static_cast<int32_t>(state.home.ssids.size());
        return 0;
    });
}

int32_t devapi_get_5g_wifi_index(int32_t *index)
{
    return query(__func__, {reply_number("index", index)}, [&](const State &state) {
        const std::vector<Ssid> &ssids = state.home.ssids;
        const auto first = std::ranges::find(ssids, "5GHz", &Ssid::band);
        if (first == ssids.end()) {
            throw Error("there is no SSID for 5GHz");
        }
        *index = static_cast<int32_t>(first - ssids.begin() + 1);
        return 0;
    });
}

// ---- Roaming and mesh --------------------------------------------------------------------------

int32_t devapi_get_wifi_stactrl(int32_t *enabled)
{
    return query(__func__, {reply_number("state", enabled)}, [&](const State &state) {
        *enabled = state.home.roaming.station_control ? 1 : 0;
        return 0;
    });
}

int32_t devapi_set_wifi_stactrl(const char *enable)
{
    return setting(__func__, {request_text("enable", enable)}, [&](State &state) {
        state.home.roaming.station_control = flag_of("enable", enable);
        return 0;
    });
}

int32_t devapi_get_wifi_fastroaming_enable(char *enable)
{
    constexpr size_t size = 8;
    return query(__func__, {reply_text("enable", enable)}, [&](const State &state) {
        put_text({enable, size}, state.home.roaming.fast_roaming ? "1" : "0");
        return 0;
    });
}

int32_t devapi_set_wifi_fastroaming(const char *enable)
{
    return setting(__func__, {request_text("enable", enable)}, [&](State &state) {
        // The plug-in passes an empty text until a client has set a value.
        if (*enable != '\0') {
            state.home.roaming.fast_roaming = flag_of("enable", enable);
        }
        return 0;
    });
}

int32_t devapi_get_Multi_Ap_enable(int32_t *enable)
{
    return query(__func__, {reply_number("enable", enable)}, [&](const State &state) {
        *enable = state.home.mesh.enabled ? 1 : 0;
        return 0;
    });
}
