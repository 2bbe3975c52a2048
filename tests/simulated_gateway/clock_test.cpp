// SPDX-License-Identifier: MIT
// A clock near the end of the 64-bit range: times beyond it are never reached.
#include "gateway_fixture.h"

namespace {

class LateClockTest : public GatewayTest {
  protected:
    static constexpr int64_t kEnd = INT64_MAX; // a Sunday, at half past three
    static constexpr int32_t kAnnasPhone = 3;

    void SetUp() override { ASSERT_EQ(open_when(kEnd), ""); }

    static nlohmann::json house_without_anna(const char *from, const char *until)
    {
        return house({{"/hosts/2/away_from", from},
                      {"/hosts/2/away_until", until},
                      {"/hosts/2/away_days", "7"}});
    }
    void expect_saved_end(const char *pointer) const
    {
        EXPECT_EQ(json_of(path("state")).at(nlohmann::json::json_pointer(pointer)), kEnd);
    }
};

TEST_F(LateClockTest, AGuestNetworkEndsAtTheEnd)
{
    ASSERT_EQ(open_kept_home(house(), kEnd - 1), "");
    auto info =
        reported_by(devapi_get_guest_wifi_info, record_with<GuestWifiInfo>({{"Band", "2.4GHz"}}));
    set(info.Enable, "1");
    set(info.EndTimestamp, "4294967295");
    EXPECT_EQ(devapi_set_guest_wifi_info(&info), 0) << reason();
    EXPECT_STREQ(reported_by(devapi_get_guest_wifi_info, info).Remainingtime, "1");
    expect_saved_end("/home/guest_networks/0/end_time");
}

TEST_F(LateClockTest, PairingEndsAtTheEnd)
{
    EXPECT_EQ(set_by(devapi_set_pair_status, {{"Enable", "1"}, {"Time", "3600"}}), 0) << reason();
    expect_saved_end("/under_way/pairing_end");
}

TEST_F(LateClockTest, WpsEndsAtTheEnd)
{
    EXPECT_EQ(set_by(devapi_set_wps_state, {{"Radio", "5GHz"}, {"Action", "1"}}), 0) << reason();
    expect_saved_end("/under_way/wps_end_5ghz");
}

TEST_F(LateClockTest, AChildRouterHasStartedByTheEnd)
{
    const std::string command = R"({"DeviceID":"3C6AD2228180"})";
    EXPECT_EQ(devapi_cmdstring_sendto_tslink(command.data(), static_cast<int32_t>(command.size())),
              0)
        << reason();
    expect_saved_end("/home/mesh/child_routers/1/start_time");
}

TEST_F(LateClockTest, AnAbsenceThatWouldStartLaterNeverDoes)
{
    ASSERT_EQ(open_home(house_without_anna("16:00", "12:00"), kEnd), "");
    EXPECT_STREQ(host(kAnnasPhone).NetStatus, "1");
    EXPECT_EQ(host(kAnnasPhone).AccessTime, std::to_string(kEnd));
}

TEST_F(LateClockTest, AnAbsenceThatWouldEndLaterLasts)
{
    ASSERT_EQ(open_home(house_without_anna("15:00", "18:00"), kEnd - 1), "");
    EXPECT_STREQ(host(kAnnasPhone).NetStatus, "0");
}

TEST_F(LateClockTest, LocalTimeIsNotBeyondTheEnd)
{
    ASSERT_EQ(open_home(house({{"/hours_behind_utc", -14}, {"/local_times", true}}), kEnd), "");
    EXPECT_EQ(host(kAnnasPhone).AccessTime, std::to_string(kEnd));
}

} // namespace
