// SPDX-License-Identifier: MIT
// Access points on each channel, the check of the links, and the signal of a station.
#include "recipes.h"

using namespace smart_router;

namespace {

// The result for DNS is also reported for DHCP.
constexpr auto kAddresses = Fields{
    FIELD(LinkInfo, LanIP),
    FIELD(LinkInfo, WanIp),
    FIELD(LinkInfo, DnsCheck),
    FIELD_AS(LinkInfo, DnsCheck, "DhcpCheck"),
};

constexpr auto kRadios = Fields{
    FIELD(LinkInfo, Wifi24Enable),       FIELD(LinkInfo, Wifi24Channel),
    FIELD(LinkInfo, Wifi24ChannelCheck), FIELD(LinkInfo, Wifi58Enable),
    FIELD(LinkInfo, Wifi58Channel),      FIELD(LinkInfo, Wifi58ChannelCheck),
};

// A new object for a channel; null when memory ran out.
cJSON *channel_object(int16_t channel, int32_t access_points)
{
    NumberText name;
    put_number(name, channel);
    JsonItem object(cJSON_CreateObject());
    cJSON *count = cJSON_CreateNumber(access_points);
    if (object.get() == nullptr || count == nullptr || !add_text(object.get(), "Name", name)) {
        cJSON_Delete(count);
        return nullptr;
    }
    cJSON_AddItemToObjectCS(object.get(), "Count", count);
    return object.release();
}

// Adds the channels of a band, each with its access points.
template <size_t most>
void add_channels(Reply &reply, const char *key, const int16_t (&channels)[most],
                  const int32_t (&counts)[most], int32_t count)
{
    cJSON *list = reply.list(key);
    for (size_t at = 0; at < clamped(count, most) && reply.complete(); ++at) {
        reply.append(list, channel_object(channels[at], counts[at]));
    }
}

} // namespace

int32_t json_get_scan_channel_count(cJSON *obj)
{
    constexpr const char *kFailure = "Get Wifi channel error";
    WifiChannelList channels = {};
    ChannelApNum access_points = {};
    const int32_t list_result = devapi_get_all_wifi_channel_list(&channels);
    const int32_t count_result = devapi_get_channel_ap_num(&channels, &access_points);
    if (minus_one(list_result) || minus_one(count_result)) {
        return refuse(obj, kFailure);
    }
    Reply reply;
    add_channels(reply, "List24g", channels.channels_24g, access_points.counts_24g,
                 channels.count_24g);
    add_channels(reply, "List58g", channels.channels_5g, access_points.counts_5g,
                 channels.count_5g);
    reply.success();
    return answer(obj, reply, kFailure);
}

int32_t json_get_link_check(cJSON *obj)
{
    LinkInfo link = {};
    devapi_get_link_info(&link);
    const bool reached = devapi_get_ping_check(SMART_ROUTER_PING_TARGET) == 0;
    Reply reply;
    reply.fields(kAddresses, &link);
    reply.text("PingCheck", reached ? SMART_ROUTER_PING_TARGET : "");
    reply.fields(kRadios, &link);
    reply.success();
    return answer(obj, reply, nullptr);
}

int32_t json_get_sta_rssi(cJSON *obj)
{
    constexpr const char *kFailure = "get scan rssi failed";
    const char *ip = text_under(obj, "IP");
    if (ip == nullptr) {
        return refuse(obj, "rssi get ip is NULL");
    }
    int32_t dbm = 0;
    if (minus_one(devapi_get_sta_rssi_by_ip(ip, &dbm))) {
        return refuse(obj, kFailure);
    }
    Reply reply;
    reply.add("Dbm", cJSON_CreateNumber(dbm));
    reply.success();
    return answer(obj, reply, kFailure);
}
