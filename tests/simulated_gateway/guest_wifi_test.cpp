// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class GuestWifiTest : public HouseTest {
  protected:
    static GuestWifiInfo guest(const std::string &band = "2.4GHz")
    {
        return reported_by(devapi_get_guest_wifi_info,
                           record_with<GuestWifiInfo>({{"Band", band}}));
    }
    // The current guest network, open for this many seconds.
    static int32_t open_for(const std::string &seconds, const std::string &band = "2.4GHz")
    {
        GuestWifiInfo info = guest(band);
        set(info.Enable, "1");
        set(info.EndTimestamp, seconds);
        return devapi_set_guest_wifi_info(&info);
    }
    static std::string remaining() { return guest().Remainingtime; }
};

TEST_F(GuestWifiTest, SetsEveryFieldAndTheSsidOfTheGuestsReportsIt)
{
    const Fields fields = {{"Band", "5GHz"},    {"Enable", "1"},
                           {"SSID", "Hoffest"}, {"PWD", "apfelwein"},
                           {"ENCRYPT", "WPA3"}, {"ContinueTime", "2"},
                           {"HourTime", "3"},   {"EndTimestamp", "183600"},
                           {"Mode", "11ac"},    {"AdvertisementEnable", "0"}};
    ASSERT_EQ(set_by(devapi_set_guest_wifi_info, fields), 0) << reason();
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(like(fields, guest("5GHz")), fields);
    EXPECT_STREQ(guest("5GHz").Remainingtime, "183600");
    EXPECT_STREQ(ssid(6).SSID, "Hoffest");
    EXPECT_STREQ(ssid(6).AdvertisementEnable, "0");
    EXPECT_STREQ(guest("2.4GHz").SSID, "Lindenhof-Guest");
}

TEST_F(GuestWifiTest, MinusOneLeavesModeAndAdvertisementAsTheyAre)
{
    GuestWifiInfo info = guest();
    set(info.Mode, "-1");
    set(info.AdvertisementEnable, "-1");
    EXPECT_EQ(devapi_set_guest_wifi_info(&info), 0);
    EXPECT_STREQ(guest().Mode, "11ax");
    EXPECT_STREQ(guest().AdvertisementEnable, "1");
}

TEST_F(GuestWifiTest, ClosesAfterTheTimeGiven)
{
    EXPECT_EQ(open_for("3600"), 0);
    EXPECT_EQ(remaining(), "3600");
    ASSERT_EQ(open_when(kTime + 1000), "");
    EXPECT_EQ(remaining(), "2600");
    ASSERT_EQ(open_when(kTime + 3599), "");
    EXPECT_EQ(remaining(), "1");
    EXPECT_STREQ(guest().Enable, "1");
    ASSERT_EQ(open_when(kTime + 3600), "");
    EXPECT_STREQ(ssid(2).Enable, "0"); // regardless of which call comes first
    EXPECT_STREQ(guest().Enable, "0");
    EXPECT_EQ(remaining(), "0");
    EXPECT_STREQ(guest().EndTimestamp, "3600");
    EXPECT_STREQ(ssid(1).Enable, "1");
    // It stays closed, even if the clock goes back.
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_STREQ(guest().Enable, "0");
}

TEST_F(GuestWifiTest, EachBandHasASeparateTime)
{
    EXPECT_EQ(open_for("100", "2.4GHz"), 0);
    EXPECT_EQ(open_for("200", "5GHz"), 0);
    ASSERT_EQ(open_when(kTime + 150), "");
    EXPECT_STREQ(guest("2.4GHz").Enable, "0");
    EXPECT_STREQ(guest("5GHz").Enable, "1");
    EXPECT_STREQ(guest("5GHz").Remainingtime, "50");
}

TEST_F(GuestWifiTest, ANewSettingRestartsTheTime)
{
    EXPECT_EQ(open_for("3600"), 0);
    ASSERT_EQ(open_when(kTime + 3000), "");
    EXPECT_EQ(open_for("3600"), 0);
    EXPECT_EQ(remaining(), "3600");
    EXPECT_EQ(open_for("-1"), 0);
    EXPECT_EQ(remaining(), "-1");
    ASSERT_EQ(open_when(kTime + 10'000'000), "");
    EXPECT_STREQ(guest().Enable, "1");
}

TEST_F(GuestWifiTest, TheTimeRunsOnlyWhileItIsOpen)
{
    EXPECT_EQ(open_for("3600"), 0);
    EXPECT_EQ(switch_ssid(2, "0"), 0);
    EXPECT_EQ(remaining(), "0");
    ASSERT_EQ(open_when(kTime + 5000), "");
    EXPECT_EQ(switch_ssid(2, "1"), 0);
    EXPECT_EQ(remaining(), "3600");
    ASSERT_EQ(open_when(kTime + 8600), "");
    EXPECT_STREQ(guest().Enable, "0");
}

TEST_F(GuestWifiTest, SwitchedOnAfterItsTimeItIsOpenForAsLongAgain)
{
    EXPECT_EQ(open_for("3600"), 0);
    const SsidInfo switched_on = ssid(2);
    ASSERT_EQ(open_when(kTime + 3600), "");
    EXPECT_EQ(devapi_set_ssid_info(&switched_on), 0); // the first call after the end
    EXPECT_EQ(remaining(), "3600");
}

TEST_F(GuestWifiTest, TheLargestAndTheSmallestTime)
{
    EXPECT_EQ(open_for("4294963696"), 0);
    EXPECT_EQ(remaining(), "4294963696");
    EXPECT_EQ(open_for("0"), 0);
    EXPECT_STREQ(guest().Enable, "0");
    for (const char *seconds : {"", "-2", "4294967296", "soon", "99999999999999"}) {
        EXPECT_EQ(open_for(seconds), -1) << seconds;
    }
}

TEST_F(GuestWifiTest, AScenarioMayStartWithALimit)
{
    ASSERT_EQ(open_kept_home(house({{"/guest_networks/0/seconds", 60}})), "");
    EXPECT_EQ(remaining(), "60");
    ASSERT_EQ(open_when(kTime + 60), "");
    EXPECT_STREQ(guest().Enable, "0");
}

TEST_F(GuestWifiTest, FactoryRecoveryEndsTheLimit)
{
    EXPECT_EQ(open_for("3600"), 0);
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(remaining(), "-1");
}

TEST_F(GuestWifiTest, ARadioThatIsOffHasToBeSwitchedOnFirst)
{
    for (const int32_t index : {5, 6, 7}) {
        EXPECT_EQ(switch_ssid(index, "0"), 0);
    }
    EXPECT_STREQ(guest("5GHz").RadioEnable, "0");
    EXPECT_EQ(open_for("60", "5GHz"), -2);
    EXPECT_STREQ(guest("5GHz").EndTimestamp, "-1");
    EXPECT_EQ(open_for("60", "2.4GHz"), 0);
    EXPECT_EQ(switch_ssid(5, "1"), 0);
    EXPECT_EQ(open_for("60", "5GHz"), 0);
}

TEST_F(GuestWifiTest, ABandWithoutAGuestNetworkIsRefused)
{
    for (const char *band : {"", "2.4", "6GHz", "5ghz"}) {
        GuestWifiInfo info = {};
        set(info.Band, band);
        EXPECT_EQ(reason(devapi_get_guest_wifi_info(&info)),
                  "Band \"" + std::string(band) + "\" has no guest network");
        EXPECT_EQ(devapi_set_guest_wifi_info(&info), -1);
    }
}

TEST_F(GuestWifiTest, BadTextsAreRefusedAndChangeNothing)
{
    const std::string before = read(path("state"));
    const auto refused = [&](auto field, const std::string &text) {
        GuestWifiInfo info = guest();
        set(info.*field, text);
        const std::string why = reason(devapi_set_guest_wifi_info(&info));
        EXPECT_EQ(read(path("state")), before);
        return why;
    };
    EXPECT_EQ(refused(&GuestWifiInfo::Enable, "on"), "Enable \"on\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&GuestWifiInfo::SSID, ""), "SSID is empty");
    EXPECT_EQ(refused(&GuestWifiInfo::PWD, "1234567"),
              "/home/ssids/1/password: needs at least 8 characters");
    EXPECT_EQ(refused(&GuestWifiInfo::ENCRYPT, "WPA"),
              "ENCRYPT \"WPA\" is none of \"OPEN\", \"WPA2\", \"WPA3\", \"WPA2/3\"");
    EXPECT_EQ(refused(&GuestWifiInfo::ContinueTime, "two"), "ContinueTime is not a number");
    EXPECT_EQ(refused(&GuestWifiInfo::HourTime, ""), "HourTime is not a number");
    EXPECT_EQ(refused(&GuestWifiInfo::AdvertisementEnable, "2"),
              "AdvertisementEnable \"2\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&GuestWifiInfo::Mode, "11a"),
              "/home/radios/0/standard: \"11a\" is none of \"11b\", \"11g\", \"11n\", \"11ax\"");
}

TEST_F(GuestWifiTest, TheTraceShowsNoPassword)
{
    guest();
    EXPECT_THAT(last_line(), testing::AllOf(HasSubstr("Band=\"2.4GHz\""), HasSubstr("PWD=***")));
}

} // namespace
