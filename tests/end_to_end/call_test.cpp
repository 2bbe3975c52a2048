// SPDX-License-Identifier: MIT
// hgagent call: requests in every form, replies, exit statuses.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace call_test {

constexpr char kSnReply[] = R"({"Status":"0","MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1",)"
                            R"("DeviceType":"HGU-AX3000"})"
                            "\n";

std::string nested(size_t depth)
{
    return R"({"VersionInfo": "deep", "inner": )" + std::string(depth, '[') +
           std::string(depth, ']') + "}";
}

TEST(Call, PrintsTheReplyOnOneLine)
{
    const AgentResult result = call("GET_SN_INFO");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, kSnReply);
    EXPECT_THAT(result.error, IsEmpty());
}

TEST(Call, PrintsTheReplyIndentedOnATerminal)
{
    AgentProcess agent({"call", "GET_SN_INFO"}, OutputTo::kTerminal);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, StartsWith("{\r\n\t\"Status\":\t\"0\",\r\n\t\"MAC\":"));
    EXPECT_THAT(result.output, EndsWith("\"HGU-AX3000\"\r\n}\r\n"));
    record("GET_SN_INFO", "{}", result.output);
}

TEST(Call, WithoutARequestSendsAnEmptyObject)
{
    const AgentResult result = run_agent({"call", "GET_SN_INFO"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, kSnReply);
    record("GET_SN_INFO", "{}", result.output);
}

TEST(Call, TakesWordsAsTextsInTheirOrder)
{
    const AgentResult result = run_agent(
        {"call", "RESPONSE_ROUTER_VERSION", "VersionInfo=one=1", "Note=", "VersionInfo={\"two\"}"});
    const char *request = R"({"VersionInfo":"one=1","Note":"","VersionInfo":"{\"two\"}")";
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, std::string(request) + ",\"Status\":\"0\"}\n");
    record("RESPONSE_ROUTER_VERSION", std::string(request) + "}", result.output);
}

TEST(Call, RefusesWordsThatAreNotTexts)
{
    for (const std::string word : {"=value", "\xff=value", "key=\xc3"}) {
        EXPECT_THAT(error_of({"call", "RESPONSE_ROUTER_VERSION", "VersionInfo=1", word}, 2),
                    HasSubstr("bad request"));
    }
}

TEST(Call, ReadsTheRequestFromStandardInput)
{
    const AgentResult result =
        call_with_input("RESPONSE_ROUTER_VERSION", "{\n  \"VersionInfo\":\t\"\\u4e2d\\n\"\r\n}\n");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, "{\"VersionInfo\":\"\u4e2d\\n\",\"Status\":\"0\"}\n");
}

TEST(Call, ReadsTheRequestFromAFile)
{
    const std::string file = test_file("request.json", "{\"VersionInfo\": \"secret\"}\n");
    const AgentResult result =
        run_agent({"call", "RESPONSE_ROUTER_VERSION", "--request-file", file});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, "{\"VersionInfo\":\"secret\",\"Status\":\"0\"}\n");

    EXPECT_EQ(error_of({"call", "RESPONSE_ROUTER_VERSION", "--request-file", file + "x"}, 5),
              "hgagent: cannot open " + file + "x: No such file or directory\n");
    EXPECT_EQ(error_of({"call", "GET_SN_INFO", "--request-file", "/"}, 5),
              "hgagent: cannot read /: Is a directory\n");
    error_of({"call", "RESPONSE_ROUTER_VERSION", "--request-file", file, "VersionInfo=1"}, 2);
}

TEST(Call, ReadsAMegabyte)
{
    const std::string report(1024 * 1024, 'v');
    const AgentResult result =
        call_with_input("RESPONSE_ROUTER_VERSION", "{\"VersionInfo\":\"" + report + "\"}");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, "{\"VersionInfo\":\"" + report + "\",\"Status\":\"0\"}\n");
}

TEST(Call, RefusesAnEndlessRequest)
{
    const AgentResult result =
        run_agent({"call", "GET_SN_INFO", "-"}, std::string(16 * 1024 * 1024 + 1, ' '));
    EXPECT_EQ(result.exit_status, 5);
    EXPECT_THAT(result.error, HasSubstr("longer than 16777216 bytes"));
}

TEST(Call, KeepsRepeatedKeysAndOtherTypes)
{
    const std::string request = R"({"b":1,"a":[true,null,{"c":-0.5}],"b":"2","VersionInfo":"x"})";
    const AgentResult result = call("RESPONSE_ROUTER_VERSION", request);
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, request.substr(0, request.size() - 1) + ",\"Status\":\"0\"}\n");
}

TEST(Call, FailsWithTheCommand)
{
    const AgentResult device_failed =
        call("GET_SN_INFO", "{}", {"--fault", "devapi_get_sn_info=-1"});
    EXPECT_EQ(device_failed.exit_status, 1);
    EXPECT_EQ(device_failed.output, "{\"Status\":\"1\",\"FailReason\":\"get sn failed\"}\n");

    EXPECT_EQ(call("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":""})").exit_status, 1);
    EXPECT_EQ(call("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":5})").exit_status, 1);
}

TEST(Call, UsesTheStatusOfTheReplyNotOfTheRequest)
{
    const AgentResult succeeds = call("GET_SN_INFO", R"({"Status":"7"})");
    EXPECT_EQ(succeeds.exit_status, 0);
    const AgentResult fails =
        call("GET_SN_INFO", R"({"Status":"0"})", {"--fault", "devapi_get_sn_info=1"});
    EXPECT_EQ(fails.exit_status, 1);
}

TEST(Call, SaysWhereTheJsonIsInvalid)
{
    const struct {
        std::string request;
        std::string message;
    } cases[] = {
        {"", "line 1, column 1"},
        {"rubbish", "line 1, column 1: syntax error while parsing value - invalid literal; "
                    "last read: 'r'"},
        {"{\"a\": 1", "line 1, column 8"},
        {"{\"a\":\n 1,}", "line 2, column 4"},
        {"{\"a\": 1} {}", "line 1, column 10: syntax error while parsing value - unexpected '{'; "
                          "expected end of input"},
        {"{\"a\": 01}", "line 1, column 8"},
        {"{\"a\": \"\xff\"}", "line 1, column 8"},
        {"{\"a\": \"\n\"}", "line 2, column 0"},
        {"{\"a\": 1e999}", "line 1, column 12"},
        {"{\"a\": \"b\\u0000c\"}", "\\u0000 stands in the text \"b\""},
        {nested(2000), "nested too deep"},
        {"[]", "this is an array"},
        {"[{\"a\": 1}]", "this is an array"},
        {"\"a=b\"", "this is a single value"},
        {"null", "this is a single value"},
    };
    for (const auto &bad : cases) {
        const std::string error = error_of({"call", "GET_SN_INFO", bad.request}, 2);
        EXPECT_THAT(error, StartsWith("hgagent: bad request: "));
        EXPECT_THAT(error, HasSubstr(bad.message));
        EXPECT_EQ(lines_of(error).size(), 1U) << bad.request;
    }
}

TEST(Call, RefusesNulBytes)
{
    const std::string nul(1, '\0');
    for (const std::string &request : {"{}" + nul, "{}\n" + nul + "rubbish", nul}) {
        const AgentResult result = call_with_input("GET_SN_INFO", request);
        EXPECT_EQ(result.exit_status, 2);
        EXPECT_THAT(result.error, HasSubstr("NUL byte at line "));
    }
}

TEST(Call, AcceptsDeepNesting)
{
    const AgentResult result = call("RESPONSE_ROUTER_VERSION", nested(500));
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, HasSubstr(std::string(500, '[')));
}

TEST(Call, NamesTheNearestOfAnUnknownCommand)
{
    for (const std::string name : {"GET_SNINFO", "get_sn_info", "GET_SN_INFO "}) {
        EXPECT_THAT(error_of({"call", name}, 3), StartsWith("hgagent: no command \"" + name +
                                                            "\"; the nearest are GET_SN_INFO, "));
    }
    error_of({"call", ""}, 3);
    EXPECT_LT(error_of({"call", std::string(100000, 'G')}, 3).size(), 400U);
}

TEST(Call, ReportsAClosedOutput)
{
    AgentProcess agent({"call", "RESPONSE_ROUTER_VERSION", "-"});
    agent.close_output();
    agent.send(R"({"VersionInfo":"unheard"})");
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 5);
    EXPECT_EQ(result.error, "hgagent: nobody reads the reply\n");
}

TEST(Call, PrintsTheReplyOfTheCommandDuringWhichASignalArrives)
{
    const AgentResult result = run_agent({"--plugin", PROBE_PLUGIN, "call", "STOP"});
    EXPECT_EQ(result.exit_status, 128 + SIGTERM);
    EXPECT_EQ(result.output, "{}\n");
    EXPECT_THAT(result.error, IsEmpty());
}

} // namespace call_test
