// SPDX-License-Identifier: MIT
// The attached devices: what is reported of them, and what a user sets.
#include "hosts_fixture.h"

namespace {

TEST_F(HostsTest, AllHostsAreListed)
{
    EXPECT_EQ(reported_by(devapi_get_host_num), kHosts);
    for (const int32_t index : {0, -1, kHosts + 1, INT32_MAX, INT32_MIN}) {
        AdBaseInfo info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_ad_base_info(&info), 1000);
        EXPECT_STREQ(info.Mac, "");
        AttachDeviceRight right = {};
        right.HostIndex = index;
        EXPECT_EQ(reason(devapi_get_attach_device_right(&right)),
                  "there is no device " + std::to_string(index));
    }
}

TEST_F(HostsTest, AHostByRadioHasARadioLink)
{
    const AdBaseInfo info = host(kAnnasPhone);
    EXPECT_STREQ(info.AccessCode, "1");
    EXPECT_STREQ(info.SSIDIndex, "5");
    EXPECT_STREQ(info.LinkStatus, "1");
    const AdBaseInfo wired = host(7);
    EXPECT_STREQ(wired.AccessCode, "0");
    EXPECT_STREQ(wired.SSIDIndex, "NULL");
    EXPECT_STREQ(wired.Dbm, "NULL");
    const AdBaseInfo offline = host(kOmasPhone);
    EXPECT_STREQ(offline.LinkStatus, "0");
    EXPECT_STREQ(offline.AccessTime, "NULL");
    EXPECT_STREQ(offline.ip, "NULL");
    EXPECT_STREQ(offline.SSIDIndex, "2");
}

TEST_F(HostsTest, WithTypeOneOnlyTheDevicesOfTheMainRouterAreListed)
{
    std::string own;
    for (int32_t index = 1; index <= kHosts; ++index) {
        AdBaseInfo info = {};
        info.Kind = 1;
        info.HostIndex = index;
        const int32_t result = devapi_get_ad_base_info(&info);
        EXPECT_EQ(result, info.Mac[0] != '\0' ? 0 : 1000);
        own += result == 0 ? std::to_string(index) + " " : "";
    }
    EXPECT_EQ(own, "1 2 3 4 5 6 12 ");
}

TEST_F(HostsTest, ASettingIsReportedAndKept)
{
    const Fields fields = {{"Mac", "DA:41:7C:0E:92:B3"}, {"DevType", "Tablet"},
                           {"ByName", "Annas Gerät"},    {"AccessEnable", "0"},
                           {"DownLimit", "512"},         {"StaticDhcpEnable", "1"},
                           {"ip", "192.168.1.50"}};
    EXPECT_EQ(applied(record_with<AdBaseSetting>(fields)), "");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(like(fields, host(kAnnasPhone)), fields);
    EXPECT_STREQ(host(kAnnasPhone).Name, "Annas-Phone");
    EXPECT_STREQ(host(kAnnasPhone).SpeedLimit, "1");

    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_STREQ(host(kAnnasPhone).DevType, "Phone");
    EXPECT_STREQ(host(kAnnasPhone).ip, "192.168.1.110");
}

TEST_F(HostsTest, WhatWasReadCanBeWrittenBack)
{
    const std::string before = read(path("state"));
    for (int32_t index = 1; index <= kHosts; ++index) {
        EXPECT_EQ(applied(setting_of(index)), "");
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(HostsTest, AMacAddressIsAcceptedInEveryForm)
{
    for (const char *mac :
         {"729be046d815", "729BE046D815", "72-9b-e0-46-d8-15", "72:9b:E0:46:d8:15", kTabletMac}) {
        EXPECT_EQ(with(&AdBaseInfo::ByName, mac, kTablet), "");
        AdBaseSetting setting = setting_of(kTablet);
        set(setting.info.Mac, mac);
        set(setting.info.ByName, "a");
        EXPECT_EQ(applied(setting), "");
        EXPECT_STREQ(host(kTablet).ByName, "a");
        EXPECT_EQ(set_right(mac, "DENY"), 0);
        EXPECT_EQ(right(kTablet), "DENY");
        EXPECT_EQ(set_right(mac, "ALLOW"), 0);
    }
}

TEST_F(HostsTest, AnInvalidOrUnknownMacAddressIsRefused)
{
    const std::string before = read(path("state"));
    for (const std::string &mac : kNoMacs) {
        EXPECT_EQ(with(&AdBaseInfo::Mac, mac, kTablet).substr(0, 4), "MAC ") << mac;
        EXPECT_THAT(reason(), HasSubstr(" is not a MAC address")) << mac;
        EXPECT_EQ(set_right(mac, "DENY"), -1);
        EXPECT_THAT(reason(), HasSubstr(" is not a MAC address")) << mac;
    }
    EXPECT_EQ(with(&AdBaseInfo::Mac, "00:00:00:00:00:01"), "there is no device 00:00:00:00:00:01");
    // A router of the home is not an attached device.
    EXPECT_EQ(reason(set_right("3C:6A:D2:10:4F:20", "DENY")),
              "there is no device 3C:6A:D2:10:4F:20");
    AdBaseSetting setting = setting_of(1);
    fill_completely(setting.info.Mac, 'A');
    EXPECT_EQ(devapi_set_ad_base_info(&setting), -1);
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(HostsTest, AnEmptyAliasOrNullRemovesTheAlias)
{
    for (const char *none : {"", "NULL"}) {
        EXPECT_EQ(with(&AdBaseInfo::ByName, "x", kAnnasPhone), "");
        EXPECT_STREQ(host(kAnnasPhone).ByName, "x");
        EXPECT_EQ(with(&AdBaseInfo::ByName, none, kAnnasPhone), "");
        EXPECT_STREQ(host(kAnnasPhone).ByName, "NULL");
    }
    EXPECT_FALSE(
        json_of(path("state")).at("home").at("hosts").at(kAnnasPhone - 1).contains("alias"));
}

TEST_F(HostsTest, AnAliasCutWithinACharacterDropsThePartialCharacter)
{
    EXPECT_EQ(with(&AdBaseInfo::ByName, std::string(31, 'n')), "");
    EXPECT_EQ(host(1).ByName, std::string(31, 'n'));
    EXPECT_EQ(with(&AdBaseInfo::ByName, std::string(30, 'n') + "ü"), "");
    EXPECT_EQ(host(1).ByName, std::string(30, 'n'));
    EXPECT_EQ(with(&AdBaseInfo::ByName, std::string(63, 'm') + "ü"), "");
    EXPECT_EQ(host(1).ByName, std::string(31, 'm'));
}

TEST_F(HostsTest, AnInvalidSettingIsRefusedWithAReason)
{
    const std::string before = read(path("state"));
    EXPECT_EQ(with(&AdBaseInfo::DevType, "phone"),
              "DevType \"phone\" is none of \"Computer\", \"Phone\", \"Tablet\", \"TV\",");
    EXPECT_EQ(with(&AdBaseInfo::DevType, "").substr(0, 21), "DevType \"\" is none of");
    EXPECT_EQ(with(&AdBaseInfo::ByName, "a\nb"),
              "ByName contains control characters or is not UTF-8");
    EXPECT_EQ(with(&AdBaseInfo::ByName, "a\xff"
                                        "b"),
              "ByName contains control characters or is not UTF-8");
    for (const char *enable : {"", "2", "-1", "on", "1 "}) {
        EXPECT_EQ(with(&AdBaseInfo::AccessEnable, enable),
                  "AccessEnable \"" + std::string(enable) + "\" is none of \"0\", \"1\"");
    }
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, ""), "DownLimit is not a number");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "fast"), "DownLimit is not a number");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "1.5"), "DownLimit is not a number");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "-2"), "DownLimit -2 is not within 1 to 10000000");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "10000001"),
              "DownLimit 10000001 is not within 1 to 10000000");
    EXPECT_EQ(with(&AdBaseInfo::StaticDhcpEnable, "2"),
              "StaticDhcpEnable \"2\" is none of \"0\", \"1\"");
    EXPECT_EQ(with(&AdBaseInfo::StaticDhcpEnable, ""),
              "StaticDhcpEnable \"\" is none of \"0\", \"1\"");
    AdBaseSetting setting = setting_of(1);
    fill_completely(setting.info.ByName, 'n');
    EXPECT_EQ(applied(setting), "ByName is longer than 31 bytes");
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(HostsTest, AnAddressIsBoundAndStaysWhenItIsFreed)
{
    EXPECT_EQ(bind("192.168.1.77"), "");
    EXPECT_STREQ(host(1).ip, "192.168.1.77");
    EXPECT_STREQ(host(1).StaticDhcpEnable, "1");
    EXPECT_EQ(bind("192.168.1.77"), ""); // its own
    EXPECT_EQ(with(&AdBaseInfo::ByName, "x"), "");
    EXPECT_STREQ(host(1).StaticDhcpEnable, "1"); // "-1" leaves it unchanged
    EXPECT_EQ(with(&AdBaseInfo::StaticDhcpEnable, "0"), "");
    EXPECT_STREQ(host(1).StaticDhcpEnable, "0");
    EXPECT_STREQ(host(1).ip, "192.168.1.77");
    EXPECT_EQ(bind("192.168.1.60", kOmasPhone), ""); // also of one that is offline
    EXPECT_STREQ(host(kOmasPhone).ip, "192.168.1.60");
}

TEST_F(HostsTest, AnAddressThatCannotBeBoundIsRefusedWithAReason)
{
    EXPECT_EQ(bind("192.168.1.60", kOmasPhone), "");
    const std::string before = read(path("state"));
    const struct {
        const char *ip, *reason;
    } refusals[] = {
        {"", "ip is not an IPv4 address"},
        {"NULL", "ip is not an IPv4 address"},
        {"192.168.1", "ip is not an IPv4 address"},
        {"192.168.1.300", "ip is not an IPv4 address"},
        {"fe80::1", "ip is not an IPv4 address"},
        {"192.168.2.7", "ip is not a LAN address"},
        {"192.168.1.0", "ip is not a LAN address"},
        {"192.168.1.255", "ip is not a LAN address"},
        {"192.168.1.1", "ip is the address of the gateway"},
        {"192.168.1.2", "ip belongs to First floor"},
        {"192.168.1.102", "ip belongs to living-room-tv"},
        {"192.168.1.60", "ip belongs to Omas-Phone"},
    };
    for (const auto &refusal : refusals) {
        EXPECT_EQ(bind(refusal.ip), refusal.reason);
    }
    AdBaseSetting setting = setting_of(1);
    set(setting.info.StaticDhcpEnable, "1");
    fill_completely(setting.info.ip, '1');
    EXPECT_EQ(applied(setting), "ip is not an IPv4 address");
    EXPECT_EQ(read(path("state")), before);
}

} // namespace
