// SPDX-License-Identifier: MIT
// The guest network of each band: one of the SSIDs, on for a limited time.
#include "device/wireless_network.h"
#include "io/clock.h"

#include <algorithm>

using namespace simulated_gateway;

template <class AnyHome> static auto &ssid_of(AnyHome &home, const GuestNetwork &guest)
{
    return home.ssids[static_cast<size_t>(guest.ssid - 1)];
}

template <class AnyHome> static auto &guest_network(AnyHome &home, const std::string &band)
{
    const auto found = std::ranges::find_if(home.guest_networks, [&](const GuestNetwork &guest) {
        return ssid_of(home, guest).band == band;
    });
    if (found == home.guest_networks.end()) {
        throw Error("Band " + in_quotes(band) + " has no guest network");
    }
    return *found;
}

static int64_t remaining_seconds(const GuestNetwork &guest, const Ssid &ssid)
{
    if (!ssid.enabled) {
        return 0;
    }
    return guest.end_time != 0 ? guest.end_time - now() : -1;
}

int32_t devapi_get_guest_wifi_info(GuestWifiInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const GuestNetwork &guest = guest_network(home, taken(info->Band));
        const Ssid &ssid = ssid_of(home, guest);
        const Radio &radio = *radio_of(home, ssid.band);
        put_network(*info, radio, ssid);
        put(info->RadioEnable, radio.enabled);
        put(info->ContinueTime, guest.days);
        put(info->HourTime, guest.hours);
        put(info->EndTimestamp, guest.seconds);
        put(info->Remainingtime, remaining_seconds(guest, ssid));
        put(info->PermissionProperty, std::string("GUEST"));
        return 0;
    });
}

int32_t devapi_set_guest_wifi_info(const GuestWifiInfo *info)
{
    constexpr int32_t radio_is_off = -2;
    return setting(__func__, {request("info", info)}, [&](State &state) {
        Home &home = state.home;
        GuestNetwork &guest = guest_network(home, taken(info->Band));
        Ssid &ssid = ssid_of(home, guest);
        Radio &radio = *radio_of(home, ssid.band);
        if (!radio.enabled) {
            return radio_is_off;
        }
        take_network(*info, home, radio, ssid);
        guest.days = taken_number("ContinueTime", info->ContinueTime);
        guest.hours = taken_number("HourTime", info->HourTime);
        guest.seconds = taken_number("EndTimestamp", info->EndTimestamp);
        guest.end_time = 0; // the time limit starts again
        return 0;
    });
}
