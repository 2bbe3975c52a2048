// SPDX-License-Identifier: MIT
// Settings and reports of the WAN connections.
#include "wan_fixture.h"

namespace {

TEST_F(WanTest, ThereAreFourConnections)
{
    WanNum info = {};
    EXPECT_EQ(devapi_get_wan_num(&info), 0);
    EXPECT_STREQ(info.NUM, "4");
    EXPECT_STREQ(info.Description, "Internet,IPTV,Management,Voice");
}

TEST_F(WanTest, ReportsEveryFieldOfTheConnectionToTheInternet)
{
    const WanInfo info = wan("Internet");
    EXPECT_STREQ(info.INDEX, "1");
    EXPECT_STREQ(info.IFNAME, "ppp0");
    EXPECT_STREQ(info.CONNECTIONSTATUS, "Connected");
    EXPECT_STREQ(info.CONNECTIONTYPE, "IP_Routed");
    EXPECT_STREQ(info.PROTOCOL, "IPv4/IPv6");
    EXPECT_STREQ(info.UPLINKMODE, "PPPoE");
    EXPECT_STREQ(info.WANName, "Internet");
    EXPECT_STREQ(info.SERVICELIST, "INTERNET");
    EXPECT_STREQ(info.ADDRESSTYPE, "PPPoE");
    EXPECT_STREQ(info.IPADDRESS, "100.72.18.203");
    EXPECT_STREQ(info.SUBNETMASK, "255.255.255.255");
    EXPECT_STREQ(info.GATEWAY, "100.72.0.1");
    EXPECT_STREQ(info.DNS1, "100.64.0.53");
    EXPECT_STREQ(info.DNS2, "100.64.1.53");
    EXPECT_STREQ(info.IPV6_CONNECTIONSTATUS, "Connected");
    EXPECT_STREQ(info.IPV6_PRIFIX, "2001:db8:4f20:a00::");
    EXPECT_STREQ(info.IPV6_PREFIXLENGTH, "56");
    EXPECT_STREQ(info.IPV6_IPADDRESS, "2001:db8:4f20::1");
    EXPECT_STREQ(info.IPV6_GATEWAY, "fe80::1");
    EXPECT_STREQ(info.IPV6_DNS1, "2001:db8:53::1");
    EXPECT_STREQ(info.IPV6_DNS2, "2001:db8:53::2");
    EXPECT_STREQ(info.PPPOE_USR_NAME, "k4471902@fibre.example");
    EXPECT_STREQ(info.PPPOE_PASSWORD, "Lh7-pq2-Vw9");
    EXPECT_STREQ(info.PPPOE_PROXY, "0");
    EXPECT_STREQ(info.PPPOE_SERVICENAME, "fibre");
    EXPECT_STREQ(info.PPPOE_DIAL_MODE, "AlwaysOn");
    EXPECT_STREQ(info.NATENABLE, "1");
    EXPECT_STREQ(info.QOSENABLE, "0");
    EXPECT_STREQ(info.VLANID, "7");
    EXPECT_STREQ(info.VLANPRIORITY, "0");
}

TEST_F(WanTest, ABridgeHasNoAddresses)
{
    const WanInfo info = wan("IPTV");
    EXPECT_STREQ(info.INDEX, "2");
    EXPECT_STREQ(info.CONNECTIONSTATUS, "Connected");
    EXPECT_STREQ(info.CONNECTIONTYPE, "IP_Bridged");
    EXPECT_STREQ(info.UPLINKMODE, "Bridge");
    EXPECT_STREQ(info.SERVICELIST, "IPTV");
    EXPECT_STREQ(info.VLANID, "8");
    EXPECT_STREQ(info.VLANPRIORITY, "4");
    for (const char *text :
         {info.PROTOCOL, info.ADDRESSTYPE, info.IPADDRESS, info.SUBNETMASK, info.GATEWAY, info.DNS1,
          info.DNS2, info.IPV6_PRIFIX, info.IPV6_PREFIXLENGTH, info.IPV6_IPADDRESS,
          info.IPV6_GATEWAY, info.IPV6_DNS1, info.IPV6_DNS2, info.PPPOE_USR_NAME,
          info.PPPOE_PASSWORD, info.PPPOE_SERVICENAME, info.PPPOE_DIAL_MODE}) {
        EXPECT_STREQ(text, "NULL");
    }
    EXPECT_STREQ(info.IPV6_CONNECTIONSTATUS, "Disconnected");
    EXPECT_STREQ(info.NATENABLE, "0");
}

TEST_F(WanTest, TheOthersAreOfEveryType)
{
    const WanInfo management = wan("Management");
    EXPECT_STREQ(management.SERVICELIST, "TR069");
    EXPECT_STREQ(management.ADDRESSTYPE, "DHCP");
    EXPECT_STREQ(management.PROTOCOL, "IPv4");
    EXPECT_STREQ(management.DNS2, "NULL");
    const WanInfo voice = wan("Voice");
    EXPECT_STREQ(voice.INDEX, "4");
    EXPECT_STREQ(voice.SERVICELIST, "VOIP");
    EXPECT_STREQ(voice.ADDRESSTYPE, "Static");
    EXPECT_STREQ(voice.IPADDRESS, "172.24.9.18");
    EXPECT_STREQ(voice.QOSENABLE, "1");
}

TEST_F(WanTest, TheFirstIsTheWanOfTheOtherFunctions)
{
    WanIpInfo addresses = {};
    EXPECT_EQ(devapi_get_wan_ip_info(&addresses), 0);
    EXPECT_STREQ(addresses.ip, wan("Internet").IPADDRESS);
    EXPECT_STREQ(addresses.WanGateWay, wan("Internet").GATEWAY);
    EXPECT_STREQ(addresses.ConnectionState, wan("Internet").CONNECTIONSTATUS);

    PppoeSetting setting = {};
    set(setting.info.Account, "smith");
    set(setting.info.Password, "s3cret");
    set(setting.info.Enable, "1");
    EXPECT_EQ(devapi_set_hg_pppoe_info(&setting), 0);
    EXPECT_STREQ(wan("Internet").PPPOE_USR_NAME, "smith");
    EXPECT_STREQ(wan("Internet").PPPOE_PASSWORD, "s3cret");
    set(setting.info.Enable, "0");
    EXPECT_EQ(devapi_set_hg_pppoe_info(&setting), 0);
    EXPECT_STREQ(wan("Internet").ADDRESSTYPE, "DHCP");
    EXPECT_STREQ(wan("Internet").PPPOE_DIAL_MODE, "NULL");
}

TEST_F(WanTest, WhatIsSetIsReportedByAllFunctions)
{
    EXPECT_EQ(set_wan({{"PPPOE_USR_NAME", "smith"}, {"PPPOE_PASSWORD", "s3cret"}}), 0);
    PppoeInfo account = {};
    EXPECT_EQ(devapi_get_hg_pppoe_info(&account), 0);
    EXPECT_STREQ(account.Account, "smith");
    EXPECT_STREQ(account.Password, "s3cret");
    EXPECT_STREQ(account.Enable, "1");

    EXPECT_EQ(set_wan({{"ADDRESSTYPE", "Static"},
                       {"IPADDRESS", "203.0.113.20"},
                       {"SUBNETMASK", "255.255.255.0"},
                       {"GATEWAY", "203.0.113.1"},
                       {"DNS1", "203.0.113.53"},
                       {"DNS2", "NULL"}}),
              0);
    HgBaseInfo base = {};
    EXPECT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_STREQ(base.WanLinkMode, "Static");
    EXPECT_STREQ(base.AddressType, "Static");
    WanIpInfo addresses = {};
    EXPECT_EQ(devapi_get_wan_ip_info(&addresses), 0);
    EXPECT_STREQ(addresses.ip, "203.0.113.20");
    EXPECT_STREQ(addresses.Dns, "203.0.113.53");
    EXPECT_EQ(devapi_get_hg_pppoe_info(&account), 0);
    EXPECT_STREQ(account.Enable, "0");
}

TEST_F(WanTest, EveryFieldThatCanBeSetIsKept)
{
    const Fields fields = {
        {"SERVICELIST", "VOIP,OTHER"},
        {"ADDRESSTYPE", "Static"},
        {"IPADDRESS", "172.30.0.9"},
        {"SUBNETMASK", "255.255.0.0"},
        {"GATEWAY", "172.30.0.1"},
        {"DNS1", "172.30.0.53"},
        {"DNS2", "172.30.1.53"},
        {"IPV6_IPADDRESS", "2001:db8:9::7"},
        {"IPV6_PREFIXLENGTH", "60"},
        {"IPV6_GATEWAY", "fe80::9"},
        {"IPV6_DNS1", "2001:db8:9::53"},
        {"IPV6_DNS2", "2001:db8:9::54"},
        {"IPV6_PRIFIX", "2001:db8:9:10::"},
        {"PPPOE_USR_NAME", std::string(63, 'u')},
        {"PPPOE_PASSWORD", std::string(63, 'p')},
        {"NATENABLE", "1"},
        {"QOSENABLE", "0"},
        {"VLANID", "4094"},
        {"VLANPRIORITY", "7"},
    };
    EXPECT_EQ(set_wan(fields, "Voice"), 0) << reason();
    ASSERT_EQ(open_after(0), "");
    EXPECT_EQ(with_names(wan("Voice"), fields), fields);
    EXPECT_STREQ(wan("Voice").PROTOCOL, "IPv4/IPv6");
    EXPECT_STREQ(wan("Voice").IPV6_CONNECTIONSTATUS, "Connected");
    EXPECT_STREQ(wan("Internet").SERVICELIST, "INTERNET");
}

TEST_F(WanTest, AnEmptyFieldLeavesTheSettingUnchanged)
{
    const std::string before = read(path("state"));
    for (const char *name : {"Internet", "IPTV", "Management", "Voice"}) {
        EXPECT_EQ(set_wan({}, name), 0);
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, WhatWasReadCanBeWrittenBack)
{
    const std::string before = read(path("state"));
    for (const char *name : {"Internet", "IPTV", "Management", "Voice"}) {
        const WanInfo info = wan(name);
        EXPECT_EQ(devapi_set_route_wan_info(&info), 0) << reason();
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, NullRemovesAValue)
{
    EXPECT_EQ(set_wan({{"VLANID", "NULL"}, {"DNS2", "NULL"}, {"IPV6_IPADDRESS", "NULL"}}), 0);
    EXPECT_STREQ(wan("Internet").VLANID, "NULL");
    EXPECT_STREQ(wan("Internet").VLANPRIORITY, "NULL");
    EXPECT_STREQ(wan("Internet").DNS2, "NULL");
    EXPECT_STREQ(wan("Internet").PROTOCOL, "IPv4");
    EXPECT_STREQ(wan("Internet").IPV6_CONNECTIONSTATUS, "Disconnected");
    EXPECT_EQ(set_wan({{"VLANID", "NULL"}}, "Voice"), 0);
    EXPECT_EQ(set_wan({{"VLANID", "9"}}, "Voice"), 0);
    EXPECT_STREQ(wan("Voice").VLANPRIORITY, "0"); // gone with the VLAN that had it
}

TEST_F(WanTest, OnlyAChangeOfTheConnectionReconnects)
{
    ASSERT_EQ(open_after(1000), "");
    EXPECT_EQ(set_wan({{"QOSENABLE", "1"}, {"NATENABLE", "0"}, {"SERVICELIST", "INTERNET,OTHER"}}),
              0);
    EXPECT_EQ(set_wan({{"VLANID", "9"}}, "Voice"), 0);
    EXPECT_EQ(wan_uptime(), "1000");
    EXPECT_EQ(set_wan({{"VLANID", "9"}}), 0);
    EXPECT_EQ(wan_uptime(), "0");
}

TEST_F(WanTest, ANewConnectionEndsAFault)
{
    nlohmann::json home = house();
    home["wan"]["connected"] = home["other_wans"][0]["connected"] =
        home["other_wans"][1]["connected"] = false;
    home["wan"]["fault"] = "AUTH_FAILED";
    home["other_wans"][0]["fault"] = "LINK_DOWN";
    home["other_wans"][1]["fault"] = "DNS_FAILED";
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(set_wan({{"PPPOE_PASSWORD", "right"}}), 0);
    EXPECT_STREQ(wan("Internet").CONNECTIONSTATUS, "Connected");
    EXPECT_EQ(set_wan({{"VLANID", "99"}}, "IPTV"), 0);
    EXPECT_STREQ(wan("IPTV").CONNECTIONSTATUS, "Disconnected");
    EXPECT_EQ(set_wan({{"DNS1", "10.64.0.54"}}, "Management"), 0);
    EXPECT_STREQ(wan("Management").CONNECTIONSTATUS, "Connected");
    EXPECT_STREQ(wan("Management").DNS1, "10.64.0.54");
}

TEST_F(WanTest, WithoutAConnectionOnlyStaticAddressesAreReported)
{
    nlohmann::json home = house();
    home["wan"]["connected"] = home["other_wans"][2]["connected"] = false;
    home["wan"]["fault"] = home["other_wans"][2]["fault"] = "LINK_DOWN";
    ASSERT_EQ(open_home(home), "");
    const WanInfo info = wan("Internet");
    EXPECT_STREQ(info.CONNECTIONSTATUS, "Disconnected");
    EXPECT_STREQ(info.IPV6_CONNECTIONSTATUS, "Disconnected");
    for (const char *text : {info.IPADDRESS, info.SUBNETMASK, info.GATEWAY, info.DNS1, info.DNS2,
                             info.IPV6_PRIFIX, info.IPV6_PREFIXLENGTH, info.IPV6_IPADDRESS,
                             info.IPV6_GATEWAY, info.IPV6_DNS1, info.IPV6_DNS2}) {
        EXPECT_STREQ(text, "NULL");
    }
    EXPECT_STREQ(info.PPPOE_USR_NAME, "k4471902@fibre.example");
    EXPECT_STREQ(wan("Voice").IPADDRESS, "172.24.9.18");
    EXPECT_STREQ(wan("Voice").CONNECTIONSTATUS, "Disconnected");

    const std::string before = read(path("state"));
    EXPECT_EQ(devapi_set_route_wan_info(&info), 0)
        << reason(); // values that were read remove nothing
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, FactoryRecoveryRestoresTheConnections)
{
    EXPECT_EQ(set_wan({{"ADDRESSTYPE", "DHCP"}, {"VLANID", "77"}}), 0);
    EXPECT_EQ(set_wan({{"VLANID", "78"}}, "IPTV"), 0);
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_STREQ(wan("Internet").ADDRESSTYPE, "PPPoE");
    EXPECT_STREQ(wan("Internet").VLANID, "7");
    EXPECT_STREQ(wan("IPTV").VLANID, "8");
}

} // namespace
