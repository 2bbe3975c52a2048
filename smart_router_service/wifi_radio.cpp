// SPDX-License-Identifier: MIT
// The sleep schedule of the Wi-Fi, scans for neighbouring networks, and the radios' channels.
#include "wifi.h"

#include <stdlib.h>
#include <string.h>

using namespace smart_router;

namespace {

constexpr auto kSleepFields = Fields{
    FIELD(WifiSleepInfo, Enable),
    FIELD(WifiSleepInfo, StartTime),
    FIELD(WifiSleepInfo, EndTime),
    FIELD(WifiSleepInfo, DaysOfWeek),
};

constexpr int32_t kSleepPeriods = 3;

constexpr auto kScanFields = Fields{
    FIELD(ScanEntry, SSID),      FIELD(ScanEntry, PowerLevel), FIELD(ScanEntry, ENCRYPT),
    FIELD(ScanEntry, WPACypher), FIELD(ScanEntry, WPA2Cypher), FIELD(ScanEntry, Band),
    FIELD(ScanEntry, Connected),
};

// The protocol reports only the networks in the first twenty slots.
constexpr size_t kReportedSlots = 20;

constexpr auto kPowerFields = Fields{
    FIELD(ChannelPower, name),
    FIELD(ChannelPower, dbpower),
};

// The result of a scan, and the guard that frees its entries.
class ScanGuard {
  public:
    // Including the padding between the members: a device may read the record as bytes.
    ScanGuard() { memset(&result, 0, sizeof result); }
    ~ScanGuard()
    {
        for (ScanEntry *entry : result.entries) {
            free(entry);
        }
    }
    ScanGuard(const ScanGuard &) = delete;
    ScanGuard &operator=(const ScanGuard &) = delete;

    ScanResult result;
};

struct ChannelName {
    int32_t number;
};

constexpr auto kChannelName = Fields{FIELD_AS(ChannelName, number, "Name")};

template <size_t most>
void list_channels(Reply &reply, const char *key, const int16_t (&channels)[most], int32_t count)
{
    cJSON *list = reply.list(key);
    const size_t listed = clamped(count, most);
    for (size_t at = 0; at < listed; ++at) {
        const ChannelName name = {channels[at]};
        reply.append(list, kChannelName, &name);
    }
}

// Adds the periods of the list one by one; the same record is passed for all, without being
// cleared. Result: null, or the failure text.
const char *add_sleep_periods(const cJSON *list)
{
    WifiSleepInfo period = {};
    cJSON *element;
    cJSON_ArrayForEach(element, list)
    {
        if (parse_wifi_sleep_info_from_json(&period, element) != 0) {
            return "parse sleep info failed";
        }
        if (devapi_add_wifi_timer(&period) != 0) {
            return "add wifi timer failed";
        }
        if (devapi_set_wifi_sleep_info(&period) != 0) {
            return "set ssid failed"; // the SSID settings' text, which apps expect here as well
        }
    }
    return nullptr;
}

} // namespace

int32_t json_get_wifi_sleep_info(cJSON *obj)
{
    Reply reply;
    cJSON *list = reply.list("WIFISleepList");
    for (int32_t number = 1; number <= kSleepPeriods; ++number) {
        WifiSleepInfo period = {};
        period.StartTimer = 2 * number - 1;
        period.EndTimer = 2 * number;
        const int32_t result = devapi_get_wifi_sleep_info(&period);
        if (result != 0) {
            LOG_ERROR("json_get_wifi_sleep_info error! return =%d! index=%d\n", result, number);
            continue;
        }
        reply.append(list, kSleepFields, &period);
    }
    reply.success();
    return answer(obj, reply, nullptr);
}

int32_t parse_wifi_sleep_info_from_json(WifiSleepInfo *record, cJSON *item)
{
    return read_fields(item, kSleepFields, record);
}

int32_t json_set_wifi_sleep_info(cJSON *obj)
{
    cJSON *list = cJSON_GetObjectItem(obj, "WIFISleepList");
    if (cJSON_IsArray(list) == 0) {
        remove_key(obj, list);
        return refuse(obj, "json node: WIFISleepList not found");
    }
    SuccessReply success;
    // The old schedule is deleted before the new one is read.
    const char *wrong = "del all wifi timerinfo failed";
    if (success.complete() && devapi_del_all_wifi_timerinfo() == 0) {
        wrong = add_sleep_periods(list);
    }
    remove_key(obj, list);
    if (wrong != nullptr) {
        return refuse(obj, wrong);
    }
    success.join(obj);
    return 0;
}

int32_t json_scan_wifi_ssid_list(cJSON *obj)
{
    constexpr const char *kFailure = "get scan rssi failed";
    ScanGuard scan;
    const int32_t result = devapi_get_scan_ssid(&scan.result);
    if (result != 0) {
        fail(obj, kFailure);
        return result;
    }
    Reply reply;
    cJSON *list = reply.list("SSIDList");
    for (size_t slot = 0; slot < kReportedSlots; ++slot) {
        if (scan.result.entries[slot] != nullptr) {
            reply.append(list, kScanFields, scan.result.entries[slot]);
        }
    }
    reply.success();
    answer(obj, reply, kFailure);
    return result;
}

int32_t json_get_scan_channle_power_list(cJSON *obj)
{
    constexpr const char *kFailure = "get channel rssi failed";
    ChannelPowerResult power = {};
    const int32_t result = devapi_scan_channel_power(&power);
    const Freed entries(power.entries);
    if (result != 0) {
        fail(obj, kFailure);
        return result;
    }
    Reply reply;
    cJSON *list = reply.list("SSIDList");
    const int32_t count = power.entries != nullptr ? power.count : 0;
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        reply.append(list, kPowerFields, &power.entries[at]);
    }
    reply.success();
    answer(obj, reply, kFailure);
    return result;
}

int32_t json_get_all_wifi_channel_list(cJSON *obj)
{
    constexpr const char *kFailure = "Get Wifi channel error";
    WifiChannelList channels = {};
    const int32_t result = devapi_get_all_wifi_channel_list(&channels);
    if (result != 0) {
        fail(obj, kFailure);
        return result;
    }
    Reply reply;
    list_channels(reply, "List24g", channels.channels_24g, channels.count_24g);
    list_channels(reply, "List58g", channels.channels_5g, channels.count_5g);
    reply.success();
    answer(obj, reply, kFailure);
    return result;
}
