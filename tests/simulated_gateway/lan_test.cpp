// SPDX-License-Identifier: MIT
// The address plan of the LAN, and its DHCP server.
#include "gateway_fixture.h"

#include <set>

namespace {

class LanTest : public HouseTest {
  protected:
    static std::string lan()
    {
        const LanIpInfo info = reported_by(devapi_get_lan_ip_info);
        return std::string(info.GatewayLanIP) + " " + info.SubnetMask + " " + info.StartIp + " " +
               info.EndIp;
    }
    // Empty on success, else the reason.
    static std::string set_lan(const std::string &ip, const std::string &mask,
                               const std::string &start, const std::string &end)
    {
        return set_lan(
            {{"GatewayLanIP", ip}, {"SubnetMask", mask}, {"StartIp", start}, {"EndIp", end}});
    }
    static std::string set_lan(const Fields &fields)
    {
        return fail_reason(devapi_set_lan_ip_info, record_with<LanIpSetting>(fields));
    }

    static DhcpInfo dhcp() { return reported_by(devapi_get_hg_dhcp_info); }
    static std::string set_dhcp(const std::string &enable)
    {
        return fail_reason(devapi_set_hg_dhcp_info, record_with<DhcpSetting>({{"Enable", enable}}));
    }

    // The address of a host or a child router in the state file.
    nlohmann::json ip_of_host(size_t at) const { return saved_home().at("hosts").at(at)["ip"]; }
    nlohmann::json saved_home() const { return json_of(path("state")).at("home"); }
};

TEST_F(LanTest, AnAddressPlanIsReportedAndKept)
{
    EXPECT_EQ(set_lan("10.1.2.254", "255.255.255.0", "10.1.2.10", "10.1.2.99"), "");
    EXPECT_EQ(lan(), "10.1.2.254 255.255.255.0 10.1.2.10 10.1.2.99");
    EXPECT_STREQ(base().ip, "10.1.2.254");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(lan(), "10.1.2.254 255.255.255.0 10.1.2.10 10.1.2.99");
    EXPECT_STREQ(dhcp().Enable, "1");
    EXPECT_STREQ(dhcp().IPAddress, "10.1.2.254");
    EXPECT_STREQ(dhcp().SubNetMask, "255.255.255.0");
    EXPECT_STREQ(dhcp().GateWay, "10.1.2.254");
}

TEST_F(LanTest, AMoveRenumbersHostsAndChildRouters)
{
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
    EXPECT_EQ(set_lan("192.168.0.1", "255.255.0.0", "192.168.7.1", "192.168.7.9"), "");
    EXPECT_EQ(ip_of_host(0), "192.168.1.101");
}

TEST_F(LanTest, AnAddressInUseOrOutOfRangeIsReplacedFromThePool)
{
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
    EXPECT_EQ(set_lan("10.0.0.1", "255.255.255.0", "10.0.0.100", "10.0.0.249"), "");
    EXPECT_EQ(set_lan("10.0.0.1", "255.255.255.240", "10.0.0.4", "10.0.0.6"),
              "the pool is too small for the attached devices");
    EXPECT_EQ(lan(), "10.0.0.1 255.255.255.0 10.0.0.100 10.0.0.249");
}

TEST_F(LanTest, AnInvalidAddressPlanIsRefusedWithAReason)
{
    const Fields valid = {{"GatewayLanIP", "10.0.0.1"},
                          {"SubnetMask", "255.255.255.0"},
                          {"StartIp", "10.0.0.2"},
                          {"EndIp", "10.0.0.9"}};
    const std::pair<Fields, const char *> plans[] = {
        {{{"GatewayLanIP", ""}}, "GatewayLanIP is not an IPv4 address"},
        {{{"GatewayLanIP", "10.0.0.256"}}, "GatewayLanIP is not an IPv4 address"},
        {{{"SubnetMask", "24"}}, "SubnetMask is not an IPv4 address"},
        {{{"SubnetMask", "255.0.255.0"}}, "SubnetMask is not a LAN subnet mask"},
        {{{"SubnetMask", "0.0.0.0"}}, "SubnetMask is not a LAN subnet mask"},
        {{{"SubnetMask", "255.255.255.255"}, {"StartIp", "10.0.0.1"}, {"EndIp", "10.0.0.1"}},
         "SubnetMask is not a LAN subnet mask"},
        {{{"GatewayLanIP", "0.0.0.1"}}, "GatewayLanIP is not a host address"},
        {{{"GatewayLanIP", "127.0.0.1"}}, "GatewayLanIP is not a host address"},
        {{{"GatewayLanIP", "224.0.0.1"}}, "GatewayLanIP is not a host address"},
        {{{"GatewayLanIP", "10.0.0.0"}}, "GatewayLanIP is the address of the network"},
        {{{"GatewayLanIP", "10.0.0.255"}}, "GatewayLanIP is the broadcast address"},
        {{{"GatewayLanIP", "100.72.18.1"}, {"StartIp", "100.72.18.2"}, {"EndIp", "100.72.18.9"}},
         "the subnet contains the address of the WAN"},
        {{{"GatewayLanIP", "172.24.9.1"}, {"StartIp", "172.24.9.2"}, {"EndIp", "172.24.9.9"}},
         "the subnet contains the address of the WAN"},
        {{{"StartIp", "x"}}, "StartIp is not an IPv4 address"},
        {{{"EndIp", ""}}, "EndIp is not an IPv4 address"},
        {{{"StartIp", "10.0.1.2"}}, "StartIp is outside the subnet"},
        {{{"StartIp", "10.0.0.0"}}, "StartIp is outside the subnet"},
        {{{"EndIp", "10.0.1.9"}}, "EndIp is outside the subnet"},
        {{{"EndIp", "10.0.0.255"}}, "EndIp is outside the subnet"},
        {{{"StartIp", "10.0.0.9"}, {"EndIp", "10.0.0.8"}}, "EndIp is before StartIp"},
        {{{"GatewayLanIP", "10.0.0.5"}, {"StartIp", "10.0.0.5"}},
         "the pool from StartIp to EndIp contains GatewayLanIP"},
        {{{"GatewayLanIP", "10.0.0.5"}, {"EndIp", "10.0.0.5"}},
         "the pool from StartIp to EndIp contains GatewayLanIP"},
    };
    const std::string before = read(path("state"));
    for (auto [plan, why] : plans) {
        plan.insert(valid.begin(), valid.end());
        EXPECT_EQ(set_lan(plan), why);
        EXPECT_EQ(reason(), why);
    }
    auto overfull = record_with<LanIpSetting>(valid);
    fill_completely(overfull.info.EndIp, '1');
    EXPECT_EQ(fail_reason(devapi_set_lan_ip_info, overfull), "EndIp is not an IPv4 address");
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(LanTest, AChangeThatCannotBeSavedReportsTheReason)
{
    std::filesystem::create_directory(path("state.tmp"));
    EXPECT_EQ(set_dhcp("0"), (path("state.tmp") + ": Is a directory").substr(0, 63));
    EXPECT_STREQ(dhcp().Enable, "1");
}

TEST_F(LanTest, AFaultLeavesTheReasonUnchanged)
{
    ASSERT_EQ(reopen({.faults = {"devapi_set_hg_dhcp_info=-1"}}), "");
    DhcpSetting setting = {};
    set(setting.info.Enable, "2");
    EXPECT_EQ(devapi_set_hg_dhcp_info(&setting), -1);
    EXPECT_STREQ(setting.FailReason, "");
}

TEST_F(LanTest, TheDhcpServerIsSwitched)
{
    EXPECT_EQ(set_dhcp("0"), "");
    ASSERT_EQ(open_when(kTime), "");
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

} // namespace
