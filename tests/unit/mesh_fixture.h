// SPDX-License-Identifier: MIT
// Shared by the tests of the mesh reports: records, and a mesh to report. The clock is stopped.
#pragma once

#include "clock_control.h"
#include "record_layouts.h"

#include <climits>
#include <regex>

inline constexpr int64_t kNow = 1767225600;

// An attached device with a different text in every field, attached for 100 seconds.
inline AdBaseInfo attached_device()
{
    AdBaseInfo device = {};
    fill_places(&device, kAttachedDevice, value_of);
    put(device.AccessTime, std::to_string(kNow - 100));
    return device;
}

inline ChildRouterInfo child_router()
{
    ChildRouterInfo router = {};
    fill_places(&router, kChildRouterRecord, value_of);
    return router;
}

// A record that a call has written into and then failed.
template <class Record>
int32_t spoil(Record *record, int32_t result = -1, size_t size = sizeof(Record))
{
    memset(record, '1', size);
    return result;
}

// Checks that the last line of the log is an error: the text after a file of the plug-in and a line
// of it.
inline void expect_last_error(const std::string &file, const std::string &text)
{
    ASSERT_FALSE(recording_host::log_lines().empty());
    const LogLine last = recording_host::log_lines().back();
    EXPECT_EQ(last.level, 3);
    const std::regex line("smart_router_service/" + file + " [0-9]+ " + text + "\n");
    EXPECT_TRUE(std::regex_match(last.text, line)) << last.text;
}

// ---- A mesh to report --------------------------------------------------------------------------

class MeshTest : public HandlerTest {
  protected:
    static void model_is(const std::string &model) { writes<devapi_get_devicemodel>(model); }
    static void area_code_is(const std::string &code) { writes<devapi_get_basic_area_code>(code); }
    static void bridge_mac_is(const std::string &mac) { writes<ts_sys_mgr_get_brmac>(mac); }
    static void mesh_type_is(int32_t type)
    {
        when<devapi_get_mesh_type>([type] { return type; });
    }
    static void zone_is(int32_t hours) { writes<devapi_get_local_timezone>(hours); }
    static void time_type_is(int32_t type)
    {
        when<devapi_get_systerm_timetype>([type] { return type; });
    }

    // The list of child routers; count may differ from the number of identifiers.
    static void child_routers_are(const std::vector<int32_t> &identifiers, int32_t count)
    {
        when<devapi_get_childrouter_list>([=](ChildRouterList *list) {
            EXPECT_EQ(list->count, 0);
            std::copy(identifiers.begin(), identifiers.end(), list->identifiers);
            list->count = count;
            return 0;
        });
    }
    static void child_routers_are(const std::vector<int32_t> &identifiers)
    {
        child_routers_are(identifiers, static_cast<int32_t>(identifiers.size()));
    }

    // Each child router's record.
    static void child_router_is(const ChildRouterInfo &router)
    {
        writes<devapi_get_childrouter_info>(router);
    }
    // The record of the one with this identifier cannot be read.
    static void unreadable_child_router_is(int32_t unreadable, int32_t failure)
    {
        when<devapi_get_childrouter_info>([=](ChildRouterInfo *info, int32_t identifier) {
            *info = child_router();
            return identifier == unreadable ? spoil(info, failure) : 0;
        });
    }

    // The arguments of each call with this name.
    static Names given_to(const std::string &function, size_t argument)
    {
        Names given;
        for (const Call &call : recording_device::calls()) {
            if (call.function == function) {
                given.push_back(call.arguments.at(argument));
            }
        }
        return given;
    }

    // The builder's report in an object or an array, and its result.
    template <class Builder> std::string report(Builder builder, const std::string &into = "{}")
    {
        const Json json = parse(into);
        if constexpr (std::is_void_v<decltype(builder(json.get()))>) {
            builder(json.get());
        } else {
            result = builder(json.get());
        }
        return print(json.get());
    }

    ClockControl clock{kNow};
    int32_t result = 0;
};
