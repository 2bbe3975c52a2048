// Settings of one SSID.
#include "wifi.h"

using namespace smart_router;

namespace {

constexpr auto kSsidReply = fields_of<SsidInfo>({
    FIELD(SsidInfo, "SSID", SSID),
    FIELD(SsidInfo, "PWD", PWD),
    FIELD(SsidInfo, "ENCRYPT", ENCRYPT),
    FIELD(SsidInfo, "PowerLevel", PowerLevel),
    FIELD(SsidInfo, "Channel", Channel),
    FIELD(SsidInfo, "UsedChannel", UsedChannel),
    FIELD(SsidInfo, "Enable", Enable),
    FIELD(SsidInfo, "Bandwidth", Bandwidth),
    FIELD(SsidInfo, "AdvertisementEnable", AdvertisementEnable),
    FIELD(SsidInfo, "Mode", Mode),
    FIELD(SsidInfo, "Beamforming", Beamforming),
});

constexpr auto kSsidSetting = fields_of<SsidInfo>({
    FIELD(SsidInfo, "SSIDIndex", SSIDIndex),
    FIELD(SsidInfo, "SSID", SSID),
    FIELD(SsidInfo, "PWD", PWD),
    FIELD(SsidInfo, "ENCRYPT", ENCRYPT),
    FIELD(SsidInfo, "PowerLevel", PowerLevel),
    FIELD(SsidInfo, "Channel", Channel),
    FIELD(SsidInfo, "Enable", Enable),
    FIELD(SsidInfo, "AdvertisementEnable", AdvertisementEnable),
    FIELD(SsidInfo, "Mode", Mode),
    FIELD(SsidInfo, "Beamforming", Beamforming),
});

// What the agent's own settings carry; the encryption is not among it.
constexpr auto kAgentSsidSetting = fields_of<SsidInfo>({
    FIELD(SsidInfo, "SSIDIndex", SSIDIndex),
    FIELD(SsidInfo, "SSID", SSID),
    FIELD(SsidInfo, "PowerLevel", PowerLevel),
    FIELD(SsidInfo, "Channel", Channel),
    FIELD(SsidInfo, "Enable", Enable),
    FIELD(SsidInfo, "PWD", PWD),
});

// The SSID whose power level is pushed to the 5 GHz radio as well.
constexpr int32_t kMainSsid = 1;

} // namespace

int32_t json_get_wifi_info(cJSON *obj)
{
    constexpr char kFailure[] = "get ssid info failed";
    cJSON *item = cJSON_GetObjectItem(obj, "SSIDIndex");
    if (text_of(item) == nullptr) {
        LOG_ERROR("can not find SSIDIndex object!\n");
        fail(obj, "no index");
        return -1;
    }
    char index[64];
    copy_text(index, text_of(item));
    if (index[0] == '\0') {
        LOG_ERROR("invalid SSIDIndex!\n");
        fail(obj, "index string null");
        return -1;
    }
    SsidInfo ssid = {};
    ssid.SSIDIndex = number_of(index);
    if (ssid.SSIDIndex == 0) {
        // Whatever is no number is 0. Which of the others exist is for the device to say.
        LOG_ERROR("invalid SSIDIndex 0!\n");
        fail(obj, "index is 0, (should be 1 to 8)");
        return -1;
    }
    const int32_t result = devapi_get_ssid_info(&ssid);
    consume(obj, item);
    answer_query(obj, result != 0, kSsidReply, &ssid, kFailure, StatusAt::kFirst);
    return result;
}

int32_t json_set_wifi_info(cJSON *obj)
{
    constexpr char kFailure[] = "SET_WIFI_INFO_FAIL";
    SsidInfo ssid = {};
    SettingRun run(obj, kSsidSetting, Consume::kAfterCall, kSsidRequired);
    if (!run.find(kNodeOrValueNull) || !run.fill(&ssid, kFailure)) {
        return -1;
    }
    const int32_t result = devapi_set_ssid_info(&ssid);
    if (ssid.SSIDIndex == kMainSsid) {
        // The radio follows the request even where the SSID could not be written.
        devapi_set_5gwifi_powerlevel(ssid.PowerLevel);
    }
    run.end(result != 0, kFailure);
    return result;
}

int32_t parse_wifi_set_info_from_json(SsidInfo *record, cJSON *item)
{
    return read_fields(item, kAgentSsidSetting, record);
}
