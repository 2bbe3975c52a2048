// SPDX-License-Identifier: MIT
// Settings of WAN connections that the gateway refuses.
#include "wan_fixture.h"

namespace {

TEST_F(WanTest, AnUnknownNameIsRefused)
{
    for (const char *name : {"", "internet", "Internet ", "NULL", "5"}) {
        EXPECT_EQ(set_wan({{"VLANID", "9"}}, name), -1);
        EXPECT_EQ(reason(), "there is no WAN connection \"" + std::string(name) + "\"");
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
        const char *wan;
        Fields fields;
        const char *reason;
    } refusals[] = {
        {"Internet",
         {{"SERVICELIST", "VIDEO"}},
         "SERVICELIST \"VIDEO\" is none of "
         "\"INTERNET\", \"IPTV\", \"TR069\", \"VOIP\", \"OTHER\""},
        {"Internet",
         {{"SERVICELIST", "INTERNET,"}},
         "SERVICELIST \"\" is none of "
         "\"INTERNET\", \"IPTV\", \"TR069\", \"VOIP\", \"OTHER\""},
        {"Internet",
         {{"SERVICELIST", "INTERNET,VOIP,INTERNET"}},
         "SERVICELIST \"INTERNET,VOIP,INTERNET\" names INTERNET twice"},
        {"Internet", {{"SERVICELIST", "NULL"}}, "SERVICELIST is missing"},
        {"Internet", {{"SERVICELIST", "VOIP"}}, "/home/wan/services: do not include INTERNET"},
        {"Voice",
         {{"SERVICELIST", "VOIP,INTERNET"}},
         "/home/other_wans/2/services: INTERNET is reserved for /wan"},
        {"Internet",
         {{"ADDRESSTYPE", "dhcp"}},
         "ADDRESSTYPE \"dhcp\" is none of \"DHCP\", \"PPPoE\", \"Static\""},
        {"Internet", {{"ADDRESSTYPE", "NULL"}}, "ADDRESSTYPE is missing"},
        {"Internet",
         {{"ADDRESSTYPE", "Static"}},
         "/home/wan/gateway: 100.72.0.1 is outside the subnet"},
        {"Internet", {{"IPADDRESS", "203.0.113.7"}}, "IPADDRESS is given by the provider"},
        {"Internet", {{"SUBNETMASK", "255.255.0.0"}}, "SUBNETMASK is given by the provider"},
        {"Management", {{"GATEWAY", "NULL"}}, "GATEWAY is given by the provider"},
        {"Voice",
         {{"IPADDRESS", "172.24.9.256"}},
         "IPADDRESS \"172.24.9.256\" is not an IPv4 address"},
        {"Voice",
         {{"IPADDRESS", "172.24.9.18 "}},
         "IPADDRESS \"172.24.9.18 \" is not an IPv4 address"},
        {"Voice",
         {{"IPADDRESS", "192.168.1.77"}, {"GATEWAY", "192.168.1.78"}},
         "/home/other_wans/2/ip: 192.168.1.77 is in the LAN"},
        {"Voice",
         {{"SUBNETMASK", "255.0.255.0"}},
         "/home/other_wans/2/subnet_mask: 255.0.255.0 is not a subnet mask"},
        {"Voice",
         {{"SUBNETMASK", "0.0.0.0"}},
         "/home/other_wans/2/subnet_mask: 0.0.0.0 is not a subnet mask"},
        {"Voice", {{"SUBNETMASK", "24"}}, "SUBNETMASK \"24\" is not an IPv4 address"},
        {"Voice",
         {{"GATEWAY", "172.24.10.1"}},
         "/home/other_wans/2/gateway: 172.24.10.1 is outside the subnet"},
        {"Voice",
         {{"GATEWAY", "NULL"}},
         "/home/other_wans/2/mode: needs ip, subnet_mask, gateway and primary_dns"},
        {"Voice",
         {{"DNS1", "NULL"}},
         "/home/other_wans/2/mode: needs ip, subnet_mask, gateway and primary_dns"},
        {"Voice", {{"DNS1", "dns.example"}}, "DNS1 \"dns.example\" is not an IPv4 address"},
        {"Voice", {{"DNS2", "::1"}}, "DNS2 \"::1\" is not an IPv4 address"},
        {"Internet",
         {{"IPV6_IPADDRESS", "100.64.0.1"}},
         "IPV6_IPADDRESS \"100.64.0.1\" is not an IPv6 address"},
        {"Internet",
         {{"IPV6_PRIFIX", "2001:db8::/56"}},
         "IPV6_PRIFIX \"2001:db8::/56\" is not an IPv6 address"},
        {"Internet",
         {{"IPV6_PRIFIX", "NULL"}},
         "/home/wan/ipv6_prefix: needs a length, and the length needs a prefix"},
        {"Voice",
         {{"IPV6_PREFIXLENGTH", "56"}},
         "/home/other_wans/2/ipv6_prefix: needs a length, and the length needs a prefix"},
        {"Internet",
         {{"IPV6_PREFIXLENGTH", "129"}},
         "IPV6_PREFIXLENGTH 129 is not within 1 to 128"},
        {"Internet", {{"IPV6_PREFIXLENGTH", "0"}}, "IPV6_PREFIXLENGTH 0 is not within 1 to 128"},
        {"Internet",
         {{"IPV6_GATEWAY", "fe80:::1"}},
         "IPV6_GATEWAY \"fe80:::1\" is not an IPv6 address"},
        {"Internet", {{"IPV6_DNS1", "x"}}, "IPV6_DNS1 \"x\" is not an IPv6 address"},
        {"Internet", {{"IPV6_DNS2", "12345::"}}, "IPV6_DNS2 \"12345::\" is not an IPv6 address"},
        {"Internet",
         {{"PPPOE_USR_NAME", "NULL"}},
         "/home/wan/pppoe_account: is missing, and the mode is PPPoE"},
        {"Internet",
         {{"PPPOE_USR_NAME", "smi\nth"}},
         "PPPOE_USR_NAME contains control characters or is not UTF-8"},
        {"Internet",
         {{"PPPOE_PASSWORD", "\xff!"}},
         "PPPOE_PASSWORD contains control characters or is not UTF-8"},
        {"Internet", {{"PPPOE_PASSWORD", "NULL"}}, "PPPOE_PASSWORD is missing"},
        {"Management", {{"ADDRESSTYPE", "PPPoE"}}, "PPPOE_PASSWORD is missing"},
        {"Internet", {{"NATENABLE", "2"}}, "NATENABLE \"2\" is none of \"0\", \"1\""},
        {"Internet", {{"QOSENABLE", "on"}}, "QOSENABLE \"on\" is none of \"0\", \"1\""},
        {"Internet", {{"VLANID", "0"}}, "VLANID 0 is not within 1 to 4094"},
        {"Internet", {{"VLANID", "4095"}}, "VLANID 4095 is not within 1 to 4094"},
        {"Internet", {{"VLANID", "-7"}}, "VLANID -7 is not within 1 to 4094"},
        {"Internet", {{"VLANID", "9999999999999999999"}}, "VLANID is not a number"},
        {"Internet", {{"VLANID", "7x"}}, "VLANID is not a number"},
        {"Internet", {{"VLANPRIORITY", "8"}}, "VLANPRIORITY 8 is not within 0 to 7"},
        {"Internet", {{"VLANID", "NULL"}, {"VLANPRIORITY", "3"}}, "VLANPRIORITY needs a VLANID"},
        {"IPTV",
         {{"ADDRESSTYPE", "DHCP"}},
         "/home/other_wans/0/bridged: excludes addresses, an account and nat"},
        {"IPTV",
         {{"IPADDRESS", "10.0.0.1"}},
         "/home/other_wans/0/bridged: excludes addresses, an account and nat"},
        {"IPTV",
         {{"NATENABLE", "1"}},
         "/home/other_wans/0/bridged: excludes addresses, an account and nat"},
        // Valid fields of the same record are not applied either.
        {"Voice",
         {{"VLANID", "12"}, {"QOSENABLE", "0"}, {"VLANPRIORITY", "9"}},
         "VLANPRIORITY 9 is not within 0 to 7"},
    };
    const std::string before = read(path("state"));
    for (const auto &refusal : refusals) {
        EXPECT_EQ(set_wan(refusal.fields, refusal.wan), -1) << refusal.reason;
        EXPECT_EQ(reason(), refusal.reason);
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, EveryFieldIsReadWithinItsWidth)
{
    const std::string before = read(path("state"));
    for (const auto &[field, member] : members()) {
        WanInfo info = {};
        set(info.WANName, "Voice");
        fill_completely(info.*member, '1');
        EXPECT_EQ(devapi_set_route_wan_info(&info), -1) << field;
    }
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(WanTest, AnAccountCutWithinACharacterDropsThePartialCharacter)
{
    EXPECT_EQ(set_wan({{"PPPOE_USR_NAME", std::string(62, 'a') + "ü"}}), 0);
    EXPECT_EQ(wan("Internet").PPPOE_USR_NAME, std::string(62, 'a'));
}

TEST_F(WanTest, ARouterWithoutIpv6RefusesIt)
{
    nlohmann::json home = house();
    home["identity"]["ipv6"] = false;
    EXPECT_NE(open_home(home).find("/wan/ipv6_address: the router has no IPv6"), std::string::npos);
    home["wan"].erase("ipv6_address");
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(set_wan({{"IPV6_IPADDRESS", "2001:db8::9"}}), -1);
    EXPECT_EQ(reason(), "/home/wan/ipv6_address: the router has no IPv6");
}

TEST_F(WanTest, TheTraceMasksThePassword)
{
    wan("Internet");
    EXPECT_NE(read(path("trace")).find("PPPOE_PASSWORD=***"), std::string::npos);
    set_wan({{"PPPOE_PASSWORD", "s3cret"}});
    EXPECT_EQ(read(path("trace")).find("Lh7-pq2-Vw9"), std::string::npos);
    EXPECT_EQ(read(path("trace")).find("s3cret"), std::string::npos);
}

TEST_F(WanTest, NullRecordsAreFailedCalls)
{
    EXPECT_EQ(devapi_get_wan_num(nullptr), -1);
    EXPECT_EQ(devapi_query_wan_info(nullptr), -1);
    EXPECT_EQ(devapi_set_route_wan_info(nullptr), -1);
}

} // namespace
