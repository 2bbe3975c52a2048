// SPDX-License-Identifier: MIT
// Replies whose texts are not UTF-8.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::HasSubstr;

TEST(Encoding, PassesTheMeshWarningThroughOnRequest)
{
    // Turns off a main SSID while the mesh is on.
    const std::string batch = R"({"WIFILIST":[{"SSIDIndex":"1","SSID":"home","PWD":"12345678",)"
                              R"("ENCRYPT":"WPA2","PowerLevel":"100","Channel":"6","Enable":"0"}],)"
                              R"("StaCtrl":"1","FastRoaming":"1"})";
    const std::string warned = "{\"FastRoaming\":\"1\",\"Status\":\"1\","
                               "\"FailReason\":\"\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5"
                               "mesh"
                               "\xBF\xAA\xB9\xD8"
                               "!\"}";
    AgentProcess called({"--raw-bytes", "call", "SET_WIFI_INFO_LIST", batch});
    EXPECT_EQ(called.read_line(), warned);
    called.signal(SIGTERM); // the result of the batch does not matter here

    AgentProcess serving({"--raw-bytes", "serve"});
    serving.send(R"({"id":1,"command":"SET_WIFI_INFO_LIST","params":)" + batch + "}\n");
    EXPECT_EQ(serving.read_line(), "{\"id\":1,\"result\":0,\"reply\":" + warned + "}");
    serving.signal(SIGTERM);
}

TEST(Encoding, MakesAnswersUtf8TextByText)
{
    // The request's own text is UTF-8 and stays unchanged next to a GBK text of the device.
    const AgentResult result = serve("{\"id\":\"\u4e2d\",\"command\":\"GET_SN_INFO\","
                                     "\"params\":{\"\u4e2d\":\"\u4e2d\"}}",
                                     {"--device", HOSTILE_DEVICE});
    EXPECT_THAT(result.output, HasSubstr("{\"id\":\"\u4e2d\",\"result\":0,\"reply\":"
                                         "{\"\u4e2d\":\"\u4e2d\",\"Status\":\"0\""));
    EXPECT_THAT(result.output, HasSubstr("\"tslinkstatus\":\"\ufffd\\\"\ufffd\""));
}

TEST(Encoding, MakesReportsUtf8)
{
    const AgentResult utf8 = run_agent({"--device", HOSTILE_DEVICE, "report", "home-page"});
    EXPECT_THAT(utf8.output, HasSubstr("\"Devname\":\"\u4f60\u597d\""));
    const AgentResult raw =
        run_agent({"--device", HOSTILE_DEVICE, "--raw-bytes", "report", "home-page"});
    EXPECT_THAT(raw.output, HasSubstr("\"Devname\":\"\xc4\xe3\xba\xc3\""));
}
