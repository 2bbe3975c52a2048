// SPDX-License-Identifier: MIT
// Wi-Fi commands: what one agent sets, even through a worker, the next one reports.
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;

using Json = nlohmann::ordered_json;

namespace wifi_test {

constexpr char kWaiting[] = "hgagent: waiting for the Wi-Fi settings to be applied\n";

// A batch of the SSIDs 1 and 5, one on each band, under new names.
std::string batch(const std::string &name)
{
    const auto element = [&](const std::string &index, const std::string &channel) {
        return R"({"SSIDIndex":")" + index + R"(","SSID":")" + name + index +
               R"(","PWD":"correct horse","ENCRYPT":"WPA2","PowerLevel":"80","Channel":")" +
               channel + R"(","Enable":"1"})";
    };
    return R"({"WIFILIST":[)" + element("1", "11") + "," + element("5", "36") +
           R"(],"StaCtrl":"0","FastRoaming":"1"})";
}

class Wifi : public GatewayTest {
  protected:
    std::string name_of(const std::string &index) const
    {
        return Json::parse(reply("GET_WIFI_INFO", R"({"SSIDIndex":")" + index + "\"}"))["SSID"];
    }
    Json scan() const { return Json::parse(reply("GET_SCAN_WIFI_SSIDLIST"))["SSIDList"]; }
};

TEST_F(Wifi, KeepsAnSsid)
{
    const std::string keys = R"("SSID":"Attic","PWD":"correct horse","ENCRYPT":"WPA2",)"
                             R"("PowerLevel":"80","Channel":"11",)";
    EXPECT_EQ(reply("SET_WIFI_INFO",
                    R"({"SSIDIndex":"1",)" + keys + R"("Enable":"1","AdvertisementEnable":"0"})"),
              kDone);
    EXPECT_THAT(reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})"),
                AllOf(HasSubstr(keys + R"("UsedChannel":"11","Enable":"1")"),
                      HasSubstr(R"("AdvertisementEnable":"0")")));
    EXPECT_EQ(text("GET_HG_BASE_INFO", "SSID1"), "Attic");
    EXPECT_EQ(text("HG_WIFI_INSPECTION", "Channel"), "11");
}

TEST_F(Wifi, RefusesAChannelOfTheOtherBand)
{
    const std::string before = reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})");
    const AgentResult refused =
        run("SET_WIFI_INFO", R"({"SSIDIndex":"1","SSID":"Attic","PWD":"correct horse",)"
                             R"("ENCRYPT":"WPA2","PowerLevel":"80","Channel":"36","Enable":"1"})");
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_THAT(refused.output, HasSubstr(R"("FailReason":"SET_WIFI_INFO_FAIL")"));
    EXPECT_EQ(reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})"), before);
}

TEST_F(Wifi, AppliesABatchBeforeTheAgentEnds)
{
    const AgentResult set = run("SET_WIFI_INFO_LIST", batch("Batch"));
    EXPECT_EQ(set.exit_status, 0);
    EXPECT_EQ(set.output, kDone);
    EXPECT_EQ(set.error, kWaiting);

    const Json list = Json::parse(reply("GET_WIFI_LIST_INFO"));
    ASSERT_THAT(list["WIFIList"], SizeIs(8));
    EXPECT_EQ(list["WIFIList"][0]["SSID"], "Batch1");
    EXPECT_EQ(list["WIFIList"][0]["Channel"], "11");
    EXPECT_EQ(list["WIFIList"][4]["SSID"], "Batch5");
    EXPECT_EQ(list["StaCtrl"], "0");
    EXPECT_EQ(list["FastRoaming"], "1");
}

TEST_F(Wifi, AppliesTwoBatchesOneAfterTheOther)
{
    const std::string line = R"({"command":"SET_WIFI_INFO_LIST","params":)";
    const AgentResult served =
        serve(line + batch("First") + "}\n" + line + batch("Second") + "}\n", {"--state", state_});
    EXPECT_EQ(served.exit_status, 0);
    EXPECT_THAT(lines_of(served.output),
                testing::Each(R"({"id":null,"result":0,"reply":{"Status":"0"}})"));
    EXPECT_EQ(served.error, kWaiting);
    EXPECT_EQ(name_of("1"), "Second1");
    EXPECT_EQ(name_of("5"), "Second5");
}

TEST_F(Wifi, LeavesAValidStateWhenABatchIsInterrupted)
{
    const std::string before = reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})");
    for (const int signal : {SIGTERM, SIGINT, SIGKILL}) {
        AgentProcess agent({"--state", state_, "call", "SET_WIFI_INFO_LIST", batch("Lost")});
        EXPECT_EQ(agent.read_line() + "\n", kDone);
        EXPECT_TRUE(agent.await_error(kWaiting));
        agent.signal(signal);
        EXPECT_EQ(agent.wait().exit_status, signal == SIGKILL ? -signal : 128 + signal);
        EXPECT_EQ(reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})"), before) << signal;
    }
}

TEST_F(Wifi, WarnsWhenABatchTurnsOffAMainSsidOfTheMeshAndAppliesIt)
{
    // Not recorded: the description has the warning in GBK, as the plug-in sends it.
    const AgentResult set = run_agent(
        {"--state", state_, "call", "SET_WIFI_INFO_LIST",
         R"({"WIFILIST":[{"SSIDIndex":"1","SSID":"home","PWD":"12345678","ENCRYPT":"WPA2",)"
         R"("PowerLevel":"100","Channel":"6","Enable":"0"}],"StaCtrl":"1"})"});
    EXPECT_EQ(set.exit_status, 1);
    EXPECT_EQ(set.output,
              "{\"Status\":\"1\",\"FailReason\":\"\u8bf7\u5148\u5173\u95edmesh\u5f00\u5173!\"}\n");
    EXPECT_THAT(reply("GET_WIFI_INFO", R"({"SSIDIndex":"1"})"),
                AllOf(HasSubstr(R"("SSID":"home")"), HasSubstr(R"("Enable":"0")")));
}

TEST_F(Wifi, JoinsANetworkThatAScanFinds)
{
    Json heard;
    for (const Json &network : scan()) {
        EXPECT_EQ(network["Connected"], "0");
        if (network["SSID"] == "FamilieBrandt-5G") {
            heard = network;
        }
    }
    ASSERT_FALSE(heard.is_null());
    Json request = {{"SSID", heard["SSID"]},
                    {"PWD", "wrong key"},
                    {"ENCRYPT", heard["ENCRYPT"]},
                    {"WPACypher", heard["WPACypher"]},
                    {"WPA2Cypher", heard["WPA2Cypher"]},
                    {"Band", heard["Band"]}};
    EXPECT_THAT(reply("SET_UPLINK_WIFI_INFO", request.dump()),
                HasSubstr(R"("FailReason":"SET_UPLINK_WIFI_INFO_FAIL")"));
    request["PWD"] = "heckenrose-1908";
    EXPECT_THAT(reply("SET_UPLINK_WIFI_INFO", request.dump()),
                HasSubstr(R"("Status":"0","ConnectedSSID":"FamilieBrandt-5G")"));
    for (const Json &network : scan()) {
        EXPECT_EQ(network["Connected"], network["SSID"] == heard["SSID"] ? "1" : "0") << network;
    }
}

TEST_F(Wifi, ClosesTheGuestNetworkInTime)
{
    EXPECT_EQ(reply("SET_HG_GUEST_SSID",
                    R"({"Enable":"1","SSID":"visitors","Band":"2.4GHz","PWD":"welcome1",)"
                    R"("ENCRYPT":"WPA2","ContinueTime":"0","HourTime":"2"})"),
              kDone);
    set_time(kStart + 7199);
    EXPECT_THAT(reply("GET_HG_GUEST_SSID", R"({"Band":"2.4GHz"})"),
                AllOf(HasSubstr(R"("Enable":"1")"), HasSubstr(R"("SSID":"visitors")"),
                      HasSubstr(R"("Remainingtime":"1")"), HasSubstr(R"("PWD":"welcome1")")));
    set_time(kStart + 7200);
    EXPECT_THAT(reply("GET_HG_GUEST_SSID", R"({"Band":"2.4GHz"})"),
                AllOf(HasSubstr(R"("Enable":"0")"), HasSubstr(R"("Status":"0")")));
}

} // namespace wifi_test
