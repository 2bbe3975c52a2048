// SPDX-License-Identifier: MIT
// The setting of an SSID that the tests of SET_WIFI_INFO and SET_WIFI_INFO_LIST have in common.
#pragma once

#include "handler_test.h"
#include "request.h"

inline const Request kSsidSetting({{"SSIDIndex", R"("2")"},
                                   {"SSID", R"("home")"},
                                   {"PWD", R"("secret")"},
                                   {"ENCRYPT", R"("WPA2")"},
                                   {"PowerLevel", R"("80")"},
                                   {"Channel", R"("6")"},
                                   {"Enable", R"("1")"}});

// What the device gets for it. Only the elements of a list can have a bandwidth.
inline SsidInfo ssid_record(const char *bandwidth)
{
    SsidInfo record = {2,   "home", "secret", "WPA2", "80", "6",  "",
                       "1", "",     "",       "-1",   "-1", "-1", ""};
    put(record.Bandwidth, bandwidth);
    return record;
}
