// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class WifiSleepTest : public GatewayTest {
  protected:
    static WifiSleepInfo period(const std::string &start, const std::string &end)
    {
        WifiSleepInfo info = {};
        set(info.Enable, "1");
        set(info.StartTime, start);
        set(info.EndTime, end);
        set(info.DaysOfWeek, "1,7");
        return info;
    }
    // Adds a period as the plug-in does, with both calls.
    static int32_t add(WifiSleepInfo info)
    {
        const int32_t added = devapi_add_wifi_timer(&info);
        return added != 0 ? added : devapi_set_wifi_sleep_info(&info);
    }
    // The periods, queried as the plug-in does.
    static std::vector<std::string> schedule()
    {
        std::vector<std::string> periods;
        for (int32_t k = 1; k <= 3; ++k) {
            WifiSleepInfo info = {};
            info.StartTimer = 2 * k - 1;
            info.EndTimer = 2 * k;
            if (devapi_get_wifi_sleep_info(&info) == 0) {
                periods.push_back(std::string(info.Enable) + " " + info.StartTime + "-" +
                                  info.EndTime + " " + info.DaysOfWeek);
            }
        }
        return periods;
    }
    using Periods = std::vector<std::string>;
};

TEST_F(WifiSleepTest, ReportsThePeriodsOfTheScenario)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(schedule(), Periods({"1 23:30-05:45 1,2,3,4,7", "0 01:00-08:00 5,6"}));
}

TEST_F(WifiSleepTest, HasRoomForThreePeriods)
{
    ASSERT_EQ(open({.state_file = path("state"), .trace = path("trace")}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
    EXPECT_EQ(add(period("22:00", "06:00")), 0);
    EXPECT_EQ(add(period("12:00", "12:30")), 0);
    EXPECT_EQ(add(period("14:00", "14:30")), 0);
    EXPECT_EQ(add(period("16:00", "16:30")), -1);
    EXPECT_EQ(reason(), "all timers are in use");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(schedule(), Periods({"1 22:00-06:00 1,7", "1 12:00-12:30 1,7", "1 14:00-14:30 1,7"}));
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
}

TEST_F(WifiSleepTest, NumbersTheTimersRegardlessOfTheRecord)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    WifiSleepInfo info = period("22:00", "06:00");
    EXPECT_EQ(devapi_add_wifi_timer(&info), 0);
    EXPECT_EQ(info.StartTimer, 1);
    EXPECT_EQ(info.EndTimer, 2);
    EXPECT_EQ(devapi_add_wifi_timer(&info), 0);
    EXPECT_EQ(info.StartTimer, 3);
    EXPECT_EQ(info.EndTimer, 4);
}

TEST_F(WifiSleepTest, APeriodIsSetByItsTimers)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    WifiSleepInfo info = period("22:00", "06:00");
    info.StartTimer = 3;
    info.EndTimer = 4;
    EXPECT_EQ(devapi_set_wifi_sleep_info(&info), 0);
    EXPECT_EQ(schedule(), Periods({"1 23:30-05:45 1,2,3,4,7", "1 22:00-06:00 1,7"}));
}

TEST_F(WifiSleepTest, InvalidTimersAreRefused)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    const std::pair<int32_t, int32_t> pairs[] = {{0, 0},
                                                 {1, 4},
                                                 {2, 3},
                                                 {3, 2},
                                                 {1, 1},
                                                 {5, 6},
                                                 {7, 8},
                                                 {-1, 0},
                                                 {0, 1},
                                                 {-3, -2},
                                                 {INT32_MAX, INT32_MIN},
                                                 {INT32_MIN, INT32_MAX}};
    for (const auto &[start, end] : pairs) {
        WifiSleepInfo info = period("22:00", "06:00");
        info.StartTimer = start;
        info.EndTimer = end;
        const std::string why = "there is no period with the timers " + std::to_string(start) +
                                " and " + std::to_string(end);
        EXPECT_EQ(devapi_get_wifi_sleep_info(&info), -1);
        EXPECT_EQ(reason(), why);
        EXPECT_EQ(devapi_set_wifi_sleep_info(&info), -1);
        EXPECT_EQ(reason(), why);
    }
}

TEST_F(WifiSleepTest, BadTextsOfAPeriodAreRefused)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    const auto refused = [&](auto field, const std::string &text) {
        WifiSleepInfo info = period("22:00", "06:00");
        set(info.*field, text);
        EXPECT_EQ(devapi_add_wifi_timer(&info), -1);
        return reason();
    };
    EXPECT_EQ(refused(&WifiSleepInfo::Enable, "yes"), "Enable \"yes\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&WifiSleepInfo::Enable, ""), "Enable \"\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&WifiSleepInfo::StartTime, "24:00"),
              "StartTime \"24:00\" is not a time like \"04:30\"");
    EXPECT_EQ(refused(&WifiSleepInfo::EndTime, ""), "EndTime \"\" is not a time like \"04:30\"");
    EXPECT_EQ(refused(&WifiSleepInfo::DaysOfWeek, "Mon"),
              "DaysOfWeek \"Mon\" is not a list of days like \"1,3,7\"");
    EXPECT_EQ(refused(&WifiSleepInfo::EndTime, "22:00"), "/home/wifi_sleep/0: ends when it starts");
    WifiSleepInfo filled = period("22:00", "06:00");
    fill_completely(filled.StartTime, '1');
    EXPECT_EQ(devapi_add_wifi_timer(&filled), -1);
    EXPECT_EQ(schedule(), Periods());
}

TEST_F(WifiSleepTest, NullsAreRefused)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_get_wifi_sleep_info(nullptr), -1);
    EXPECT_EQ(devapi_add_wifi_timer(nullptr), -1);
    EXPECT_EQ(devapi_set_wifi_sleep_info(nullptr), -1);
}

} // namespace
