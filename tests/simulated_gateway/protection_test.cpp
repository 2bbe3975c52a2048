// SPDX-License-Identifier: MIT
// The effect of parental control on the attached devices over time.
#include "green_net_fixture.h"

namespace {

class ProtectionTest : public GreenNetTest {
  protected:
    // Whether the tablet has access, which all functions have to report alike.
    static bool has_access()
    {
        const AdBaseInfo info = host(kTablet);
        EXPECT_EQ(right(kTablet), info.AccessEnable[0] == '1' ? "ALLOW" : "DENY");
        EXPECT_EQ(info.UpSpeed != std::string("0"), info.AccessEnable[0] == '1');
        EXPECT_EQ(info.DownSpeed != std::string("0"), info.AccessEnable[0] == '1');
        EXPECT_STREQ(info.NetStatus, "1");
        return info.AccessEnable[0] == '1';
    }
    static constexpr int64_t kNoon = 12 * kHour;
    static constexpr int64_t kRestricted = kTime + 13 * kHour;
};

TEST_F(ProtectionTest, BeginsAndEndsAtItsTimes)
{
    const struct {
        int64_t time;
        bool access;
    } moments[] = {
        {kTime, true},
        {kTime + kNoon + 1799, true},
        {kTime + kNoon + 1800, false},
        {kTime + 15 * kHour - 1, false},
        {kTime + 15 * kHour, true},
        {kFriday + 14 * kHour, false},
        {kFriday + kDay + 14 * kHour, true}, // Saturday
        {kMonday + 14 * kHour, false},
    };
    for (const auto &moment : moments) {
        ASSERT_EQ(open_when(moment.time), "");
        EXPECT_EQ(has_access(), moment.access) << moment.time;
        EXPECT_STREQ(host(kTablet).GreennetProtectEnable, "1");
        EXPECT_EQ(right(kAnnasPhone), "ALLOW");
    }
}

TEST_F(ProtectionTest, GoesOnAfterMidnight)
{
    // From Friday and from Saturday 22:00 to the next morning, but not from Sunday.
    const struct {
        int64_t hours;
        bool access;
    } moments[] = {
        {21, true},      {22, false},      {24, false},     {24 + 7, false},
        {24 + 8, true},  {24 + 22, false}, {48 + 7, false}, {48 + 8, true},
        {48 + 22, true}, {72 + 3, true},   {-1, true},
    };
    for (const auto &moment : moments) {
        ASSERT_EQ(open_when(kFriday + moment.hours * kHour), "");
        EXPECT_EQ(has_access(), moment.access) << moment.hours;
    }
}

TEST_F(ProtectionTest, NeedsEverySwitch)
{
    ASSERT_EQ(open_when(kRestricted), "");
    EXPECT_FALSE(has_access());
    EXPECT_EQ(devapi_set_greenaccess_enable(0), 0);
    EXPECT_TRUE(has_access());
    EXPECT_STREQ(host(kTablet).GreennetProtectEnable, "1");
    EXPECT_EQ(devapi_set_greenaccess_enable(1), 0);
    EXPECT_FALSE(has_access());

    EXPECT_EQ(devapi_set_greennet_enable("0"), 0);
    EXPECT_TRUE(has_access());
    EXPECT_STREQ(host(kTablet).GreennetProtectEnable, "0");
    EXPECT_EQ(devapi_set_greennet_enable("1"), 0);
    EXPECT_FALSE(has_access());

    EXPECT_EQ(devapi_set_protect_enable(0, 1), 0);
    EXPECT_TRUE(has_access());
    EXPECT_STREQ(host(kTablet).GreennetProtectEnable, "0");
    EXPECT_STREQ(entry(1).ProtectEnable, "0");
    EXPECT_EQ(devapi_set_protect_enable(1, 1), 0);
    EXPECT_FALSE(has_access());

    EXPECT_EQ(set_period(1, 1, "12:30", "15:00", "0", "12345"), 0);
    EXPECT_TRUE(has_access());
    EXPECT_EQ(set_period(1, 1, "12:30", "15:00", "1", "4"), 0);
    EXPECT_FALSE(has_access());
    EXPECT_EQ(set_period(1, 1, "12:30", "15:00", "1", "1235"), 0);
    EXPECT_TRUE(has_access());
    EXPECT_EQ(set_period(1, 1, "12:30", "15:00", "1", "4"), 0);
    EXPECT_EQ(devapi_del_all_duration(1), 0);
    EXPECT_TRUE(has_access());
}

TEST_F(ProtectionTest, EndsWithTheEntry)
{
    ASSERT_EQ(open_when(kRestricted), "");
    EXPECT_FALSE(has_access());
    EXPECT_EQ(devapi_del_green_net_info_by_maclist("70:F0:88:2C:A6:93,"), 0);
    EXPECT_TRUE(has_access());
    EXPECT_EQ(resources().substr(resources().find(' ')), " 1");
    EXPECT_EQ(right(kConsole), "DENY");
}

TEST_F(ProtectionTest, AnEmptyPeriodRestrictsNothing)
{
    ASSERT_EQ(open_when(kRestricted), "");
    EXPECT_EQ(devapi_del_all_duration(1), 0);
    int32_t at = 0;
    EXPECT_EQ(devapi_add_greennet_duration(1, &at), 0);
    EXPECT_TRUE(has_access());
}

TEST_F(ProtectionTest, ANewEntryProtectsAnotherDevice)
{
    ASSERT_EQ(open_when(kRestricted), "");
    EXPECT_EQ(add("f4d4885b3f72"), 3);
    add_period(3, "12:00", "14:00", "1", "1234567");
    EXPECT_EQ(right(kLaptop), "ALLOW");
    EXPECT_EQ(devapi_set_protect_enable(1, 3), 0);
    EXPECT_EQ(right(kLaptop), "DENY");
    EXPECT_STREQ(host(kLaptop).DownSpeed, "0");
    EXPECT_STREQ(host(kLaptop).GreennetProtectEnable, "1");
    EXPECT_EQ(resources().substr(resources().find(' ')), " 3");
    ASSERT_EQ(open_when(kTime + 14 * kHour), "");
    EXPECT_EQ(right(kLaptop), "ALLOW");
}

TEST_F(ProtectionTest, ABlockSetByTheUserOutlivesThePeriod)
{
    EXPECT_EQ(set_right(kTabletMac, "DENY"), 0);
    for (const int64_t time : {kTime, kRestricted, kTime + 16 * kHour}) {
        ASSERT_EQ(open_when(time), "");
        EXPECT_FALSE(has_access());
    }
    // A block removed during a period ends with the period.
    ASSERT_EQ(open_when(kRestricted), "");
    EXPECT_EQ(set_right(kTabletMac, "ALLOW"), 0);
    EXPECT_FALSE(has_access());
    ASSERT_EQ(open_when(kTime + 16 * kHour), "");
    EXPECT_TRUE(has_access());
}

TEST_F(ProtectionTest, TheHomeUsesLess)
{
    ASSERT_EQ(open_home(house({{"/green_net/access_restricted", false}}), kRestricted), "");
    const int tablet = std::stoi(host(kTablet).DownSpeed);
    const int console = std::stoi(host(kConsole).DownSpeed);
    const int all = std::stoi(base().DownSpeed);
    EXPECT_EQ(devapi_set_greenaccess_enable(1), 0);
    EXPECT_EQ(std::stoi(base().DownSpeed), all - tablet - console);
}

} // namespace
