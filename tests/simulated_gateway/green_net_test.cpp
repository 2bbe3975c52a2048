// SPDX-License-Identifier: MIT
// Parental control: its switches, the table of devices, and their periods.
#include "green_net_fixture.h"

namespace {

TEST_F(GreenNetTest, TheSwitchIsKept)
{
    char enable[GREENNET_SWITCH_SIZE] = {};
    EXPECT_EQ(devapi_get_greennet_enable(enable), 0);
    EXPECT_STREQ(enable, "1");
    EXPECT_EQ(devapi_set_greennet_enable("0"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(devapi_get_greennet_enable(enable), 0);
    EXPECT_STREQ(enable, "0");
    for (const std::string &wrong :
         {std::string(), std::string("2"), std::string("on"), std::string(255, '1')}) {
        EXPECT_EQ(reason(devapi_set_greennet_enable(wrong.c_str())),
                  "enable \"" + wrong + "\" is none of \"0\", \"1\"");
    }
    for (const int32_t wrong : {2, -1, INT32_MIN}) {
        EXPECT_EQ(devapi_set_greenaccess_enable(wrong), -1);
        EXPECT_EQ(devapi_set_protect_enable(wrong, 1), -1);
    }
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(devapi_get_greennet_enable(enable), 0);
    EXPECT_STREQ(enable, "1");
}

TEST_F(GreenNetTest, ANumberWithoutAnEntryIsRefused)
{
    EXPECT_EQ(count(), 2);
    for (const char *number : {"0", "3", "64", "65", "-1", "", "1 ", "NULL", "99999999999"}) {
        GreenHostInfo info = {};
        set(info.HostIndex, number);
        EXPECT_EQ(devapi_get_green_net_info(&info), -1);
        EXPECT_STREQ(info.Mac, "");
        EXPECT_EQ(devapi_set_green_net_notify(&info), -1);
    }
}

TEST_F(GreenNetTest, AnEntryIsFoundByItsMacInEveryForm)
{
    EXPECT_EQ(number_of(kTabletMac), 1);
    EXPECT_EQ(number_of("72-9b-e0-46-d8-15"), 1);
    EXPECT_EQ(number_of("729Be046d815"), 1);
    EXPECT_EQ(number_of("70f0882ca693"), 2);
    EXPECT_EQ(number_of("DA:41:7C:0E:92:B3"), 0); // a device without an entry
    for (const std::string &mac : kNoMacs) {
        int32_t number = 77;
        EXPECT_LT(devapi_get_greennet_index_by_mac(mac.c_str(), &number), 0) << mac;
        EXPECT_THAT(reason(), HasSubstr(" is not a MAC address")) << mac;
        EXPECT_EQ(number, 77);
    }
    const std::string endless(100'000, '7');
    int32_t number = 0;
    EXPECT_LT(devapi_get_greennet_index_by_mac(endless.c_str(), &number), 0);
}

TEST_F(GreenNetTest, AnEntryIsAddedAndKept)
{
    EXPECT_EQ(add("da417c0e92b3"), 3);
    EXPECT_STREQ(entry(3).Mac, "DA:41:7C:0E:92:B3");
    EXPECT_STREQ(entry(3).Name, "NULL");
    EXPECT_STREQ(entry(3).NotifyEnable, "0");
    EXPECT_STREQ(entry(3).ProtectEnable, "0");
    EXPECT_EQ(periods(3), 0);
    EXPECT_EQ(set_entry(3, "DA-41-7C-0E-92-B3", "Anna", "1"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(count(), 3);
    EXPECT_STREQ(entry(3).Mac, "DA:41:7C:0E:92:B3");
    EXPECT_STREQ(entry(3).Name, "Anna");
    EXPECT_STREQ(entry(3).NotifyEnable, "1");
    EXPECT_EQ(set_entry(3, "DA:41:7C:0E:92:B3", "NULL", "0"), 0);
    EXPECT_STREQ(entry(3).Name, "NULL");
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(count(), 2);
}

TEST_F(GreenNetTest, AnUnknownDeviceMayHaveAnEntry)
{
    EXPECT_EQ(add("02:00:00:00:00:01"), 3);
    EXPECT_EQ(devapi_set_protect_enable(1, 3), 0);
    EXPECT_EQ(resources(), "11 2"); // of the attached devices
}

TEST_F(GreenNetTest, AnInvalidEntryIsRefused)
{
    const std::string before = read(path("state"));
    for (const std::string &mac : kNoMacs) {
        EXPECT_EQ(add(mac), 0) << mac;
        EXPECT_EQ(set_entry(1, mac, "Jonas", "1"), -1) << mac;
    }
    EXPECT_EQ(add("729be046d815"), 0);
    EXPECT_EQ(reason(), "there is an entry for 72:9B:E0:46:D8:15 already");
    EXPECT_EQ(reason(set_entry(1, kConsoleMac, "Jonas", "1")),
              "/home/green_net/hosts/1/mac: 70:F0:88:2C:A6:93 belongs to "
              "/home/green_net/hosts/0/mac");
    EXPECT_EQ(reason(set_entry(3, kConsoleMac, "x", "1")), "there is no entry 3");
    EXPECT_EQ(reason(set_entry(1, kTabletMac, "a\tb", "1")),
              "Name contains control characters or is not UTF-8");
    EXPECT_EQ(reason(set_entry(1, kTabletMac, "Jonas", "yes")),
              "NotifyEnable \"yes\" is none of \"0\", \"1\"");
    GreenHostInfo filled = entry(1);
    fill_completely(filled.Name, 'n');
    EXPECT_EQ(reason(devapi_set_green_net_info(&filled)), "Name is longer than 63 bytes");
    fill_completely(filled.Mac, 'A');
    EXPECT_EQ(devapi_set_green_net_info(&filled), -1);
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(GreenNetTest, ANameCutWithinACharacterDropsThePartialCharacter)
{
    EXPECT_EQ(set_entry(1, kTabletMac, std::string(63, 'n'), "1"), 0);
    EXPECT_EQ(entry(1).Name, std::string(63, 'n'));
    EXPECT_EQ(set_entry(1, kTabletMac, std::string(62, 'n') + "ü", "1"), 0);
    EXPECT_EQ(entry(1).Name, std::string(62, 'n'));
    EXPECT_EQ(set_entry(1, kTabletMac, std::string(61, 'n') + "🏠", "1"), 0);
    EXPECT_EQ(entry(1).Name, std::string(61, 'n'));
}

TEST_F(GreenNetTest, NoticesAreSwitchedForOneEntry)
{
    GreenHostInfo info = {};
    set(info.HostIndex, "2");
    set(info.NotifyEnable, "1");
    EXPECT_EQ(devapi_set_green_net_notify(&info), 0);
    EXPECT_STREQ(entry(2).NotifyEnable, "1");
    EXPECT_STREQ(entry(2).Mac, kConsoleMac); // which the record did not give
    EXPECT_STREQ(entry(2).Name, "Console");
    set(info.NotifyEnable, "");
    EXPECT_EQ(devapi_set_green_net_notify(&info), -1);
    EXPECT_STREQ(entry(2).NotifyEnable, "1");
}

TEST_F(GreenNetTest, TheTableTakes64)
{
    int added = 0;
    for (int number = 0; number < 300; ++number) {
        added += add(mac_of(number)) != 0 ? 1 : 0;
    }
    EXPECT_EQ(added, 62);
    EXPECT_EQ(reason(), "the table is full");
    EXPECT_EQ(count(), GREENNET_MAX_HOSTS);
    EXPECT_EQ(entry(64).Mac, mac_of(61));
    EXPECT_EQ(number_of(mac_of(62)), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(count(), GREENNET_MAX_HOSTS);
    EXPECT_EQ(devapi_del_green_net_info_by_maclist((mac_of(61) + ",").c_str()), 0);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(number_of(mac_of(61)), 64); // the number stays
    EXPECT_EQ(add(mac_of(1)), 1);
}

TEST_F(GreenNetTest, AListKeepsTheEntriesThatItNames)
{
    EXPECT_EQ(add(mac_of(1)), 3);
    EXPECT_EQ(add(mac_of(2)), 4);
    EXPECT_EQ(devapi_del_green_net_info_by_maclist("70-f0-88-2c-a6-93,02:00:00:00:00:02,"), 0);
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(number_of(kTabletMac), 0);
    EXPECT_EQ(number_of(kConsoleMac), 2);
    EXPECT_EQ(number_of(mac_of(2)), 4);
    EXPECT_EQ(periods(2), 2);
    EXPECT_EQ(add(mac_of(9)), 1); // into the first gap
    EXPECT_EQ(add(mac_of(10)), 3);
    ASSERT_EQ(open_when(kTime), "");
    // With a number that does not exist, and without the final comma.
    EXPECT_EQ(devapi_del_green_net_info_by_maclist("020000000063,02000000000A"), 0);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(number_of(mac_of(10)), 3);
}

TEST_F(GreenNetTest, AMissingListRemovesAll)
{
    EXPECT_EQ(devapi_del_green_net_info_by_maclist(nullptr), 0);
    EXPECT_THAT(last_line(), HasSubstr("_by_maclist(list=null) = 0 in "));
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(resources(), "11 0");
    EXPECT_STREQ(host(kTablet).GreennetProtectEnable, "0");
    EXPECT_EQ(add(kTabletMac), 1);
    EXPECT_EQ(devapi_del_green_net_info_by_maclist(""), 0);
    EXPECT_EQ(count(), 0);
}

TEST_F(GreenNetTest, AnInvalidListRemovesNothing)
{
    const std::string before = read(path("state"));
    for (const char *list : {",", ",,", "72:9B:E0:46:D8:15,,", "72:9B:E0:46:D8:15,x,",
                             "72:9B:E0:46:D8:15;70:F0:88:2C:A6:93,", "72:9B:E0:46:D8:15, ", "NULL,",
                             "72:9B:E0:46:D8:1,"}) {
        EXPECT_EQ(devapi_del_green_net_info_by_maclist(list), -1) << list;
    }
    EXPECT_EQ(read(path("state")), before);
    std::string endless;
    for (int number = 0; number < 5000; ++number) {
        endless += mac_of(number) + ",";
    }
    EXPECT_EQ(devapi_del_green_net_info_by_maclist((endless + kTabletMac).c_str()), 0);
    EXPECT_EQ(count(), 1);
}

TEST_F(GreenNetTest, PeriodsAreAddedSetAndKept)
{
    EXPECT_EQ(devapi_del_all_duration(1), 0);
    EXPECT_EQ(periods(1), 0);
    EXPECT_EQ(periods(2), 2);
    int32_t at = 0;
    EXPECT_EQ(devapi_add_greennet_duration(1, &at), 0);
    EXPECT_EQ(at, 1);
    EXPECT_EQ(period(1, 1), "NULL NULL 0 NULL");
    add_period(1, "23:59", "00:00", "1", "7654321");
    EXPECT_EQ(set_period(1, 1, "00:00", "23:59", "0", "4"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(periods(1), 2);
    EXPECT_EQ(period(1, 1), "00:00 23:59 0 4");
    EXPECT_EQ(period(1, 2), "23:59 00:00 1 7654321");
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(period(1, 1), "12:30 15:00 1 12345");
}

TEST_F(GreenNetTest, ThereIsRoomFor16Periods)
{
    int32_t at = 0;
    for (int32_t expected = 3; expected <= 16; ++expected) {
        EXPECT_EQ(devapi_add_greennet_duration(1, &at), 0);
        EXPECT_EQ(at, expected);
    }
    at = 77;
    EXPECT_EQ(reason(devapi_add_greennet_duration(1, &at)), "there is no room for another period");
    EXPECT_EQ(at, 77);
    EXPECT_EQ(periods(1), 16);
}

TEST_F(GreenNetTest, AnInvalidPeriodIsRefusedAndChangesNothing)
{
    const std::string before = read(path("state"));
    const struct {
        const char *start, *end, *enable, *days, *reason;
    } refusals[] = {
        {"24:00", "07:00", "1", "1", "StartTime \"24:00\" is not a time like \"04:30\""},
        {"", "07:00", "1", "1", "StartTime \"\" is not a time like \"04:30\""},
        {"NULL", "07:00", "1", "1", "StartTime \"NULL\" is not a time like \"04:30\""},
        {"20:00", "7:00", "1", "1", "EndTime \"7:00\" is not a time like \"04:30\""},
        {"20:00", "07:00:00", "1", "1", "EndTime \"07:00:0\" is not a time like \"04:30\""},
        {"20:00", "07:00", "", "1", "Enable \"\" is none of \"0\", \"1\""},
        {"20:00", "07:00", "2", "1", "Enable \"2\" is none of \"0\", \"1\""},
        {"20:00", "07:00", "1", "", "DaysOfWeek \"\" is not a list of days like \"137\""},
        {"20:00", "07:00", "1", "0", "DaysOfWeek \"0\" is not a list of days like \"137\""},
        {"20:00", "07:00", "1", "8", "DaysOfWeek \"8\" is not a list of days like \"137\""},
        {"20:00", "07:00", "1", "11", "DaysOfWeek \"11\" is not a list of days like \"137\""},
        {"20:00", "07:00", "1", "1,2,3,4,5",
         "DaysOfWeek \"1,2,3,4\" is not a list of days like \"137\""},
        {"20:00", "20:00", "1", "1", "/home/green_net/hosts/0/periods/0: ends when it starts"},
        {"20:00", "20:00", "0", "1", "/home/green_net/hosts/0/periods/0: ends when it starts"},
    };
    for (const auto &refusal : refusals) {
        EXPECT_EQ(
            reason(set_period(1, 1, refusal.start, refusal.end, refusal.enable, refusal.days)),
            refusal.reason);
    }
    for (const int32_t at : {0, -1, 3, INT32_MAX}) {
        EXPECT_EQ(reason(set_period(1, at, "20:00", "07:00", "1", "1")),
                  "entry 1 has no period " + std::to_string(at));
        ProtectPeriodInfo info = {};
        info.HostIndex = 1;
        info.PeriodNum = at;
        EXPECT_EQ(devapi_get_protect_period_info(&info), -1);
    }
    ProtectPeriodInfo filled = {};
    filled.HostIndex = filled.PeriodNum = 1;
    fill_completely(filled.StartTime, '1');
    EXPECT_EQ(devapi_set_protect_period_info(&filled), -1);
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(GreenNetTest, WithoutAnEntryThereAreNoPeriods)
{
    for (const int32_t number : {0, -1, 3, 65, INT32_MAX}) {
        int32_t value = 77;
        EXPECT_EQ(devapi_get_duration_num_by_index(number, &value), -1);
        EXPECT_EQ(devapi_add_greennet_duration(number, &value), -1);
        EXPECT_EQ(value, 77);
        EXPECT_EQ(devapi_del_all_duration(number), -1);
        EXPECT_EQ(devapi_set_protect_enable(1, number), -1);
        EXPECT_EQ(reason(set_period(number, 1, "20:00", "07:00", "1", "1")),
                  "there is no entry " + std::to_string(number));
    }
}

} // namespace
