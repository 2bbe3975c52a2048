// SPDX-License-Identifier: MIT
// The functions of libcurl that transfers need. libcurl brings thirty other libraries, and loading
// them takes longer than most commands. So they are behind a module that is loaded with the first
// address.
#pragma once

#include <curl/curl.h>

namespace simulated_gateway {

struct Curl {
    decltype(&curl_easy_cleanup) easy_cleanup;
    decltype(&curl_easy_getinfo) easy_getinfo;
    decltype(&curl_easy_header) easy_header;
    decltype(&curl_easy_init) easy_init;
    decltype(&curl_easy_perform) easy_perform;
    decltype(&curl_easy_setopt) easy_setopt;
    decltype(&curl_easy_strerror) easy_strerror;
    decltype(&curl_free) free;
    decltype(&curl_global_init) global_init;
    decltype(&curl_slist_append) slist_append;
    decltype(&curl_slist_free_all) slist_free_all;
    decltype(&curl_url) url;
    decltype(&curl_url_cleanup) url_cleanup;
    decltype(&curl_url_dup) url_dup;
    decltype(&curl_url_get) url_get;
    decltype(&curl_url_set) url_set;
    decltype(&curl_url_strerror) url_strerror;
};

// Loads the module if it has not been loaded. Throws an Error if that is not possible.
const Curl &curl();

} // namespace simulated_gateway

// What the module exports.
extern "C" const simulated_gateway::Curl *simulated_gateway_curl();
