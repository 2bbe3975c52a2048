// SPDX-License-Identifier: MIT
// Settings of one SSID.
#include "wifi.h"

using namespace smart_router;

namespace {

constexpr auto kSsidReply = Fields{
    FIELD(SsidInfo, SSID),       FIELD(SsidInfo, PWD),       FIELD(SsidInfo, ENCRYPT),
    FIELD(SsidInfo, PowerLevel), FIELD(SsidInfo, Channel),   FIELD(SsidInfo, UsedChannel),
    FIELD(SsidInfo, Enable),     FIELD(SsidInfo, Bandwidth), kSsidOptions,
};

constexpr auto kSsidSetting = Fields{kSsidRequired, kSsidOptions}.requiring(kSsidRequired.kCount);

// The keys of the agent's settings, which do not include the encryption.
constexpr auto kAgentSsidSetting = Fields{
    FIELD(SsidInfo, SSIDIndex), FIELD(SsidInfo, SSID),   FIELD(SsidInfo, PowerLevel),
    FIELD(SsidInfo, Channel),   FIELD(SsidInfo, Enable), FIELD(SsidInfo, PWD),
};

// The SSID whose power level is also set for the 5 GHz radio.
constexpr int32_t kMainSsid = 1;

} // namespace

int32_t json_get_wifi_info(cJSON *obj)
{
    constexpr const char *kFailure = "get ssid info failed";
    cJSON *item = cJSON_GetObjectItem(obj, "SSIDIndex");
    if (text_of(item) == nullptr) {
        log_error("can not find SSIDIndex object!\n");
        return refuse(obj, "no index");
    }
    char index[64];
    copy_text(index, text_of(item));
    if (index[0] == '\0') {
        log_error("invalid SSIDIndex!\n");
        return refuse(obj, "index string null");
    }
    SsidInfo ssid = {};
    ssid.SSIDIndex = number_of(index);
    if (ssid.SSIDIndex == 0) {
        // A text that is not a number counts as 0. The device decides which other indexes exist.
        log_error("invalid SSIDIndex 0!\n");
        return refuse(obj, "index is 0, (should be 1 to 8)");
    }
    const int32_t result = devapi_get_ssid_info(&ssid);
    remove_key(obj, item);
    answer_query(obj, result != 0, kSsidReply, &ssid, kFailure, StatusAt::kFirst);
    return result;
}

int32_t json_set_wifi_info(cJSON *obj)
{
    constexpr const char *kFailure = "SET_WIFI_INFO_FAIL";
    SsidInfo ssid = {};
    SettingRun run(obj, kSsidSetting, RemoveKeys::kAfterCall);
    if (!run.find(node_or_value_null()) || !run.fill(&ssid, kFailure)) {
        return -1;
    }
    run.remove_from(kSsidRequired.kCount);
    const int32_t result = devapi_set_ssid_info(&ssid);
    if (ssid.SSIDIndex == kMainSsid) {
        // The radio gets the text of the request uncut, also when the SSID could not be written.
        devapi_set_5gwifi_powerlevel(text_under(obj, "PowerLevel"));
    }
    run.end(result != 0, kFailure);
    return result;
}

int32_t parse_wifi_set_info_from_json(SsidInfo *record, cJSON *item)
{
    return read_fields(item, kAgentSsidSetting, record);
}
