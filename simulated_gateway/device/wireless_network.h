// SPDX-License-Identifier: MIT
// What the records of SSIDs and guest networks have in common. The mode belongs to the radio, which
// all networks of its band share.
#pragma once

#include "core/device_call.h"

namespace simulated_gateway {

template <class Record> void put_network(Record &info, const Radio &radio, const Ssid &ssid)
{
    put(info.SSID, ssid.name);
    put(info.PWD, ssid.password);
    put(info.ENCRYPT, ssid.encryption);
    put(info.Enable, ssid.enabled);
    put(info.Mode, radio.standard);
    put(info.AdvertisementEnable, !ssid.hidden);
}

// The model checks the length of the password and the standards of the radio.
template <class Record> void take_network(const Record &info, Home &home, Radio &radio, Ssid &ssid)
{
    ssid.name = taken("SSID", info.SSID, Text{33});
    ssid.encryption = taken("ENCRYPT", info.ENCRYPT, kEncryptions);
    ssid.password = ssid.encryption == kNoEncryption ? "" : taken_text("PWD", info.PWD);
    if (is_given(info.Mode)) {
        radio.standard = taken(info.Mode);
    }
    if (is_given(info.AdvertisementEnable)) {
        ssid.hidden = !taken_flag("AdvertisementEnable", info.AdvertisementEnable);
    }
    switch_network(home, ssid, taken_flag("Enable", info.Enable));
}

template <class AnyHome> auto &ssid_at(AnyHome &home, int32_t index)
{
    if (index < 1 || static_cast<size_t>(index) > home.ssids.size()) {
        throw Error("there is no SSID " + std::to_string(index));
    }
    return home.ssids[static_cast<size_t>(index - 1)];
}

// The model checks the channels and bandwidths of the radio.
void take_ssid(const SsidInfo &info, Home &home);

} // namespace simulated_gateway
