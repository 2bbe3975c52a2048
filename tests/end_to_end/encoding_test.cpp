// Replies whose texts are not UTF-8.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

// Turns off a main SSID; the device library says that the mesh is on.
constexpr char kBatch[] = R"({"WIFILIST":[{"SSIDIndex":"1","SSID":"home","PWD":"12345678",)"
                          R"("ENCRYPT":"WPA2","PowerLevel":"100","Channel":"6","Enable":"0"}],)"
                          R"("StaCtrl":"1","FastRoaming":"1"})";

} // namespace

TEST(Encoding, MakesTheMeshWarningUtf8)
{
    const AgentResult result = call("SET_WIFI_INFO_LIST", kBatch, {"--device", BRIM_DEVICE});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "{\"FastRoaming\":\"1\",\"Status\":\"1\","
                             "\"FailReason\":\"\u8bf7\u5148\u5173\u95edmesh\u5f00\u5173!\"}\n");
}

TEST(Encoding, PassesTheMeshWarningThroughWhenTold)
{
    const std::string reply = "{\"FastRoaming\":\"1\",\"Status\":\"1\","
                              "\"FailReason\":\"\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5"
                              "mesh"
                              "\xBF\xAA\xB9\xD8"
                              "!\"}";
    const AgentResult called =
        run_agent({"--device", BRIM_DEVICE, "--raw-bytes", "call", "SET_WIFI_INFO_LIST", kBatch});
    EXPECT_EQ(called.exit_status, 1);
    EXPECT_EQ(called.output, reply + "\n");

    const AgentResult served = run_agent(
        {"--device", BRIM_DEVICE, "--raw-bytes", "serve"},
        std::string(R"({"id":1,"command":"SET_WIFI_INFO_LIST","params":)") + kBatch + "}");
    EXPECT_EQ(served.exit_status, 0);
    EXPECT_EQ(served.output, "{\"id\":1,\"result\":0,\"reply\":" + reply + "}\n");
}

TEST(Encoding, MakesAnswersUtf8TextByText)
{
    // The request's own text is UTF-8 and stays so beside one that the device has in GBK.
    const AgentResult result = serve("{\"id\":\"\u4e2d\",\"command\":\"GET_SN_INFO\","
                                     "\"params\":{\"\u4e2d\":\"\u4e2d\"}}",
                                     {"--device", BRIM_DEVICE});
    EXPECT_THAT(result.output, HasSubstr("{\"id\":\"\u4e2d\",\"result\":0,\"reply\":"
                                         "{\"\u4e2d\":\"\u4e2d\",\"Status\":\"0\""));
    EXPECT_THAT(result.output, HasSubstr("\"tslinkstatus\":\"\ufffd\\\"\ufffd\""));
}

TEST(Encoding, MakesReportsUtf8)
{
    const AgentResult utf8 = run_agent({"--device", BRIM_DEVICE, "report", "home-page"});
    EXPECT_THAT(utf8.output, HasSubstr("\"Devname\":\"\u4f60\u597d\""));
    const AgentResult raw =
        run_agent({"--device", BRIM_DEVICE, "--raw-bytes", "report", "home-page"});
    EXPECT_THAT(raw.output, HasSubstr("\"Devname\":\"\xc4\xe3\xba\xc3\""));
}
