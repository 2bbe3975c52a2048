// SPDX-License-Identifier: MIT
// The texts of the largest records by offset and width, and what is reported of them.
#pragma once

#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

// The place of a text in a record, and the key under which it is reported.
struct Place {
    const char *key;
    size_t offset;
    size_t width;
};
using Places = std::vector<Place>;

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

// ---- Records -----------------------------------------------------------------------------------

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

// The main router. Some replies have other keys for some of these fields.
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

// The same for an attached device. "DevModle" is reported from another field, or is fixed text.
inline Places attached_device_places(const Names &keys)
{
    Places places = kAttachedDevice;
    places.push_back({"DevModle", 72, 32});
    return select(places, keys);
}
