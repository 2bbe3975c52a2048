// SPDX-License-Identifier: MIT
// The router's WAN connections: their number, and one of them at a time.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kWanNum = Fields{
    FIELD(WanNum, NUM),
    FIELD(WanNum, Description),
};

// Fields that the reply and the setting have in common, in groups.
constexpr auto kAddresses = Fields{
    FIELD(WanInfo, SERVICELIST), FIELD(WanInfo, ADDRESSTYPE), FIELD(WanInfo, IPADDRESS),
    FIELD(WanInfo, SUBNETMASK),  FIELD(WanInfo, GATEWAY),     FIELD(WanInfo, DNS1),
    FIELD(WanInfo, DNS2),
};
constexpr auto kIpv6Route = Fields{
    FIELD(WanInfo, IPV6_PREFIXLENGTH),
    FIELD(WanInfo, IPV6_GATEWAY),
    FIELD(WanInfo, IPV6_DNS1),
    FIELD(WanInfo, IPV6_DNS2),
};
constexpr auto kLinkOptions = Fields{
    FIELD(WanInfo, NATENABLE),
    FIELD(WanInfo, QOSENABLE),
    FIELD(WanInfo, VLANID),
    FIELD(WanInfo, VLANPRIORITY),
};

constexpr auto kWanReply = Fields{
    FIELD(WanInfo, INDEX),
    FIELD(WanInfo, IFNAME),
    FIELD(WanInfo, CONNECTIONTYPE),
    FIELD(WanInfo, CONNECTIONSTATUS),
    FIELD(WanInfo, PROTOCOL),
    FIELD(WanInfo, UPLINKMODE),
    kAddresses,
    FIELD(WanInfo, IPV6_CONNECTIONSTATUS),
    FIELD(WanInfo, IPV6_IPADDRESS),
    FIELD(WanInfo, IPV6_PRIFIX),
    kIpv6Route,
    FIELD(WanInfo, PPPOE_USR_NAME),
    FIELD(WanInfo, PPPOE_PASSWORD),
    FIELD(WanInfo, PPPOE_PROXY),
    FIELD(WanInfo, PPPOE_SERVICENAME),
    FIELD(WanInfo, PPPOE_DIAL_MODE),
    kLinkOptions,
};

constexpr auto kWanSetting = Fields{
    FIELD(WanInfo, WANName),        kAddresses,
    FIELD(WanInfo, IPV6_IPADDRESS), kIpv6Route,
    FIELD(WanInfo, IPV6_PRIFIX),    FIELD(WanInfo, PPPOE_USR_NAME),
    FIELD(WanInfo, PPPOE_PASSWORD), kLinkOptions,
};

// The names of the values in the setting's trace, up to the equals sign; concatenated, in the order
// of the table.
constexpr char kTraceNames[] = "wan_name \0"
                               "service_list \0"
                               "addr_type \0"
                               "IPADDRESS \0"
                               "SUBNETMASK \0"
                               "GATEWAY \0"
                               "DNS1 \0"
                               "DNS2 \0"
                               "IPV6_IPADDRESS \0"
                               "IPV6_PREFIXLENGTH \0"
                               "IPV6_GATEWAY \0"
                               "IPV6_DNS1 \0"
                               "IPV6_DNS2\0"
                               "IPV6_PRIFIX\0"
                               "PPPOE_USR_NAME\0"
                               "PPPOE_PASSWORD\0"
                               "NATENABLE\0"
                               "QOSENABLE\0"
                               "VLANID\0"
                               "VLANPRIORITY";

constexpr size_t count_names()
{
    size_t count = 0;
    for (const char letter : kTraceNames) {
        count += letter == '\0' ? 1 : 0;
    }
    return count;
}
static_assert(count_names() == kWanSetting.kCount, "one name for each key");

// The number of keys, the first ones of the setting, that a request should contain.
constexpr size_t kExpectedKeys = 3;

constexpr char kQueryFailure[] = "QUERY_WAN_INFO_FAIL";

// Empties the fields for which apps do not understand the text "NULL".
void empty_missing_values(WanInfo *wan)
{
    using WanText = char[64];
    // cppcheck-suppress constVariable ; the texts are written below
    WanText *const fields[] = {&wan->GATEWAY, &wan->IPV6_IPADDRESS, &wan->IPV6_PRIFIX,
                               &wan->IPV6_GATEWAY, &wan->PPPOE_DIAL_MODE};
    for (WanText *field : fields) {
        if (holds(*field, "NULL")) {
            (*field)[0] = '\0';
        }
    }
}

} // namespace

HANDLER(json_query_wan_num, query<devapi_get_wan_num>(kWanNum, "QUERY_WAN_NUM_FAIL"))

int32_t json_query_wan_info(cJSON *obj)
{
    cJSON *name = cJSON_GetObjectItem(obj, "WANName");
    if (text_of(name) == nullptr) {
        log_error("can not find WANName object!\n");
        return refuse(obj, "json object WANName not found!");
    }
    WanInfo wan = {};
    copy_text(wan.WANName, text_of(name));
    const int32_t result = devapi_query_wan_info(&wan);
    if (result != 0) {
        fail(obj, kQueryFailure);
        return result;
    }
    empty_missing_values(&wan);
    SuccessReply reply;
    reply.fields(kWanReply, &wan);
    if (reply.complete()) {
        remove_key(obj, name);
    }
    return answer(obj, reply, kQueryFailure);
}

int32_t json_set_wan_info(cJSON *obj)
{
    constexpr const char *kFailure = "SET_ROUTE_WAN_INFO_FAIL";
    WanInfo wan = {};
    cJSON *items[kWanSetting.kCount];
    find_items(obj, kWanSetting, items);
    size_t at = 0;
    const char *name = kTraceNames;
    for (const Field field : FieldList(kWanSetting)) {
        const char *text = text_of(items[at]);
        if (text != nullptr) {
            LOG_DEBUG("%s= %s \n", name, text);
            store(field, &wan, text);
        } else if (at < kExpectedKeys) {
            LOG_ERROR("can not find %s object!\n", field.key);
        } else {
            LOG_DEBUG("can not find %s object!\n", field.key);
        }
        ++at;
        name += strlen(name) + 1;
    }
    SuccessReply success;
    const bool can_set = cJSON_IsObject(obj) != 0 && success.complete();
    const int32_t result = can_set ? devapi_set_route_wan_info(&wan) : -1;
    for (cJSON *item : items) {
        remove_key(obj, item);
    }
    conclude(obj, success, result != 0, kFailure);
    return result;
}
