// SPDX-License-Identifier: MIT
// The address plan of the LAN, and its DHCP server.
#include "gateway_fixture.h"

#include <set>

namespace {

class LanTest : public GatewayTest {
  protected:
    static std::string lan()
    {
        LanIpInfo info = {};
        EXPECT_EQ(devapi_get_lan_ip_info(&info), 0);
        return std::string(info.GatewayLanIP) + " " + info.SubnetMask + " " + info.StartIp + " " +
               info.EndIp;
    }
    static LanIpSetting lan_setting(const std::string &ip, const std::string &mask,
                                    const std::string &start, const std::string &end)
    {
        LanIpSetting setting = {};
        set(setting.info.GatewayLanIP, ip);
        set(setting.info.SubnetMask, mask);
        set(setting.info.StartIp, start);
        set(setting.info.EndIp, end);
        return setting;
    }
    // Empty on success, else the reason.
    static std::string set_lan(const std::string &ip, const std::string &mask,
                               const std::string &start, const std::string &end)
    {
        LanIpSetting setting = lan_setting(ip, mask, start, end);
        const int32_t result = devapi_set_lan_ip_info(&setting);
        EXPECT_EQ(result, setting.FailReason[0] == '\0' ? 0 : -1);
        return setting.FailReason;
    }

    static DhcpInfo dhcp()
    {
        DhcpInfo info = {};
        EXPECT_EQ(devapi_get_hg_dhcp_info(&info), 0);
        return info;
    }
    static std::string set_dhcp(const std::string &enable)
    {
        DhcpSetting setting = {};
        set(setting.info.Enable, enable);
        const int32_t result = devapi_set_hg_dhcp_info(&setting);
        EXPECT_EQ(result, setting.FailReason[0] == '\0' ? 0 : -1);
        return setting.FailReason;
    }

    // The address of a host or a child router in the state file.
    nlohmann::json ip_of_host(size_t at) const { return saved_home().at("hosts").at(at)["ip"]; }
    nlohmann::json saved_home() const { return json_of(path("state")).at("home"); }
};

TEST_F(LanTest, AnAddressPlanIsReportedAndKept)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(lan(), "192.168.1.1 255.255.255.0 192.168.1.100 192.168.1.249");
    EXPECT_EQ(set_lan("10.1.2.254", "255.255.255.0", "10.1.2.10", "10.1.2.99"), "");
    EXPECT_EQ(lan(), "10.1.2.254 255.255.255.0 10.1.2.10 10.1.2.99");
    HgBaseInfo base = {};
    EXPECT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_STREQ(base.ip, "10.1.2.254");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(lan(), "10.1.2.254 255.255.255.0 10.1.2.10 10.1.2.99");
    EXPECT_STREQ(dhcp().Enable, "1");
    EXPECT_STREQ(dhcp().IPAddress, "10.1.2.254");
    EXPECT_STREQ(dhcp().SubNetMask, "255.255.255.0");
    EXPECT_STREQ(dhcp().GateWay, "10.1.2.254");
}

TEST_F(LanTest, AMoveRenumbersHostsAndChildRouters)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(set_lan("10.1.2.1", "255.255.255.0", "10.1.2.100", "10.1.2.249"), "");
    EXPECT_EQ(ip_of_host(0), "10.1.2.101");
    EXPECT_EQ(ip_of_host(6), "10.1.2.10");
    const nlohmann::json children = saved_home().at("mesh").at("child_routers");
    EXPECT_EQ(children.at(0).at("ip"), "10.1.2.2");
    EXPECT_EQ(children.at(1).at("ip"), "10.1.2.3");
    EXPECT_FALSE(saved_home().at("hosts").at(11).contains("ip"));
}

TEST_F(LanTest, AWiderSubnetKeepsTheAddresses)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(set_lan("192.168.0.1", "255.255.0.0", "192.168.7.1", "192.168.7.9"), "");
    EXPECT_EQ(ip_of_host(0), "192.168.1.101");
}

TEST_F(LanTest, AnAddressInUseOrOutOfRangeIsReplacedFromThePool)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    // The NAS has .10, which the gateway wants.
    EXPECT_EQ(set_lan("192.168.1.10", "255.255.255.0", "192.168.1.101", "192.168.1.200"), "");
    EXPECT_EQ(ip_of_host(6), "192.168.1.103");

    // Of the old addresses only those below .30 fit; the others share the pool.
    EXPECT_EQ(set_lan("10.0.0.1", "255.255.255.224", "10.0.0.4", "10.0.0.30"), "");
    std::set<std::string> addresses = {"10.0.0.1"};
    const nlohmann::json home = saved_home();
    for (const nlohmann::json &child : home.at("mesh").at("child_routers")) {
        addresses.insert(child.at("ip"));
    }
    for (const nlohmann::json &host : home.at("hosts")) {
        addresses.insert(host.value("ip", ""));
    }
    addresses.erase("");
    EXPECT_EQ(addresses.size(), 14u);
    EXPECT_EQ(home.at("hosts").at(0).at("ip"), "10.0.0.4");
}

TEST_F(LanTest, AMoveToATooSmallSubnetIsRefused)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(set_lan("10.0.0.1", "255.255.255.0", "10.0.0.100", "10.0.0.249"), "");
    EXPECT_EQ(set_lan("10.0.0.1", "255.255.255.240", "10.0.0.4", "10.0.0.6"),
              "the pool is too small for the attached devices");
    EXPECT_EQ(lan(), "10.0.0.1 255.255.255.0 10.0.0.100 10.0.0.249");
}

TEST_F(LanTest, AnInvalidAddressPlanIsRefusedWithAReason)
{
    const struct {
        const char *ip, *mask, *start, *end, *reason;
    } plans[] = {
        {"", "255.255.255.0", "10.0.0.2", "10.0.0.9", "GatewayLanIP is not an IPv4 address"},
        {"10.0.0.256", "255.255.255.0", "10.0.0.2", "10.0.0.9",
         "GatewayLanIP is not an IPv4 address"},
        {"10.0.0.1", "24", "10.0.0.2", "10.0.0.9", "SubnetMask is not an IPv4 address"},
        {"10.0.0.1", "255.0.255.0", "10.0.0.2", "10.0.0.9", "SubnetMask is not a LAN subnet mask"},
        {"10.0.0.1", "0.0.0.0", "10.0.0.2", "10.0.0.9", "SubnetMask is not a LAN subnet mask"},
        {"10.0.0.1", "255.255.255.255", "10.0.0.1", "10.0.0.1",
         "SubnetMask is not a LAN subnet mask"},
        {"0.0.0.1", "255.0.0.0", "0.0.0.2", "0.0.0.9", "GatewayLanIP is not a host address"},
        {"127.0.0.1", "255.0.0.0", "127.0.0.2", "127.0.0.9", "GatewayLanIP is not a host address"},
        {"224.0.0.1", "255.255.255.0", "224.0.0.2", "224.0.0.9",
         "GatewayLanIP is not a host address"},
        {"10.0.0.0", "255.255.255.0", "10.0.0.2", "10.0.0.9",
         "GatewayLanIP is the address of the network"},
        {"10.0.0.255", "255.255.255.0", "10.0.0.2", "10.0.0.9",
         "GatewayLanIP is the broadcast address"},
        {"100.72.18.1", "255.255.255.0", "100.72.18.2", "100.72.18.9",
         "the subnet contains the address of the WAN"},
        {"172.24.9.1", "255.255.255.0", "172.24.9.2", "172.24.9.9",
         "the subnet contains the address of the WAN"},
        {"10.0.0.1", "255.255.255.0", "x", "10.0.0.9", "StartIp is not an IPv4 address"},
        {"10.0.0.1", "255.255.255.0", "10.0.0.2", "", "EndIp is not an IPv4 address"},
        {"10.0.0.1", "255.255.255.0", "10.0.1.2", "10.0.0.9", "StartIp is outside the subnet"},
        {"10.0.0.1", "255.255.255.0", "10.0.0.0", "10.0.0.9", "StartIp is outside the subnet"},
        {"10.0.0.1", "255.255.255.0", "10.0.0.2", "10.0.1.9", "EndIp is outside the subnet"},
        {"10.0.0.1", "255.255.255.0", "10.0.0.2", "10.0.0.255", "EndIp is outside the subnet"},
        {"10.0.0.1", "255.255.255.0", "10.0.0.9", "10.0.0.8", "EndIp is before StartIp"},
        {"10.0.0.5", "255.255.255.0", "10.0.0.5", "10.0.0.9",
         "the pool from StartIp to EndIp contains GatewayLanIP"},
        {"10.0.0.5", "255.255.255.0", "10.0.0.2", "10.0.0.5",
         "the pool from StartIp to EndIp contains GatewayLanIP"},
    };
    ASSERT_EQ(open({.state_file = path("state"), .trace = path("trace")}), "");
    const std::string before = read(path("state"));
    for (const auto &plan : plans) {
        EXPECT_EQ(set_lan(plan.ip, plan.mask, plan.start, plan.end), plan.reason);
        EXPECT_EQ(reason(), plan.reason);
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(LanTest, AddressesAreReadWithinTheirFields)
{
    ASSERT_EQ(open({}), "");
    LanIpSetting setting = lan_setting("10.0.0.1", "255.255.255.0", "10.0.0.2", "10.0.0.9");
    fill_completely(setting.info.EndIp, '1');
    EXPECT_EQ(devapi_set_lan_ip_info(&setting), -1);
    EXPECT_STREQ(setting.FailReason, "EndIp is not an IPv4 address");
}

TEST_F(LanTest, AChangeThatCannotBeSavedReportsTheReason)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    std::filesystem::create_directory(path("state.tmp"));
    EXPECT_EQ(set_dhcp("0"), (path("state.tmp") + ": Is a directory").substr(0, 63));
    EXPECT_STREQ(dhcp().Enable, "1");
}

TEST_F(LanTest, AFaultLeavesTheReasonUnchanged)
{
    ASSERT_EQ(open({.faults = {"devapi_set_hg_dhcp_info=-1"}}), "");
    DhcpSetting setting = {};
    set(setting.info.Enable, "2");
    EXPECT_EQ(devapi_set_hg_dhcp_info(&setting), -1);
    EXPECT_STREQ(setting.FailReason, "");
}

TEST_F(LanTest, TheDhcpServerIsSwitched)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(set_dhcp("0"), "");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_STREQ(dhcp().Enable, "0");
    EXPECT_EQ(set_dhcp("1"), "");
    EXPECT_STREQ(dhcp().Enable, "1");
    for (const char *enable : {"", "2", "01", "true"}) {
        EXPECT_EQ(set_dhcp(enable),
                  "Enable \"" + std::string(enable) + "\" is none of \"0\", \"1\"");
    }
    DhcpSetting setting = {};
    fill_completely(setting.info.Enable, '1');
    EXPECT_EQ(devapi_set_hg_dhcp_info(&setting), -1);
    EXPECT_STREQ(dhcp().Enable, "1");
}

TEST_F(LanTest, NullRecordsAreFailedCalls)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_get_lan_ip_info(nullptr), -1);
    EXPECT_EQ(devapi_set_lan_ip_info(nullptr), -1);
    EXPECT_EQ(devapi_get_hg_dhcp_info(nullptr), -1);
    EXPECT_EQ(devapi_set_hg_dhcp_info(nullptr), -1);
}

} // namespace
