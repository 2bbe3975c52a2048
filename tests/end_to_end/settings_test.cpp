// SPDX-License-Identifier: MIT
// Settings of the gateway: what one agent sets, the next one reports.
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace settings_test {

class Settings : public GatewayTest {};

TEST_F(Settings, KeepTheLan)
{
    const std::string keys = R"("GatewayLanIP":"192.168.7.1","SubnetMask":"255.255.255.0",)"
                             R"("StartIp":"192.168.7.20","EndIp":"192.168.7.200")";
    expect_kept("SET_LAN_IP_INFO", "{" + keys + "}", "GET_LAN_IP_INFO", keys);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "LanIp"), "192.168.7.1");
    EXPECT_EQ(text("GET_HG_DHCP_INFO", "GateWay"), "192.168.7.1");
}

TEST_F(Settings, ReportWhyALanIsRefused)
{
    const std::string before = reply("GET_LAN_IP_INFO");
    const AgentResult refused =
        run("SET_LAN_IP_INFO", R"({"GatewayLanIP":"192.168.1.1","SubnetMask":"255.255.255.0",)"
                               R"("StartIp":"10.0.0.1","EndIp":"10.0.0.2"})");
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_EQ(refused.output,
              "{\"Status\":\"1\",\"FailReason\":\"StartIp is outside the subnet\"}\n");
    EXPECT_EQ(reply("GET_LAN_IP_INFO"), before);
}

TEST_F(Settings, KeepThePppoeAccount)
{
    const AgentResult set = run_agent(
        {"--state", state_, "call", "SET_HG_PPPOE_INFO", "Account=a", "Password=b", "Enable=1"});
    EXPECT_EQ(set.exit_status, 0);
    EXPECT_EQ(set.output, kDone);
    EXPECT_EQ(reply("GET_HG_PPPOE_INFO"),
              "{\"Status\":\"0\",\"Enable\":\"1\",\"Account\":\"a\",\"Password\":\"b\"}\n");
}

TEST_F(Settings, ShowThePppoePasswordOnlyOnRequest)
{
    const std::string request = R"({"Account":"smith","Password":"very hidden","Enable":"1"})";
    const AgentResult masked =
        call("SET_HG_PPPOE_INFO", request, {"--state", state_, "--log-level", "7", "--trace", "-"});
    EXPECT_THAT(masked.error,
                AllOf(HasSubstr("Account:smith|Password:***|Enable:1"),
                      HasSubstr("devapi_set_hg_pppoe_info"), Not(HasSubstr("very hidden"))));
    const AgentResult shown =
        call("SET_HG_PPPOE_INFO", request,
             {"--state", state_, "--log-level", "7", "--trace", "-", "--show-secrets"});
    EXPECT_THAT(shown.error, AllOf(HasSubstr("Account:smith|Password:very hidden|Enable:1"),
                                   HasSubstr("Password=\"very hidden\"")));
}

TEST_F(Settings, KeepTheAdministrator)
{
    expect_kept("SET_ADMIN_INFO", R"({"Type":"1","Name":"root","Password":"correct horse"})",
                "GET_ADMIN_INFO", R"("Name":"root","Password":"correct horse")");
}

TEST_F(Settings, SurviveAReboot)
{
    EXPECT_EQ(reply("SET_HG_BASE_INFO", R"({"Name":"Cellar"})"), kDone);
    set_time(kStart + 5000);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "5000");
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "0");
    set_time(kStart + 5070);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "70");
    EXPECT_EQ(text("GET_HG_BASE_INFO", "Name"), "Cellar");
}

TEST_F(Settings, AreResetByAFactoryRecovery)
{
    const std::vector<std::string> queries = {
        "GET_HG_BASE_INFO", "GET_LAN_IP_INFO",    "GET_HG_DHCP_INFO",   "GET_HG_PPPOE_INFO",
        "GET_ADMIN_INFO",   "GET_WEB_LOGIN_INFO", "GET_HG_REBOOT_INFO", "GET_HG_SLEEP_INFO"};
    std::vector<std::string> factory;
    for (const std::string &query : queries) {
        factory.push_back(reply(query));
    }
    EXPECT_EQ(reply("SET_HG_BASE_INFO", R"({"Name":"Cellar"})"), kDone);
    EXPECT_EQ(reply("SET_HG_PPPOE_INFO", R"({"Account":"a","Password":"b","Enable":"1"})"), kDone);
    EXPECT_EQ(reply("SET_HG_DHCP_INFO", R"({"Enable":"0"})"), kDone);
    EXPECT_EQ(reply("SET_ADMIN_INFO", R"({"Type":"1","Name":"root","Password":"c"})"), kDone);
    EXPECT_NE(reply("GET_HG_BASE_INFO"), factory[0]);
    EXPECT_EQ(reply("HG_LOCAL_RECOVERY"), kDone);
    for (size_t at = 0; at < queries.size(); ++at) {
        EXPECT_EQ(reply(queries[at]), factory[at]) << queries[at];
    }
}

TEST_F(Settings, ChangeTheChannelByAnOptimisation)
{
    const std::string before = text("HG_WIFI_INSPECTION", "Channel");
    const auto optimised = nlohmann::ordered_json::parse(
        reply("HG_WIFI_OPTIMIZATION", R"({"Channel":")" + before + "\"}"));
    EXPECT_EQ(optimised["Status"], "0");
    EXPECT_NE(optimised["Channel"], before);
    EXPECT_EQ(text("HG_WIFI_INSPECTION", "Channel"), optimised["Channel"]);
    EXPECT_EQ(text("HG_WIFI_INSPECTION", "Congestion"), optimised["Congestion"]);
}

} // namespace settings_test
