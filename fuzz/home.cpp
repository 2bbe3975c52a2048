// SPDX-License-Identifier: MIT
#include "home.h"

#include "give_up.h"
#include "request.h"

#include <cstdlib>
#include <curl/curl.h>
#include <string>

extern "C" CURLcode __wrap_curl_easy_perform(CURL *)
{
    return CURLE_COULDNT_CONNECT;
}

namespace fuzz {

void stop_clock()
{
    setenv("SIMULATED_GATEWAY_TIME", "1767301200", 1);
}

void check_home()
{
    for (const char *query : {"GET_HG_BASE_INFO", "GET_AD_BASE_INFO", "GET_TSLINK_TOPOLOGY_INFO",
                              "GET_WIFI_LIST_INFO", "GET_QOS_INFO"}) {
        const Json object(cJSON_CreateObject());
        run_command(query, object.get());
        const char *status =
            cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object.get(), "Status"));
        if (status == nullptr || std::string_view(status) != "0") {
            give_up(std::string(query) + " fails", print(object.get()));
        }
    }
}

} // namespace fuzz
