// SPDX-License-Identifier: MIT
// Shared by the tests of the mesh reports: records by their layout, the expected replies, and a
// mesh to report. The clock is stopped.
#pragma once

#include "clock_control.h"
#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

using LogLines = std::vector<recording_host::LogLine>;

// The place of a text in a record, and the key under which it is reported.
struct Place {
    const char *key;
    size_t offset;
    size_t width;
};
using Places = std::vector<Place>;

inline constexpr int64_t kNow = 1767225600;

// The content of a field of the record: its key, truncated to the field.
inline std::string value_of(const Place &place)
{
    return std::string(place.key).substr(0, place.width - 1);
}

// The same for a device that fills its field completely.
inline std::string full_text_of(const Place &place)
{
    return text_of_length(place.width);
}

template <class Record>
void fill_places(Record *record, const Places &places, std::string (*text)(const Place &))
{
    for (const Place &place : places) {
        char *field = reinterpret_cast<char *>(record) + place.offset;
        memset(field, '\0', place.width);
        text(place).copy(field, place.width);
    }
}

// What is reported of these places.
inline Request expected(const Places &places, std::string (*text)(const Place &) = value_of)
{
    Request::Keys keys;
    for (const Place &place : places) {
        keys.emplace_back(place.key, quoted(text(place)));
    }
    return Request(keys);
}

template <size_t width> void put(char (&field)[width], const std::string &text)
{
    memset(field, '\0', width);
    text.copy(field, width);
}

// ---- Records by offset and width ---------------------------------------------------------------

// An attached device, in the order of the record.
inline const Places kAttachedDevice = {
    {"Mac", 8, 32},
    {"UID", 40, 32},
    {"DevType", 72, 32},
    {"DevFactory", 104, 32},
    {"Name", 136, 32},
    {"ByName", 168, 32},
    {"OS", 200, 32},
    {"Version", 232, 32},
    {"NetStatus", 264, 8},
    {"NetMonopoly", 272, 32},
    {"AccessType", 304, 32},
    {"AccessEnable", 336, 8},
    {"AccessTime", 344, 32},
    {"UpSpeed", 376, 32},
    {"DownSpeed", 408, 32},
    {"ip", 440, 64},
    {"AccessCode", 504, 32},
    {"SSIDIndex", 536, 48},
    {"LinkStatus", 584, 8},
    {"SpeedLimit", 592, 8},
    {"DownLimit", 600, 16},
    {"UpLimit", 616, 16},
    {"GreennetProtectEnable", 632, 8},
    {"dbm", 640, 8},
    {"StaticDhcpEnable", 648, 8},
};

// A child router, likewise. "ParentMac" is no key of any reply.
inline const Places kChildRouterRecord = {
    {"RouterDeviceID", 0, 32},
    {"Name", 32, 64},
    {"Mac", 96, 64},
    {"NetStatus", 160, 8},
    {"ChildRouterAccessType", 168, 8},
    {"UpSpeed", 176, 16},
    {"DownSpeed", 192, 16},
    {"ip", 208, 32},
    {"FWVersion", 240, 32},
    {"FWDATA", 272, 32},
    {"UpTime", 304, 16},
    {"DeviceType", 320, 32},
    {"AreaCode", 352, 16},
    {"HWVersion", 368, 16},
    {"Wlan1Mac", 384, 32},
    {"Wlan0Mac", 416, 32},
    {"ParentMac", 448, 32},
    {"dbm", 480, 8},
    {"LinkSpeed", 1084, 16},
};

// The main router. Keys that it reports under another name in some replies are given by hand there.
inline const Places kMainRouterRecord = {
    {"Name", 0, 64},
    {"Mac", 64, 32},
    {"NetStatus", 96, 16},
    {"UpSpeed", 112, 32},
    {"DownSpeed", 144, 32},
    {"WiFiStatus1", 176, 32},
    {"WiFiStatus2", 208, 32},
    {"SSID1", 240, 32},
    {"SSID2", 272, 32},
    {"Wlan1Mac", 304, 32},
    {"Wlan0Mac", 336, 32},
    {"ip", 368, 32},
    {"HWVersion", 400, 32},
    {"FWVersion", 432, 32},
    {"FWDATA", 464, 32},
    {"UpTime", 496, 32},
    {"WanUptime", 528, 32},
    {"DeviceType", 560, 32},
    {"AreaCode", 592, 32},
    {"AddressType", 624, 16},
    {"cpuusage", 640, 8},
    {"QQGameAcceleratorEnable", 648, 16},
    {"QosAcceleratorEnable", 664, 16},
    {"FireWallEnable", 680, 16},
    {"LedLight", 696, 8},
    {"LedSwitch", 704, 8},
    {"ramusage", 712, 8},
    {"WanConMode", 720, 8},
    {"ConfiguerStatus", 728, 128},
};

// The places with the keys, in the order of the keys.
inline Places select(const Places &places, const Names &keys)
{
    Places chosen;
    for (const std::string &key : keys) {
        chosen.push_back(*std::find_if(places.begin(), places.end(),
                                       [&](const Place &place) { return key == place.key; }));
    }
    return chosen;
}

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

// Whether a line of the log is the text behind a file of the project and a line in it.
inline bool is_line_of(const std::string &file, const std::string &text, const std::string &line)
{
    const size_t digits = file.size() + 1;
    const size_t end = line.find_first_not_of("0123456789", digits);
    return line.compare(0, digits, file + " ") == 0 && end != std::string::npos && end > digits &&
           line.substr(end) == " " + text;
}

// ---- A mesh to report --------------------------------------------------------------------------

class MeshTest : public HandlerTest {
  protected:
    static void model_is(const std::string &model)
    {
        recording_device::when<devapi_get_devicemodel>(
            [model](char *out, int32_t) { return put_text(model, out); });
    }
    static void area_code_is(const std::string &code)
    {
        recording_device::when<devapi_get_basic_area_code>(
            [code](char *out, int32_t) { return put_text(code, out); });
    }
    static void bridge_mac_is(const std::string &mac)
    {
        recording_device::when<ts_sys_mgr_get_brmac>([mac](char *out) { put_text(mac, out); });
    }
    static void mesh_type_is(int32_t type)
    {
        recording_device::when<devapi_get_mesh_type>([type] { return type; });
    }
    static void zone_is(int32_t hours)
    {
        recording_device::when<devapi_get_local_timezone>([hours](int32_t *out) {
            *out = hours;
            return 0;
        });
    }
    static void time_type_is(int32_t type)
    {
        recording_device::when<devapi_get_systerm_timetype>([type] { return type; });
    }

    // The list of child routers; count may differ from the number of identifiers.
    static void child_routers_are(const std::vector<int32_t> &identifiers, int32_t count)
    {
        recording_device::when<devapi_get_childrouter_list>([=](ChildRouterList *list) {
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
        recording_device::when<devapi_get_childrouter_info>([=](ChildRouterInfo *info, int32_t) {
            *info = router;
            return 0;
        });
    }

    // The arguments of each call with this name.
    static Names given_to(const std::string &function, size_t argument)
    {
        Names given;
        for (const recording_device::Call &call : recording_device::calls()) {
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

  private:
    static int32_t put_text(const std::string &text, char *out)
    {
        memcpy(out, text.c_str(), text.size() + 1);
        return 0;
    }
};
