// SPDX-License-Identifier: MIT
#include "agent_calls.h"

#include "smart_router_service/processjsonability.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace fuzz {
namespace {

void sta_info_of_main_router(cJSON *object)
{
    json_get_router_sta_info(object, "main", "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.");
}

void notice(cJSON *object)
{
    json_msg_notice_to_app(cJSON_GetStringValue(cJSON_GetObjectItem(object, "Message")), "agent");
}

void image_upgrade(cJSON *object)
{
    const char *url = cJSON_GetStringValue(cJSON_GetObjectItem(object, "UpdateUrl"));
    if (pthread_mutex_trylock(&downimagelock) != 0) {
        return;
    }
    strncpy(g_update_url, url != nullptr ? url : "", sizeof g_update_url - 1);
    pthread_hg_image_upgrade(nullptr);
}

void wifi_set_info(cJSON *object)
{
    SsidInfo record = {};
    parse_wifi_set_info_from_json(&record, object);
}

constexpr struct {
    const char *name;
    void (*call)(cJSON *object);
} kCalls[] = {
    {"json_get_home_page_info",
     [](cJSON *object) {
         json_get_home_page_info(object);
     }},
    {"json_get_main_router_info",
     [](cJSON *object) {
         json_get_main_router_info(object);
     }},
    {"json_get_main_router_baseinfo",
     [](cJSON *object) {
         json_get_main_router_baseinfo(object);
     }},
    {"json_get_topo_router_info",
     [](cJSON *object) {
         json_get_topo_router_info(object);
     }},
    {"json_get_topo_router_agent_info_bynewmethod",
     [](cJSON *object) {
         json_get_topo_router_agent_info_bynewmethod(object);
     }},
    {"json_get_router_sta_info", sta_info_of_main_router},
    {"json_msg_notice_to_app", notice},
    {"parse_wifi_set_info_from_json", wifi_set_info},
    {"pthread_hg_image_upgrade", image_upgrade},
};

} // namespace

std::span<const char *const> agent_calls()
{
    static const auto names = [] {
        std::array<const char *, std::size(kCalls)> all;
        std::transform(std::begin(kCalls), std::end(kCalls), all.begin(),
                       [](const auto &row) { return row.name; });
        return all;
    }();
    return names;
}

bool call_of_the_agent(const std::string &name, cJSON *object)
{
    for (const auto &row : kCalls) {
        if (name == row.name) {
            row.call(object);
            return true;
        }
    }
    return false;
}

} // namespace fuzz
