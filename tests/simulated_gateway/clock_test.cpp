// SPDX-License-Identifier: MIT
// A clock near the end of the 64-bit range: times beyond it are never reached.
#include "services_fixture.h"

namespace {

class LateClockTest : public ServicesTest {
  protected:
    static constexpr int64_t kEnd = INT64_MAX; // a Sunday, at half past three
    static constexpr int32_t kAnnasPhone = 3;

    void SetUp() override {}
    std::string open_late(const nlohmann::json &home = house())
    {
        return open_at(kEnd, {.scenario = write("home.json", home.dump()),
                              .state_file = path("state"),
                              .trace = path("trace")});
    }
    nlohmann::json saved() const { return nlohmann::json::parse(state()); }
};

TEST_F(LateClockTest, AGuestNetworkEndsAtTheEnd)
{
    ASSERT_EQ(open_at(kEnd - 1, {.state_file = path("state"), .trace = path("trace")}), "");
    GuestWifiInfo info = {};
    set(info.Band, "2.4GHz");
    ASSERT_EQ(devapi_get_guest_wifi_info(&info), 0);
    set(info.Enable, "1");
    set(info.EndTimestamp, "4294967295");
    EXPECT_EQ(devapi_set_guest_wifi_info(&info), 0) << reason();
    ASSERT_EQ(devapi_get_guest_wifi_info(&info), 0);
    EXPECT_STREQ(info.Remainingtime, "1");
    EXPECT_EQ(saved().at("home").at("guest_networks").at(0).at("end_time"), kEnd);
}

TEST_F(LateClockTest, PairingEndsAtTheEnd)
{
    ASSERT_EQ(open_late(), "");
    PairStatus status = {};
    set(status.Enable, "1");
    set(status.Time, "3600");
    EXPECT_EQ(devapi_set_pair_status(&status), 0) << reason();
    EXPECT_EQ(saved().at("under_way").at("pairing_end"), kEnd);
}

TEST_F(LateClockTest, WpsEndsAtTheEnd)
{
    ASSERT_EQ(open_late(), "");
    WpsState wps = {};
    set(wps.Radio, "5GHz");
    set(wps.Action, "1");
    EXPECT_EQ(devapi_set_wps_state(&wps), 0) << reason();
    EXPECT_EQ(saved().at("under_way").at("wps_end_5ghz"), kEnd);
}

TEST_F(LateClockTest, AChildRouterHasStartedByTheEnd)
{
    ASSERT_EQ(open_late(), "");
    const std::string command = nlohmann::json{{"DeviceID", kAttic}}.dump();
    EXPECT_EQ(devapi_cmdstring_sendto_tslink(command.data(), static_cast<int32_t>(command.size())),
              0)
        << reason();
    EXPECT_EQ(saved().at("home").at("mesh").at("child_routers").at(1).at("start_time"), kEnd);
}

TEST_F(LateClockTest, AnAbsenceThatWouldStartLaterNeverDoes)
{
    nlohmann::json home = house();
    home["hosts"][kAnnasPhone - 1]["away_from"] = "16:00";
    home["hosts"][kAnnasPhone - 1]["away_until"] = "12:00";
    home["hosts"][kAnnasPhone - 1]["away_days"] = "7";
    ASSERT_EQ(open_late(home), "");
    EXPECT_STREQ(host(kAnnasPhone).NetStatus, "1");
    EXPECT_EQ(host(kAnnasPhone).AccessTime, std::to_string(kEnd));
}

TEST_F(LateClockTest, AnAbsenceThatWouldEndLaterLasts)
{
    nlohmann::json home = house();
    home["hosts"][kAnnasPhone - 1]["away_from"] = "15:00";
    home["hosts"][kAnnasPhone - 1]["away_until"] = "18:00";
    home["hosts"][kAnnasPhone - 1]["away_days"] = "7";
    ASSERT_EQ(open_at(kEnd - 1, {.scenario = write("home.json", home.dump())}), "");
    EXPECT_STREQ(host(kAnnasPhone).NetStatus, "0");
}

TEST_F(LateClockTest, LocalTimeIsNotBeyondTheEnd)
{
    nlohmann::json home = house();
    home["hours_behind_utc"] = -14;
    home["local_times"] = true;
    ASSERT_EQ(open_late(home), "");
    AdBaseInfo station = {};
    station.HostIndex = kKitchenSpeaker;
    ASSERT_EQ(devapi_get_ad_base_info(&station), 0);
    EXPECT_EQ(station.AccessTime, std::to_string(kEnd));
}

} // namespace
