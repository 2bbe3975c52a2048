// SPDX-License-Identifier: MIT
// The guest network of one band, and how long it stays open.
#include "recipes.h"

#include <stdio.h>

using namespace smart_router;

namespace {

constexpr auto kGuestReply = Fields{
    FIELD(GuestWifiInfo, Enable),       FIELD(GuestWifiInfo, PermissionProperty),
    FIELD(GuestWifiInfo, SSID),         FIELD(GuestWifiInfo, ContinueTime),
    FIELD(GuestWifiInfo, RadioEnable),  FIELD(GuestWifiInfo, HourTime),
    FIELD(GuestWifiInfo, EndTimestamp), FIELD(GuestWifiInfo, Remainingtime),
    FIELD(GuestWifiInfo, PWD),          FIELD(GuestWifiInfo, ENCRYPT),
    FIELD(GuestWifiInfo, Mode),         FIELD(GuestWifiInfo, AdvertisementEnable),
};

constexpr auto kGuestSetting = Fields{
    FIELD(GuestWifiInfo, Enable), FIELD(GuestWifiInfo, SSID),    FIELD(GuestWifiInfo, Band),
    FIELD(GuestWifiInfo, PWD),    FIELD(GuestWifiInfo, ENCRYPT),
};

constexpr auto kGuestTimes = Fields{
    FIELD(GuestWifiInfo, ContinueTime),
    FIELD(GuestWifiInfo, HourTime),
};

constexpr auto kGuestOptions = Fields{
    FIELD(GuestWifiInfo, Mode),
    FIELD(GuestWifiInfo, AdvertisementEnable),
};

constexpr char kSetFailure[] = "set guest ssid failed";

// Computes for how many seconds the network stays open, from days and hours; a negative number
// means that the value was not given. Negative hours count only when there are no whole days;
// negative days count whenever hours were given. The arithmetic wraps at 32 bits, as the devices
// expect.
void set_end_timestamp(GuestWifiInfo &guest)
{
    const int32_t days = number_of(guest.ContinueTime);
    const int32_t hours = number_of(guest.HourTime);
    if (days < 0 && hours < 0) {
        copy_text(guest.EndTimestamp, kNotGiven);
        return;
    }
    uint32_t seconds = static_cast<uint32_t>(days) * 86400;
    if (days <= 0 || hours >= 0) {
        seconds += static_cast<uint32_t>(hours) * 3600;
    }
    snprintf(guest.EndTimestamp, sizeof guest.EndTimestamp, "%u", seconds);
}

const char *failure_of(int32_t result)
{
    return result == -2 ? "radio enable is closed,need to open" : kSetFailure;
}

} // namespace

int32_t json_get_hg_guest_ssid(cJSON *obj)
{
    const char *band = text_under(obj, "Band");
    if (band == nullptr) {
        return refuse(obj, "json :get band failed");
    }
    GuestWifiInfo guest = {};
    copy_text(guest.Band, band);
    const int32_t result = devapi_get_guest_wifi_info(&guest);
    answer_query(obj, result != 0, kGuestReply, &guest, "get guest wifi info failed",
                 StatusAt::kLast);
    return result;
}

int32_t json_set_hg_guest_ssid(cJSON *obj)
{
    if (obj == nullptr) {
        log_error("param is null.\n");
        return -1;
    }
    GuestWifiInfo guest = {};
    SettingRun run(obj, kGuestSetting, RemoveKeys::kAfterCall);
    if (!run.find("parse guest ssid failed")) {
        log_error("string is null.\n");
        return -1;
    }
    copy_optional(obj, kGuestTimes, &guest, Found::kStays);
    set_end_timestamp(guest);
    copy_optional(obj, kGuestOptions, &guest, Found::kIsRemoved);
    cJSON_DeleteItemFromObject(obj, "ContinueTime");
    cJSON_DeleteItemFromObject(obj, "HourTime");
    cJSON_DeleteItemFromObject(obj, "EndTimestamp"); // not read: the device gets the computed one
    if (!run.fill(&guest, kSetFailure)) {
        return -1;
    }
    run.remove_from(0);
    const int32_t result = devapi_set_guest_wifi_info(&guest);
    run.end(result != 0, failure_of(result));
    return result;
}
