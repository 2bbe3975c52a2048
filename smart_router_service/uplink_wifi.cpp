// SPDX-License-Identifier: MIT
// The network that the router joins as a repeater.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kUplinkFields = Fields{
    FIELD(UplinkWifiInfo, SSID),       FIELD(UplinkWifiInfo, PWD),
    FIELD(UplinkWifiInfo, ENCRYPT),    FIELD(UplinkWifiInfo, WPACypher),
    FIELD(UplinkWifiInfo, WPA2Cypher), FIELD(UplinkWifiInfo, Band),
};

// The names of the keys in the log.
constexpr char kLoggedNames[][8] = {"SSID", "PWD", "ENCRYPT", "Cypher1", "Cypher2", "Band"};

constexpr auto kConnectedSsid = Fields{
    FIELD_AS(UplinkWifiInfo, SSID, "ConnectedSSID"),
};

constexpr char kFailure[] = "SET_UPLINK_WIFI_INFO_FAIL";

// The status, unique to this command, for a repeater that another client is using.
void answer_in_use(cJSON *obj)
{
    Reply reply;
    reply.status("2");
    reply.text(kFailReason, "SOMEONE_USING_REPEATER");
    answer(obj, reply, kFailure);
}

} // namespace

int32_t json_set_uplink_wifi_info(cJSON *obj)
{
    constexpr size_t kCount = kUplinkFields.kCount;
    cJSON *items[kCount];
    const char *wrong = find_required(obj, kUplinkFields, node_or_value_null(), items);
    for (size_t at = 0; at < kCount; ++at) {
        if (items[at] == nullptr) {
            LOG_ERROR("can not find %s object!\n", kLoggedNames[at]);
        }
    }
    if (wrong != nullptr) {
        log_error("some object is NULL !\n");
        return refuse(obj, wrong);
    }
    LOG_ERROR("ssid = %s,pwd = %s,encrypt = %s, cypher1 = %s, cypher2 = %s, band = %s\r\n",
              text_of(items[0]), text_of(items[1]), text_of(items[2]), text_of(items[3]),
              text_of(items[4]), text_of(items[5]));

    UplinkWifiInfo uplink = {};
    copy_items(kUplinkFields, items, &uplink);
    SuccessReply success;
    success.reserve(kConnectedSsid);
    const int32_t result = success.complete() ? devapi_set_uplink_wifi_info(&uplink) : -1;
    for (cJSON *item : items) {
        remove_key(obj, item);
    }
    if (result == 0) {
        success.set_reserved(kConnectedSsid, &uplink);
        success.join(obj);
    } else if (result == -1) {
        fail(obj, kFailure);
    } else if (result == -2) {
        answer_in_use(obj);
    }
    return result; // other results are not reported
}
