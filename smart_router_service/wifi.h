// SPDX-License-Identifier: MIT
// Shared by the Wi-Fi handlers: the keys of an SSID's settings, and helpers that are also exported
// for agents that handle the same objects.
#pragma once

#include "recipes.h"

namespace smart_router {

// The required keys of each setting of an SSID, and the optional ones that most tables share.
inline constexpr auto kSsidRequired = Fields{
    FIELD(SsidInfo, SSIDIndex), FIELD(SsidInfo, SSID),       FIELD(SsidInfo, PWD),
    FIELD(SsidInfo, ENCRYPT),   FIELD(SsidInfo, PowerLevel), FIELD(SsidInfo, Channel),
    FIELD(SsidInfo, Enable),
};
inline constexpr auto kSsidOptions = Fields{
    FIELD(SsidInfo, AdvertisementEnable),
    FIELD(SsidInfo, Mode),
    FIELD(SsidInfo, Beamforming),
};

} // namespace smart_router

extern "C" {

// Fills an SSID record from one element of a list of settings; fields that the element omits are
// filled so that the device leaves them unchanged. Result: 0, or -1 when an argument is null, or a
// required key is absent or not a string, and then the record is unchanged.
SMART_ROUTER_API int32_t parse_wifi_info_from_json(SsidInfo *record, cJSON *item);

// Fills the texts of a sleep period from one element of a schedule; the timer numbers are not
// changed. Result: 0, or -1 when an argument is null, or a key is absent or not a string, and then
// the record is unchanged.
SMART_ROUTER_API int32_t parse_wifi_sleep_info_from_json(WifiSleepInfo *record, cJSON *item);

// The worker that applies a list of settings: a thread entry. It owns the array of
// g_set_wifi_array_size SsidInfo records, and releases setwifilistlock when it ends.
SMART_ROUTER_API void *set_wifi_list_arr_thread(void *array);
}
