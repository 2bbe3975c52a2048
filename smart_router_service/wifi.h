// What the Wi-Fi handlers share: the keys of an SSID's settings, and helpers that are exported as
// well, for whoever handles the same objects.
#pragma once

#include "handler_support.h"

namespace smart_router {

// How many of the fields each setting of an SSID has to give; the tables begin with those.
inline constexpr size_t kSsidRequired = 7;

} // namespace smart_router

extern "C" {

// Fills an SSID record from one element of a list of settings; what the element leaves out is
// filled so that the device leaves it unchanged. Result: 0, or -1 when an argument is null or a
// required key has no text, and then the record is untouched.
SMART_ROUTER_API int32_t parse_wifi_info_from_json(SsidInfo *record, cJSON *item);

// Fills the texts of a sleep period from one element of a schedule; the timer numbers stay. Result:
// 0, or -1 when an argument is null or a key has no text, and then the record is untouched.
SMART_ROUTER_API int32_t parse_wifi_sleep_info_from_json(WifiSleepInfo *record, cJSON *item);

// The worker that applies a list of settings: a thread entry. It owns the array of
// g_set_wifi_array_size SsidInfo records, and releases setwifilistlock at its end.
SMART_ROUTER_API void *set_wifi_list_arr_thread(void *array);
}
