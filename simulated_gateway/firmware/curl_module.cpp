// SPDX-License-Identifier: MIT
// The module that links libcurl.
#include "firmware/curl.h"

extern "C" __attribute__((visibility("default"))) const simulated_gateway::Curl *
simulated_gateway_curl()
{
    static constexpr simulated_gateway::Curl functions = {
        .easy_cleanup = curl_easy_cleanup,
        .easy_getinfo = curl_easy_getinfo,
        .easy_header = curl_easy_header,
        .easy_init = curl_easy_init,
        .easy_perform = curl_easy_perform,
        .easy_setopt = curl_easy_setopt,
        .easy_strerror = curl_easy_strerror,
        .free = curl_free,
        .global_init = curl_global_init,
        .slist_append = curl_slist_append,
        .slist_free_all = curl_slist_free_all,
        .url = curl_url,
        .url_cleanup = curl_url_cleanup,
        .url_dup = curl_url_dup,
        .url_get = curl_url_get,
        .url_set = curl_url_set,
        .url_strerror = curl_url_strerror,
    };
    return &functions;
}
