// SPDX-License-Identifier: MIT
// Which attached devices may access the Internet, and the firewall of the home.
#include "hosts_fixture.h"

namespace {

TEST_F(HostsTest, RightAndAccessEnableAreTheSameSetting)
{
    EXPECT_EQ(right(1), "ALLOW");
    EXPECT_EQ(set_right("A4:BB:6D:31:07:5E", "DENY"), 0);
    EXPECT_EQ(right(1), "DENY");
    EXPECT_STREQ(host(1).AccessEnable, "0");
    EXPECT_EQ(with(&AdBaseInfo::AccessEnable, "1"), "");
    EXPECT_EQ(right(1), "ALLOW");
    EXPECT_EQ(with(&AdBaseInfo::AccessEnable, "0"), "");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(right(1), "DENY");
    EXPECT_EQ(right(2), "ALLOW");
    for (const char *wrong : {"", "0", "1", "deny", "NULL"}) {
        EXPECT_EQ(reason(set_right("A4:BB:6D:31:07:5E", wrong)),
                  "InternetAccessRight \"" + std::string(wrong) +
                      "\" is none of \"ALLOW\", \"DENY\"");
    }
    EXPECT_EQ(right(1), "DENY");
    AttachDeviceRight info = {};
    info.HostIndex = 1;
    EXPECT_EQ(devapi_get_attach_device_right(&info), 0);
    EXPECT_STREQ(info.MAC, "A4:BB:6D:31:07:5E");
    EXPECT_STREQ(info.name, "workshop-pc");
}

TEST_F(HostsTest, TheFirewallIsSwitched)
{
    const auto switched = [](const char *enable) {
        return set_by(devapi_set_firewall_switch, {{"Enable", enable}});
    };
    EXPECT_STREQ(base().FireWallEnable, "1");
    EXPECT_EQ(switched("0"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_STREQ(base().FireWallEnable, "0");
    const WifiInspectInfo inspection = reported_by(devapi_inspect_hg_wifi);
    EXPECT_STREQ(inspection.FireWallEnable, "0");
    for (const char *wrong : {"", "2", "01", "on", "111111111111111"}) {
        EXPECT_EQ(reason(switched(wrong)),
                  "Enable \"" + std::string(wrong) + "\" is none of \"0\", \"1\"");
    }
    FirewallSwitch filled = {};
    fill_completely(filled.Enable, '1');
    EXPECT_EQ(devapi_set_firewall_switch(&filled), -1);
    EXPECT_STREQ(base().FireWallEnable, "0");
    EXPECT_EQ(switched("1"), 0);
    EXPECT_STREQ(base().FireWallEnable, "1");
}

} // namespace
