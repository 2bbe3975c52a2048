// SPDX-License-Identifier: MIT
// The SSIDs one by one. Transmit power, channel, bandwidth, mode and beamforming belong to the
// radio: a setting of one SSID changes them for all SSIDs of its band.
#include "device/wireless_network.h"
#include "model/radio_channels.h"

using namespace simulated_gateway;

// ---- SSIDs -------------------------------------------------------------------------------------

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

void simulated_gateway::take_ssid(const SsidInfo &info, Home &home)
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
