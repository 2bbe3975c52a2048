// SPDX-License-Identifier: MIT
// The SSIDs and their radios, set one by one and in a batch.
#include "gateway_fixture.h"

namespace {

class WifiTest : public HouseTest {
  protected:
    // The result of setting SSID 1 with one field changed.
    template <size_t width>
    static int32_t with(char (SsidInfo::*field)[width], const std::string &text, int32_t index = 1)
    {
        SsidInfo info = ssid(index);
        set(info.*field, text);
        return devapi_set_ssid_list_info(&info);
    }
    // The same for a refused value. Result: the reason.
    template <size_t width>
    std::string refused(char (SsidInfo::*field)[width], const std::string &text,
                        int32_t index = 1) const
    {
        const std::string before = read(path("state"));
        const std::string why = reason(with(field, text, index));
        EXPECT_EQ(read(path("state")), before);
        return why;
    }
    static std::string wifi_clients() { return reported_by(devapi_inspect_hg_wifi).WiFiDevNum; }
};

TEST_F(WifiTest, ThereAreEightAndTheFifthIsTheFirstOfTheUpperBand)
{
    EXPECT_EQ(reported_by(devapi_get_ssid_num), 8);
    EXPECT_EQ(reported_by(devapi_get_5g_wifi_index), 5);
}

TEST_F(WifiTest, AnIndexThatDoesNotExistIsRefused)
{
    for (const int32_t index : {0, 9, -1, INT32_MAX, INT32_MIN}) {
        SsidInfo info = ssid(1);
        info.SSIDIndex = index;
        const std::string why = "there is no SSID " + std::to_string(index);
        EXPECT_EQ(reason(devapi_get_ssid_info(&info)), why);
        EXPECT_EQ(reason(devapi_set_ssid_info(&info)), why);
        EXPECT_EQ(reason(devapi_set_ssid_list_info(&info)), why);
    }
    const SsidInfo zero = {}; // from a list with a missing element
    EXPECT_EQ(devapi_set_ssid_list_info(&zero), -1);
}

TEST_F(WifiTest, WhatWasReportedCanBeSetAndChangesNothing)
{
    const nlohmann::json before = json_of(path("state"));
    for (int32_t index = 1; index <= 8; ++index) {
        const SsidInfo info = ssid(index);
        EXPECT_EQ(devapi_set_ssid_list_info(&info), 0) << index << reason();
    }
    EXPECT_EQ(json_of(path("state")), before);
}

TEST_F(WifiTest, SetsEveryFieldAndKeepsItInTheStateFile)
{
    const Fields own = {{"SSID", "Gartenhaus"},
                        {"PWD", "12345678"},
                        {"ENCRYPT", "WPA3"},
                        {"AdvertisementEnable", "0"},
                        {"Enable", "1"}};
    const Fields of_radio = {{"PowerLevel", "40"},
                             {"Channel", "149"},
                             {"Bandwidth", "160"},
                             {"Mode", "11ac"},
                             {"Beamforming", "0"}};
    Fields all = own;
    all.insert(of_radio.begin(), of_radio.end());
    auto info = record_with<SsidInfo>(all);
    info.SSIDIndex = 6;
    ASSERT_EQ(devapi_set_ssid_list_info(&info), 0) << reason();
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(like(all, ssid(6)), all);
    // All SSIDs of the band report the settings of their radio.
    EXPECT_EQ(like(of_radio, ssid(8)), of_radio);
    EXPECT_STREQ(ssid(8).SSID, "Lindenhof-8");
    EXPECT_STREQ(ssid(8).UsedChannel, "149");
    EXPECT_STREQ(ssid(1).Channel, "6");
}

TEST_F(WifiTest, MinusOneLeavesASettingUnchanged)
{
    SsidInfo info = ssid(7);
    for (auto *field : {info.Mode, info.AdvertisementEnable, info.Beamforming, info.Bandwidth}) {
        std::strcpy(field, "-1");
    }
    EXPECT_EQ(devapi_set_ssid_list_info(&info), 0);
    const SsidInfo kept = ssid(7);
    EXPECT_STREQ(kept.Mode, "11ax");
    EXPECT_STREQ(kept.AdvertisementEnable, "0");
    EXPECT_STREQ(kept.Beamforming, "1");
    EXPECT_STREQ(kept.Bandwidth, "80");
}

TEST_F(WifiTest, BandwidthAppliesOnlyInTheList)
{
    SsidInfo info = ssid(5);
    set(info.Bandwidth, "");
    EXPECT_EQ(devapi_set_ssid_info(&info), 0);
    set(info.Bandwidth, "40");
    EXPECT_EQ(devapi_set_ssid_info(&info), 0);
    EXPECT_STREQ(ssid(5).Bandwidth, "80");
    EXPECT_EQ(devapi_set_ssid_list_info(&info), 0);
    EXPECT_STREQ(ssid(5).Bandwidth, "40");
    EXPECT_EQ(refused(&SsidInfo::Bandwidth, "", 5), "Bandwidth is not a number");
    EXPECT_EQ(refused(&SsidInfo::Bandwidth, "60", 5),
              "/home/radios/1/bandwidth_mhz: 60 is none of 20, 40, 80, 160");
    EXPECT_EQ(refused(&SsidInfo::Bandwidth, "80"),
              "/home/radios/0/bandwidth_mhz: 80 is too wide for 2.4GHz");
}

TEST_F(WifiTest, ChannelsAreThoseOfTheBand)
{
    EXPECT_EQ(refused(&SsidInfo::Channel, "36"),
              "/home/radios/0/channel: 36 is not a channel of 2.4GHz");
    EXPECT_EQ(refused(&SsidInfo::Channel, "14"),
              "/home/radios/0/channel: 14 is not a channel of 2.4GHz");
    EXPECT_EQ(refused(&SsidInfo::Channel, "6", 5),
              "/home/radios/1/channel: 6 is not a channel of 5GHz");
    EXPECT_EQ(refused(&SsidInfo::Channel, "100", 5),
              "/home/radios/1/channel: 100 is not a channel of 5GHz");
    EXPECT_EQ(refused(&SsidInfo::Channel, "-1"),
              "/home/radios/0/channel: -1 is not within 1 to 165");
    EXPECT_EQ(refused(&SsidInfo::Channel, "6a"), "Channel is not a number");
    EXPECT_EQ(refused(&SsidInfo::Channel, ""), "Channel is not a number");
    EXPECT_EQ(with(&SsidInfo::Channel, "13"), 0);
    EXPECT_EQ(with(&SsidInfo::Channel, "165", 5), 0);
}

TEST_F(WifiTest, ChannelZeroLeavesTheChoiceToTheRadio)
{
    EXPECT_EQ(with(&SsidInfo::Channel, "0", 3), 0);
    EXPECT_STREQ(ssid(1).Channel, "0");
    EXPECT_STREQ(ssid(1).UsedChannel, "11");
    EXPECT_EQ(with(&SsidInfo::Channel, "7", 1), 0);
    EXPECT_STREQ(ssid(3).Channel, "7");
    EXPECT_STREQ(ssid(3).UsedChannel, "7");
}

TEST_F(WifiTest, APasswordHasTheLengthThatItsEncryptionNeeds)
{
    EXPECT_EQ(refused(&SsidInfo::PWD, "1234567"),
              "/home/ssids/0/password: needs at least 8 characters");
    EXPECT_EQ(refused(&SsidInfo::PWD, ""), "PWD is empty");
    EXPECT_EQ(with(&SsidInfo::PWD, std::string(63, 'x')), 0);
    SsidInfo filled = ssid(1);
    fill_completely(filled.PWD, 'x');
    EXPECT_EQ(reason(devapi_set_ssid_info(&filled)), "PWD is longer than 63 bytes");
    EXPECT_EQ(refused(&SsidInfo::ENCRYPT, "WPA2", 4), "/home/ssids/3/password: needs at least 8 "
                                                      "characters"); // "NULL", as reported

    // An open network has none.
    EXPECT_EQ(with(&SsidInfo::ENCRYPT, "OPEN"), 0);
    EXPECT_STREQ(ssid(1).PWD, "NULL");
}

TEST_F(WifiTest, BadTextsAreRefused)
{
    EXPECT_EQ(refused(&SsidInfo::SSID, ""), "SSID is empty");
    EXPECT_EQ(refused(&SsidInfo::SSID, std::string(33, 'x')), "SSID is longer than 32 bytes");
    EXPECT_EQ(refused(&SsidInfo::SSID, "a\nb"), "SSID contains control characters or is not UTF-8");
    EXPECT_EQ(refused(&SsidInfo::ENCRYPT, "WEP"),
              "ENCRYPT \"WEP\" is none of \"OPEN\", \"WPA2\", \"WPA3\", \"WPA2/3\"");
    EXPECT_EQ(refused(&SsidInfo::PowerLevel, "101"),
              "/home/radios/0/power_percent: 101 is not within 0 to 100");
    EXPECT_EQ(refused(&SsidInfo::PowerLevel, "high"), "PowerLevel is not a number");
    for (const char *flag : {"", "2", "on", "-1", "1 "}) {
        EXPECT_EQ(refused(&SsidInfo::Enable, flag),
                  "Enable \"" + std::string(flag) + "\" is none of \"0\", \"1\"");
    }
    EXPECT_EQ(refused(&SsidInfo::AdvertisementEnable, "2"),
              "AdvertisementEnable \"2\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&SsidInfo::Beamforming, ""), "Beamforming \"\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&SsidInfo::Mode, "11ac"),
              "/home/radios/0/standard: \"11ac\" is none of \"11b\", \"11g\", \"11n\", \"11ax\"");
    EXPECT_EQ(refused(&SsidInfo::Mode, ""), "/home/radios/0/standard: is empty");
}

TEST_F(WifiTest, ANameDropsAPartialCharacterAtItsEnd)
{
    EXPECT_EQ(with(&SsidInfo::SSID, "Gäste\xc3"), 0);
    EXPECT_STREQ(ssid(1).SSID, "Gäste");
}

TEST_F(WifiTest, TheBaseInformationReportsWhatWasSet)
{
    EXPECT_EQ(with(&SsidInfo::SSID, "Unten", 1), 0);
    EXPECT_EQ(with(&SsidInfo::SSID, "Oben", 5), 0);
    EXPECT_EQ(with(&SsidInfo::SSID, "Nicht das erste", 6), 0);
    EXPECT_STREQ(base().SSID1, "Unten");
    EXPECT_STREQ(base().SSID2, "Oben");
    EXPECT_STREQ(base().WiFiStatus1, "1");
    EXPECT_STREQ(base().WiFiStatus2, "1");
}

TEST_F(WifiTest, ARadioTurnsOffWithItsLastSsidAndOnWithAny)
{
    for (const int32_t index : {5, 6}) {
        EXPECT_EQ(with(&SsidInfo::Enable, "0", index), 0);
        EXPECT_STREQ(base().WiFiStatus2, "1");
    }
    EXPECT_EQ(with(&SsidInfo::Enable, "0", 7), 0);
    EXPECT_STREQ(base().WiFiStatus2, "0");
    EXPECT_STREQ(base().WiFiStatus1, "1");
    EXPECT_STREQ(ssid(8).Channel, "44");
    EXPECT_STREQ(ssid(8).UsedChannel, "0");
    EXPECT_EQ(with(&SsidInfo::Enable, "1", 8), 0);
    EXPECT_STREQ(base().WiFiStatus2, "1");
    EXPECT_STREQ(ssid(8).UsedChannel, "44");
}

TEST_F(WifiTest, AHostOfADisabledSsidIsOffline)
{
    EXPECT_EQ(wifi_clients(), "8");
    EXPECT_EQ(with(&SsidInfo::Enable, "0", 3), 0);
    EXPECT_EQ(wifi_clients(), "6");
    EXPECT_STREQ(reported_by(devapi_inspect_hg_resource).LanDevNum, "9");
    EXPECT_EQ(with(&SsidInfo::Enable, "1", 3), 0);
    EXPECT_EQ(wifi_clients(), "8");
}

TEST_F(WifiTest, ThePowerOfTheUpperRadioHasASeparateCall)
{
    EXPECT_EQ(devapi_set_5gwifi_powerlevel("55"), 0);
    EXPECT_STREQ(ssid(5).PowerLevel, "55");
    EXPECT_STREQ(ssid(1).PowerLevel, "100");
    for (const char *level : {"", "-1", "101", "full", "5 "}) {
        EXPECT_EQ(devapi_set_5gwifi_powerlevel(level), -1) << level;
    }
    EXPECT_STREQ(ssid(5).PowerLevel, "55");
}

TEST_F(WifiTest, StationControlAndFastRoamingAreKept)
{
    const auto fast_roaming = [] {
        char enable[8] = {};
        EXPECT_EQ(devapi_get_wifi_fastroaming_enable(enable), 0);
        return std::string(enable);
    };
    EXPECT_EQ(devapi_set_wifi_stactrl("0"), 0);
    EXPECT_EQ(devapi_set_wifi_fastroaming("1"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(reported_by(devapi_get_wifi_stactrl), 0);
    EXPECT_EQ(fast_roaming(), "1");

    EXPECT_EQ(devapi_set_wifi_fastroaming(""), 0); // an empty value
    for (const char *text : {"", "2", "on", "11"}) {
        EXPECT_EQ(devapi_set_wifi_stactrl(text), -1);
    }
    EXPECT_EQ(devapi_set_wifi_fastroaming("yes"), -1);
    EXPECT_EQ(reported_by(devapi_get_wifi_stactrl), 0);
    EXPECT_EQ(fast_roaming(), "1");
}

TEST_F(WifiTest, AHomeWithOneRadio)
{
    nlohmann::json home = house({{"/hosts", nlohmann::json::array()}});
    home["radios"].erase(1);
    home["ssids"].erase(home["ssids"].begin() + 4, home["ssids"].end());
    home["guest_networks"].erase(1);
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(reported_by(devapi_get_ssid_num), 4);
    int32_t index = 0;
    EXPECT_EQ(devapi_get_5g_wifi_index(&index), -1);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(reason(devapi_set_5gwifi_powerlevel("50")), "there is no radio for 5GHz");
}

TEST_F(WifiTest, TheTraceShowsArgumentsAndNoPassword)
{
    ssid(1);
    EXPECT_THAT(last_line(), HasSubstr("devapi_get_ssid_info(info={SSIDIndex=1, "
                                       "SSID=\"Lindenhof\", PWD=***, "));
    EXPECT_EQ(devapi_set_wifi_stactrl("0"), 0);
    EXPECT_THAT(last_line(), HasSubstr("devapi_set_wifi_stactrl(enable=\"0\") = 0"));
    reported_by(devapi_get_ssid_num);
    EXPECT_THAT(last_line(), HasSubstr("devapi_get_ssid_num(count=8) = 0"));
}

} // namespace
