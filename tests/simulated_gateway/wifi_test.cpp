// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class WifiTest : public GatewayTest {
  protected:
    void SetUp() override
    {
        ASSERT_EQ(open_at(kTime, {.state_file = path("state"), .trace = path("trace")}), "");
    }

    // An SSID as the gateway reports it, which is also a setting that changes nothing.
    static SsidInfo ssid(int32_t index)
    {
        SsidInfo info = {};
        info.SSIDIndex = index;
        EXPECT_EQ(devapi_get_ssid_info(&info), 0);
        return info;
    }
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
        EXPECT_EQ(with(field, text, index), -1);
        const std::string why = reason();
        EXPECT_EQ(read(path("state")), before);
        return why;
    }
    static HgBaseInfo base()
    {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
        return info;
    }
    static std::string wifi_clients()
    {
        WifiInspectInfo info = {};
        EXPECT_EQ(devapi_inspect_hg_wifi(&info), 0);
        return info.WiFiDevNum;
    }
};

TEST_F(WifiTest, ReportsEveryFieldOfAnSsid)
{
    const SsidInfo lower = ssid(1);
    EXPECT_STREQ(lower.SSID, "Lindenhof");
    EXPECT_STREQ(lower.PWD, "apfelbaum-1962");
    EXPECT_STREQ(lower.ENCRYPT, "WPA2/3");
    EXPECT_STREQ(lower.PowerLevel, "100");
    EXPECT_STREQ(lower.Channel, "6");
    EXPECT_STREQ(lower.UsedChannel, "6");
    EXPECT_STREQ(lower.Enable, "1");
    EXPECT_STREQ(lower.Bandwidth, "20");
    EXPECT_STREQ(lower.Type, "0");
    EXPECT_STREQ(lower.Mode, "11ax");
    EXPECT_STREQ(lower.AdvertisementEnable, "1");
    EXPECT_STREQ(lower.Beamforming, "0");
    EXPECT_STREQ(lower.PermissionProperty, "FULL");

    EXPECT_STREQ(ssid(2).PermissionProperty, "GUEST");
    EXPECT_STREQ(ssid(4).PWD, "NULL");
    const SsidInfo upper = ssid(7);
    EXPECT_STREQ(upper.Channel, "44");
    EXPECT_STREQ(upper.Bandwidth, "80");
    EXPECT_STREQ(upper.Type, "1");
    EXPECT_STREQ(upper.AdvertisementEnable, "0");
    EXPECT_STREQ(upper.Beamforming, "1");
}

TEST_F(WifiTest, ThereAreEightAndTheFifthIsTheFirstOfTheUpperBand)
{
    int32_t count = 0;
    EXPECT_EQ(devapi_get_ssid_num(&count), 0);
    EXPECT_EQ(count, 8);
    int32_t index = 0;
    EXPECT_EQ(devapi_get_5g_wifi_index(&index), 0);
    EXPECT_EQ(index, 5);
}

TEST_F(WifiTest, AnIndexThatDoesNotExistIsRefused)
{
    for (const int32_t index : {0, 9, -1, INT32_MAX, INT32_MIN}) {
        SsidInfo info = ssid(1);
        info.SSIDIndex = index;
        const std::string why = "there is no SSID " + std::to_string(index);
        EXPECT_EQ(devapi_get_ssid_info(&info), -1);
        EXPECT_EQ(reason(), why);
        EXPECT_EQ(devapi_set_ssid_info(&info), -1);
        EXPECT_EQ(reason(), why);
        EXPECT_EQ(devapi_set_ssid_list_info(&info), -1);
        EXPECT_EQ(reason(), why);
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
    SsidInfo info = {};
    info.SSIDIndex = 6;
    set(info.SSID, "Gartenhaus");
    set(info.PWD, "12345678");
    set(info.ENCRYPT, "WPA3");
    set(info.PowerLevel, "40");
    set(info.Channel, "149");
    set(info.Enable, "1");
    set(info.Bandwidth, "160");
    set(info.Mode, "11ac");
    set(info.AdvertisementEnable, "0");
    set(info.Beamforming, "0");
    ASSERT_EQ(devapi_set_ssid_list_info(&info), 0) << reason();
    ASSERT_EQ(reopen({.state_file = path("state")}), "");

    const SsidInfo kept = ssid(6);
    EXPECT_STREQ(kept.SSID, "Gartenhaus");
    EXPECT_STREQ(kept.PWD, "12345678");
    EXPECT_STREQ(kept.ENCRYPT, "WPA3");
    EXPECT_STREQ(kept.AdvertisementEnable, "0");
    // All SSIDs of the band report the settings of their radio.
    const SsidInfo other = ssid(8);
    EXPECT_STREQ(other.SSID, "Lindenhof-8");
    EXPECT_STREQ(other.PowerLevel, "40");
    EXPECT_STREQ(other.Channel, "149");
    EXPECT_STREQ(other.UsedChannel, "149");
    EXPECT_STREQ(other.Bandwidth, "160");
    EXPECT_STREQ(other.Mode, "11ac");
    EXPECT_STREQ(other.Beamforming, "0");
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
    EXPECT_EQ(devapi_set_ssid_info(&filled), -1);
    EXPECT_EQ(reason(), "PWD is longer than 63 bytes");
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
    ResourceInfo resources = {};
    EXPECT_EQ(devapi_inspect_hg_resource(&resources), 0);
    EXPECT_STREQ(resources.LanDevNum, "9");
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

TEST_F(WifiTest, AHomeWithOneRadio)
{
    nlohmann::json home = house();
    home["radios"].erase(1);
    home["ssids"].erase(home["ssids"].begin() + 4, home["ssids"].end());
    home["guest_networks"].erase(1);
    home["hosts"] = nlohmann::json::array();
    ASSERT_EQ(reopen({.scenario = write("home.json", home.dump()), .trace = path("trace")}), "");
    int32_t count = 0;
    EXPECT_EQ(devapi_get_ssid_num(&count), 0);
    EXPECT_EQ(count, 4);
    int32_t index = 0;
    EXPECT_EQ(devapi_get_5g_wifi_index(&index), -1);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(devapi_set_5gwifi_powerlevel("50"), -1);
    EXPECT_EQ(reason(), "there is no radio for 5GHz");
}

TEST_F(WifiTest, NullsAreRefused)
{
    EXPECT_EQ(devapi_get_ssid_info(nullptr), -1);
    EXPECT_EQ(devapi_set_ssid_info(nullptr), -1);
    EXPECT_EQ(devapi_set_ssid_list_info(nullptr), -1);
    EXPECT_EQ(devapi_set_5gwifi_powerlevel(nullptr), -1);
    EXPECT_EQ(devapi_get_ssid_num(nullptr), -1);
    EXPECT_EQ(devapi_get_5g_wifi_index(nullptr), -1);
}

TEST_F(WifiTest, TheTraceShowsArgumentsAndNoPassword)
{
    ssid(1);
    const std::string shown = lines(path("trace")).back();
    EXPECT_NE(shown.find("devapi_get_ssid_info(info={SSIDIndex=1, SSID=\"Lindenhof\", PWD=***, "),
              std::string::npos);
    EXPECT_EQ(devapi_set_wifi_stactrl("0"), 0);
    EXPECT_NE(lines(path("trace")).back().find("devapi_set_wifi_stactrl(enable=\"0\") = 0"),
              std::string::npos);
    int32_t count = 0;
    EXPECT_EQ(devapi_get_ssid_num(&count), 0);
    EXPECT_NE(lines(path("trace")).back().find("devapi_get_ssid_num(count=8) = 0"),
              std::string::npos);
}

} // namespace
