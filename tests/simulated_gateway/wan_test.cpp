// SPDX-License-Identifier: MIT
// The WAN connections: reports, settings and refusals.
#include "gateway_fixture.h"

namespace {

class WanTest : public HouseTest {
  protected:
    static WanInfo wan(const std::string &name)
    {
        return reported_by(devapi_query_wan_info, record_with<WanInfo>({{"WANName", name}}));
    }
    // The fields of a setting; the others are empty.
    static int32_t set_wan(Fields fields, const std::string &name = "Internet")
    {
        fields["WANName"] = name;
        return set_by(devapi_set_route_wan_info, fields);
    }
    // A value for every field that can be set.
    static Fields every_field()
    {
        return {
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
    }
};

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
    const WanIpInfo addresses = reported_by(devapi_get_wan_ip_info);
    EXPECT_STREQ(addresses.ip, wan("Internet").IPADDRESS);
    EXPECT_STREQ(addresses.WanGateWay, wan("Internet").GATEWAY);
    EXPECT_STREQ(addresses.ConnectionState, wan("Internet").CONNECTIONSTATUS);

    Fields account = {{"Account", "smith"}, {"Password", "s3cret"}, {"Enable", "1"}};
    EXPECT_EQ(set_by(devapi_set_hg_pppoe_info, account), 0);
    EXPECT_STREQ(wan("Internet").PPPOE_USR_NAME, "smith");
    EXPECT_STREQ(wan("Internet").PPPOE_PASSWORD, "s3cret");
    account["Enable"] = "0";
    EXPECT_EQ(set_by(devapi_set_hg_pppoe_info, account), 0);
    EXPECT_STREQ(wan("Internet").ADDRESSTYPE, "DHCP");
    EXPECT_STREQ(wan("Internet").PPPOE_DIAL_MODE, "NULL");
}

TEST_F(WanTest, WhatIsSetIsReportedByAllFunctions)
{
    EXPECT_EQ(set_wan({{"PPPOE_USR_NAME", "smith"}, {"PPPOE_PASSWORD", "s3cret"}}), 0);
    const Fields account = {{"Account", "smith"}, {"Password", "s3cret"}, {"Enable", "1"}};
    EXPECT_EQ(like(account, reported_by(devapi_get_hg_pppoe_info)), account);

    EXPECT_EQ(set_wan({{"ADDRESSTYPE", "Static"},
                       {"IPADDRESS", "203.0.113.20"},
                       {"SUBNETMASK", "255.255.255.0"},
                       {"GATEWAY", "203.0.113.1"},
                       {"DNS1", "203.0.113.53"},
                       {"DNS2", "NULL"}}),
              0);
    EXPECT_STREQ(base().WanLinkMode, "Static");
    EXPECT_STREQ(base().AddressType, "Static");
    const WanIpInfo addresses = reported_by(devapi_get_wan_ip_info);
    EXPECT_STREQ(addresses.ip, "203.0.113.20");
    EXPECT_STREQ(addresses.Dns, "203.0.113.53");
    EXPECT_STREQ(reported_by(devapi_get_hg_pppoe_info).Enable, "0");
}

TEST_F(WanTest, EveryFieldThatCanBeSetIsKept)
{
    const Fields fields = every_field();
    EXPECT_EQ(set_wan(fields, "Voice"), 0) << reason();
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(like(fields, wan("Voice")), fields);
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
    ASSERT_EQ(open_when(kTime + 1000), "");
    EXPECT_EQ(set_wan({{"QOSENABLE", "1"}, {"NATENABLE", "0"}, {"SERVICELIST", "INTERNET,OTHER"}}),
              0);
    EXPECT_EQ(set_wan({{"VLANID", "9"}}, "Voice"), 0);
    EXPECT_STREQ(base().WanUptime, "1000");
    EXPECT_EQ(set_wan({{"VLANID", "9"}}), 0);
    EXPECT_STREQ(base().WanUptime, "0");
}

TEST_F(WanTest, ANewConnectionEndsAFault)
{
    ASSERT_EQ(open_home(house({{"/wan/connected", false},
                               {"/other_wans/0/connected", false},
                               {"/other_wans/1/connected", false},
                               {"/wan/fault", "AUTH_FAILED"},
                               {"/other_wans/0/fault", "LINK_DOWN"},
                               {"/other_wans/1/fault", "DNS_FAILED"}})),
              "");
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
    ASSERT_EQ(open_kept_home(house({{"/wan/connected", false},
                                    {"/other_wans/2/connected", false},
                                    {"/wan/fault", "LINK_DOWN"},
                                    {"/other_wans/2/fault", "LINK_DOWN"}})),
              "");
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

// ---- Refusals ----------------------------------------------------------------------------------

TEST_F(WanTest, AnUnknownNameIsRefused)
{
    for (const char *name : {"", "internet", "Internet ", "NULL", "5"}) {
        EXPECT_EQ(reason(set_wan({{"VLANID", "9"}}, name)),
                  "there is no WAN connection \"" + std::string(name) + "\"");
        WanInfo info = {};
        set(info.WANName, name);
        EXPECT_EQ(devapi_query_wan_info(&info), -1);
        EXPECT_STREQ(info.INDEX, "");
    }
    WanInfo info = {};
    fill_completely(info.WANName, 'I');
    EXPECT_EQ(devapi_query_wan_info(&info), -1);
    EXPECT_EQ(devapi_set_route_wan_info(&info), -1);
}

TEST_F(WanTest, AnInvalidValueIsRefusedAndChangesNothing)
{
    const struct {
        const char *field, *value, *reason, *wan = "Internet";
    } refusals[] = {
        {"SERVICELIST", "VIDEO",
         "SERVICELIST \"VIDEO\" is none of \"INTERNET\", \"IPTV\", \"TR069\", \"VOIP\", \"OTHER\""},
        {"SERVICELIST", "INTERNET,",
         "SERVICELIST \"\" is none of \"INTERNET\", \"IPTV\", \"TR069\", \"VOIP\", \"OTHER\""},
        {"SERVICELIST", "INTERNET,VOIP,INTERNET",
         "SERVICELIST \"INTERNET,VOIP,INTERNET\" names INTERNET twice"},
        {"SERVICELIST", "NULL", "SERVICELIST is missing"},
        {"SERVICELIST", "VOIP", "/home/wan/services: do not include INTERNET"},
        {"SERVICELIST", "VOIP,INTERNET",
         "/home/other_wans/2/services: INTERNET is reserved for /wan", "Voice"},
        {"ADDRESSTYPE", "dhcp", "ADDRESSTYPE \"dhcp\" is none of \"DHCP\", \"PPPoE\", \"Static\""},
        {"ADDRESSTYPE", "NULL", "ADDRESSTYPE is missing"},
        {"ADDRESSTYPE", "Static", "/home/wan/gateway: 100.72.0.1 is outside the subnet"},
        {"IPADDRESS", "203.0.113.7", "IPADDRESS is given by the provider"},
        {"SUBNETMASK", "255.255.0.0", "SUBNETMASK is given by the provider"},
        {"GATEWAY", "NULL", "GATEWAY is given by the provider", "Management"},
        {"IPADDRESS", "172.24.9.256", "IPADDRESS \"172.24.9.256\" is not an IPv4 address", "Voice"},
        {"IPADDRESS", "172.24.9.18 ", "IPADDRESS \"172.24.9.18 \" is not an IPv4 address", "Voice"},
        {"SUBNETMASK", "255.0.255.0",
         "/home/other_wans/2/subnet_mask: 255.0.255.0 is not a subnet mask", "Voice"},
        {"SUBNETMASK", "0.0.0.0", "/home/other_wans/2/subnet_mask: 0.0.0.0 is not a subnet mask",
         "Voice"},
        {"SUBNETMASK", "24", "SUBNETMASK \"24\" is not an IPv4 address", "Voice"},
        {"GATEWAY", "172.24.10.1", "/home/other_wans/2/gateway: 172.24.10.1 is outside the subnet",
         "Voice"},
        {"GATEWAY", "NULL",
         "/home/other_wans/2/mode: needs ip, subnet_mask, gateway and primary_dns", "Voice"},
        {"DNS1", "NULL", "/home/other_wans/2/mode: needs ip, subnet_mask, gateway and primary_dns",
         "Voice"},
        {"DNS1", "dns.example", "DNS1 \"dns.example\" is not an IPv4 address", "Voice"},
        {"DNS2", "::1", "DNS2 \"::1\" is not an IPv4 address", "Voice"},
        {"IPV6_IPADDRESS", "100.64.0.1", "IPV6_IPADDRESS \"100.64.0.1\" is not an IPv6 address"},
        {"IPV6_PRIFIX", "2001:db8::/56", "IPV6_PRIFIX \"2001:db8::/56\" is not an IPv6 address"},
        {"IPV6_PRIFIX", "NULL",
         "/home/wan/ipv6_prefix: needs a length, and the length needs a prefix"},
        {"IPV6_PREFIXLENGTH", "56",
         "/home/other_wans/2/ipv6_prefix: needs a length, and the length needs a prefix", "Voice"},
        {"IPV6_PREFIXLENGTH", "129", "IPV6_PREFIXLENGTH 129 is not within 1 to 128"},
        {"IPV6_PREFIXLENGTH", "0", "IPV6_PREFIXLENGTH 0 is not within 1 to 128"},
        {"IPV6_GATEWAY", "fe80:::1", "IPV6_GATEWAY \"fe80:::1\" is not an IPv6 address"},
        {"IPV6_DNS1", "x", "IPV6_DNS1 \"x\" is not an IPv6 address"},
        {"IPV6_DNS2", "12345::", "IPV6_DNS2 \"12345::\" is not an IPv6 address"},
        {"PPPOE_USR_NAME", "NULL", "/home/wan/pppoe_account: is missing, and the mode is PPPoE"},
        {"PPPOE_USR_NAME", "smi\nth", "PPPOE_USR_NAME contains control characters or is not UTF-8"},
        {"PPPOE_PASSWORD", "\xff!", "PPPOE_PASSWORD contains control characters or is not UTF-8"},
        {"PPPOE_PASSWORD", "NULL", "PPPOE_PASSWORD is missing"},
        {"ADDRESSTYPE", "PPPoE", "PPPOE_PASSWORD is missing", "Management"},
        {"NATENABLE", "2", "NATENABLE \"2\" is none of \"0\", \"1\""},
        {"QOSENABLE", "on", "QOSENABLE \"on\" is none of \"0\", \"1\""},
        {"VLANID", "0", "VLANID 0 is not within 1 to 4094"},
        {"VLANID", "4095", "VLANID 4095 is not within 1 to 4094"},
        {"VLANID", "-7", "VLANID -7 is not within 1 to 4094"},
        {"VLANID", "9999999999999999999", "VLANID is not a number"},
        {"VLANID", "7x", "VLANID is not a number"},
        {"VLANPRIORITY", "8", "VLANPRIORITY 8 is not within 0 to 7"},
        {"ADDRESSTYPE", "DHCP",
         "/home/other_wans/0/bridged: excludes addresses, an account and nat", "IPTV"},
        {"IPADDRESS", "10.0.0.1",
         "/home/other_wans/0/bridged: excludes addresses, an account and nat", "IPTV"},
        {"NATENABLE", "1", "/home/other_wans/0/bridged: excludes addresses, an account and nat",
         "IPTV"},
    };
    const std::string before = read(path("state"));
    for (const auto &[field, value, why, wan] : refusals) {
        EXPECT_EQ(reason(set_wan({{field, value}}, wan)), why);
    }
    EXPECT_EQ(
        reason(set_wan({{"IPADDRESS", "192.168.1.77"}, {"GATEWAY", "192.168.1.78"}}, "Voice")),
        "/home/other_wans/2/ip: 192.168.1.77 is in the LAN");
    EXPECT_EQ(reason(set_wan({{"VLANID", "NULL"}, {"VLANPRIORITY", "3"}})),
              "VLANPRIORITY needs a VLANID");
    // Valid fields of the same record are not applied either.
    EXPECT_EQ(
        reason(set_wan({{"VLANID", "12"}, {"QOSENABLE", "0"}, {"VLANPRIORITY", "9"}}, "Voice")),
        "VLANPRIORITY 9 is not within 0 to 7");
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, EveryFieldIsReadWithinItsWidth)
{
    const std::string before = read(path("state"));
    auto info = record_with<WanInfo>({{"WANName", "Voice"}});
    visit_texts(info, [&](const std::string &name, auto &field) {
        if (every_field().contains(name)) {
            fill_completely(field, '1');
            EXPECT_EQ(devapi_set_route_wan_info(&info), -1) << name;
            field[0] = '\0';
        }
    });
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, AnAccountCutWithinACharacterDropsThePartialCharacter)
{
    EXPECT_EQ(set_wan({{"PPPOE_USR_NAME", std::string(62, 'a') + "ü"}}), 0);
    EXPECT_EQ(wan("Internet").PPPOE_USR_NAME, std::string(62, 'a'));
}

TEST_F(WanTest, ARouterWithoutIpv6RefusesIt)
{
    nlohmann::json home = house({{"/identity/ipv6", false}});
    EXPECT_THAT(open_home(home), HasSubstr("/wan/ipv6_address: the router has no IPv6"));
    home["wan"].erase("ipv6_address");
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(reason(set_wan({{"IPV6_IPADDRESS", "2001:db8::9"}})),
              "/home/wan/ipv6_address: the router has no IPv6");
}

TEST_F(WanTest, TheTraceMasksThePassword)
{
    wan("Internet");
    EXPECT_THAT(read(path("trace")), HasSubstr("PPPOE_PASSWORD=***"));
    set_wan({{"PPPOE_PASSWORD", "s3cret"}});
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("Lh7-pq2-Vw9")));
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("s3cret")));
}

} // namespace
