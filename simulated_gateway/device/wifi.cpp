// The SSIDs, one by one and as a list, and what all of the Wi-Fi has in common. Transmit power,
// channel, bandwidth, mode and beamforming are those of the radio: a setting of one SSID changes
// them for all SSIDs of its band.
#include "device/wireless_network.h"
#include "model/radio_channels.h"

using namespace simulated_gateway;

// ---- SSIDs -------------------------------------------------------------------------------------

template <class AnyHome> static auto &ssid_at(AnyHome &home, int32_t index)
{
    if (index < 1 || static_cast<size_t>(index) > home.ssids.size()) {
        throw Error("there is no SSID " + std::to_string(index));
    }
    return home.ssids[static_cast<size_t>(index - 1)];
}

static bool is_for_guests(const Home &home, int32_t index)
{
    return std::ranges::find(home.guest_networks, index, &GuestNetwork::ssid) !=
           home.guest_networks.end();
}

int32_t devapi_get_ssid_info(SsidInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const Ssid &ssid = ssid_at(home, info->SSIDIndex);
        const Radio &radio = *radio_of(home, ssid.band);
        put_network(*info, radio, ssid);
        put(info->PowerLevel, radio.power_percent);
        put(info->Channel, radio.automatic_channel ? 0 : radio.channel);
        put(info->UsedChannel, radio.enabled ? radio.channel : 0);
        put(info->Bandwidth, radio.bandwidth_mhz);
        put(info->Type, radio.band == "5GHz");
        put(info->Beamforming, radio.beamforming);
        put(info->PermissionProperty,
            std::string(is_for_guests(home, info->SSIDIndex) ? "GUEST" : "FULL"));
        return 0;
    });
}

static void take_channel(const Home &home, Radio &radio, int64_t channel)
{
    radio.automatic_channel = channel == 0;
    radio.channel = radio.automatic_channel ? best_channel(home, radio) : channel;
}

// Which channels and bandwidths the radio has, the model says.
static void take_ssid(const SsidInfo &info, Home &home)
{
    Ssid &ssid = ssid_at(home, info.SSIDIndex);
    Radio &radio = *radio_of(home, ssid.band);
    take_network(info, home, radio, ssid);
    radio.power_percent = taken_number("PowerLevel", info.PowerLevel);
    if (is_given(info.Beamforming)) {
        radio.beamforming = taken_flag("Beamforming", info.Beamforming);
    }
    take_channel(home, radio, taken_number("Channel", info.Channel));
}

int32_t devapi_set_ssid_info(const SsidInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        take_ssid(*info, state.home);
        return 0;
    });
}

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

// ---- The 5 GHz radio ---------------------------------------------------------------------------

int32_t devapi_set_5gwifi_powerlevel(const char *level)
{
    return setting(__func__, {request_text("level", level)}, [&](State &state) {
        Radio *radio = radio_of(state.home, "5GHz");
        if (radio == nullptr) {
            throw Error("there is no radio for 5GHz");
        }
        radio->power_percent = number_of("level", level);
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
        // Nothing is said where no client has said anything yet.
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
