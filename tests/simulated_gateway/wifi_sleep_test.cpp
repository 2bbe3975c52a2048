// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class WifiSleepTest : public GatewayTest {
  protected:
    void SetUp() override { ASSERT_EQ(open_home(house()), ""); }

    static WifiSleepInfo period(const std::string &start, const std::string &end)
    {
        return record_with<WifiSleepInfo>(
            {{"Enable", "1"}, {"StartTime", start}, {"EndTime", end}, {"DaysOfWeek", "1,7"}});
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

TEST_F(WifiSleepTest, HasRoomForThreePeriods)
{
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
    EXPECT_EQ(add(period("22:00", "06:00")), 0);
    EXPECT_EQ(add(period("12:00", "12:30")), 0);
    EXPECT_EQ(add(period("14:00", "14:30")), 0);
    EXPECT_EQ(reason(add(period("16:00", "16:30"))), "all timers are in use");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(schedule(), Periods({"1 22:00-06:00 1,7", "1 12:00-12:30 1,7", "1 14:00-14:30 1,7"}));
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
}

TEST_F(WifiSleepTest, NumbersTheTimersRegardlessOfTheRecord)
{
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
    WifiSleepInfo info = period("22:00", "06:00");
    info.StartTimer = 3;
    info.EndTimer = 4;
    EXPECT_EQ(devapi_set_wifi_sleep_info(&info), 0);
    EXPECT_EQ(schedule(), Periods({"1 23:30-05:45 1,2,3,4,7", "1 22:00-06:00 1,7"}));
}

TEST_F(WifiSleepTest, InvalidTimersAreRefused)
{
    using Timers = std::pair<int32_t, int32_t>;
    for (const auto &[start, end] :
         {Timers(0, 0), Timers(1, 4), Timers(2, 3), Timers(3, 2), Timers(1, 1), Timers(5, 6),
          Timers(7, 8), Timers(-1, 0), Timers(0, 1), Timers(-3, -2), Timers(INT32_MAX, INT32_MIN),
          Timers(INT32_MIN, INT32_MAX)}) {
        WifiSleepInfo info = period("22:00", "06:00");
        info.StartTimer = start;
        info.EndTimer = end;
        const std::string why = "there is no period with the timers " + std::to_string(start) +
                                " and " + std::to_string(end);
        EXPECT_EQ(reason(devapi_get_wifi_sleep_info(&info)), why);
        EXPECT_EQ(reason(devapi_set_wifi_sleep_info(&info)), why);
    }
}

TEST_F(WifiSleepTest, BadTextsOfAPeriodAreRefused)
{
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    const auto refused = [&](auto field, const std::string &text) {
        WifiSleepInfo info = period("22:00", "06:00");
        set(info.*field, text);
        return reason(devapi_add_wifi_timer(&info));
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

} // namespace
