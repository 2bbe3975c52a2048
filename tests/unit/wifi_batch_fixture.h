// SPDX-License-Identifier: MIT
// Batches of Wi-Fi settings, with the worker under the test's control.
#pragma once

#include "handler_test.h"
#include "request.h"
#include "worker_control.h"

#include <cstring>

inline constexpr char kSuccess[] = R"({"Status":"0"})";

inline const Request kElement({{"SSIDIndex", R"("2")"},
                               {"SSID", R"("home")"},
                               {"PWD", R"("secret")"},
                               {"ENCRYPT", R"("WPA2")"},
                               {"PowerLevel", R"("80")"},
                               {"Channel", R"("6")"},
                               {"Enable", R"("1")"}});

inline std::string element(int32_t index, const std::string &enable = "1")
{
    return kElement.with("SSIDIndex", quoted(std::to_string(index)))
        .with("Enable", quoted(enable))
        .json();
}

inline std::string element_record(int32_t index, const std::string &enable = "1")
{
    SsidInfo record = {index, "home", "secret", "WPA2", "80", "6",  "",
                       "",    "-1",   "",       "-1",   "-1", "-1", ""};
    strcpy(record.Enable, enable.c_str());
    return recording_device::contents(&record);
}

inline Request batch(const std::string &elements, const std::string &station_control = "1")
{
    return Request({{"WIFILIST", "[" + elements + "]"}, {"StaCtrl", quoted(station_control)}});
}

class WifiBatchTest : public HandlerTest {
  protected:
    using Call = recording_device::Call;

    WifiBatchTest()
    {
        g_set_wifi_array_size = 0;
        memset(g_stactrl_enable, 0, sizeof g_stactrl_enable);
        memset(g_fastroaming_enable, 0, sizeof g_fastroaming_enable);
    }

    std::string send(const Request &request) { return run("SET_WIFI_INFO_LIST", request.json()); }

    // What the worker has done so far, its sleeps among the device's calls.
    static std::vector<Call> worker_calls()
    {
        std::vector<Call> calls = recording_device::calls();
        std::erase_if(calls,
                      [](const Call &call) { return call.function.starts_with("devapi_get_"); });
        return calls;
    }

    static std::vector<Call> whole_life(const std::string &station_control,
                                        const std::string &fast_roaming,
                                        const std::vector<std::string> &records)
    {
        std::vector<Call> calls = {{"sleep", {"1"}},
                                   {"devapi_set_wifi_stactrl", {station_control}},
                                   {"sleep", {"5"}},
                                   {"devapi_set_wifi_fastroaming", {fast_roaming}}};
        for (const std::string &record : records) {
            calls.push_back({"devapi_set_ssid_list_info", {record}});
        }
        return calls;
    }

    WorkerControl control;
};
