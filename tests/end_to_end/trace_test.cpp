// SPDX-License-Identifier: MIT
// The agent's trace, for device libraries that have none.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <cstdlib>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace trace_test {

TEST(Trace, HasALineForEachCallOfAnyDeviceLibrary)
{
    const std::string trace = test_file("minimal.trace");
    const std::vector<std::string> options = {"--device", MINIMAL_DEVICE, "--trace", trace};
    const AgentResult untraced = call("GET_SN_INFO", "{}", {"--device", MINIMAL_DEVICE});
    const AgentResult traced = call("GET_SN_INFO", "{}", options);
    EXPECT_EQ(traced.exit_status, 0);
    EXPECT_EQ(traced.output, untraced.output);
    EXPECT_EQ(call("QUERY_SYSTEM_INFO", "{}", options).exit_status, 1);
    EXPECT_THAT(lines_of(content_of(trace)),
                ElementsAre(MatchesRegex(R"(\[[0-9]+\] devapi_get_sn_info\(info=\{)"
                                         R"(MAC="02:00:5E:10:00:01", tslinkstatus="0", )"
                                         R"(DeviceType="EXAMPLE-1"\}\) = 0 in [0-9]+ us)"),
                            MatchesRegex(R"(\[[0-9]+\] devapi_get_system_info\(info=unset\) = -1 )"
                                         R"(in [0-9]+ us)")));
}

TEST(Trace, GoesToStandardErrorOnRequest)
{
    const AgentResult result =
        call("GET_SN_INFO", "{}", {"--device", MINIMAL_DEVICE, "--trace", "-"});
    EXPECT_THAT(result.error, MatchesRegex(R"(\[[0-9]+\] devapi_get_sn_info\(.*\) = 0 in .*)"));
}

TEST(Trace, ReadsFieldsWithinTheirWidth)
{
    const AgentResult result =
        call("GET_SN_INFO", "{}", {"--device", HOSTILE_DEVICE, "--trace", "-"});
    EXPECT_THAT(result.error, HasSubstr("(info={MAC=\"" + std::string(64, 'M') +
                                        R"(", tslinkstatus="\xd6\"\xff", DeviceType=")" +
                                        std::string(256, 'D') + "\"}) = 0 in "));
}

TEST(Trace, MasksSecretsByDefault)
{
    const std::string request = R"({"Account":"smith","Password":"zaun-und-tor","Enable":"1"})";
    std::vector<std::string> options = {"--device", HOSTILE_DEVICE, "--trace", "-"};
    EXPECT_THAT(call("SET_HG_PPPOE_INFO", request, options).error,
                AllOf(HasSubstr("devapi_set_hg_pppoe_info(setting={"), HasSubstr("Password=***"),
                      Not(HasSubstr("zaun"))));
    options.push_back("--show-secrets");
    EXPECT_THAT(call("SET_HG_PPPOE_INFO", request, options).error,
                HasSubstr("Password=\"zaun-und-tor\""));
}

TEST(Trace, IsTheSimulatedGatewaysOwnWhereThereIsOne)
{
    const std::string trace = test_file("gateway.trace");
    EXPECT_EQ(call("GET_SN_INFO", "{}", {"--trace", trace}).exit_status, 0);
    EXPECT_THAT(lines_of(content_of(trace)),
                ElementsAre(HasSubstr("devapi_get_sn_info(info={MAC=")));
}

TEST(Trace, InsertsNoLayerWithoutTheOption)
{
    setenv("LD_DEBUG", "files", 1);
    const AgentResult untraced = call("GET_SN_INFO", "{}", {"--device", MINIMAL_DEVICE});
    const AgentResult traced =
        call("GET_SN_INFO", "{}", {"--device", MINIMAL_DEVICE, "--trace", "/dev/null"});
    const AgentResult own = call("GET_SN_INFO", "{}", {"--trace", "/dev/null"});
    unsetenv("LD_DEBUG");
    EXPECT_THAT(untraced.error,
                AllOf(HasSubstr("minimal_device"), Not(HasSubstr("libdevice_layer"))));
    EXPECT_THAT(traced.error, HasSubstr("libdevice_layer"));
    EXPECT_THAT(own.error, Not(HasSubstr("libdevice_layer")));
}

TEST(Trace, HidesNoFunctionThatTheLibraryLacks)
{
    const AgentResult untraced = call("GET_SN_INFO", "{}", {"--device", PROBE_PLUGIN});
    const AgentResult traced =
        call("GET_SN_INFO", "{}", {"--device", PROBE_PLUGIN, "--trace", "/dev/null"});
    EXPECT_EQ(traced.exit_status, 4);
    EXPECT_EQ(traced.error, untraced.error);
}

TEST(Trace, NamesAFileThatCannotBeWritten)
{
    const std::string nowhere = test_file("no_folder") + "/trace";
    EXPECT_EQ(error_of({"--device", MINIMAL_DEVICE, "--trace", nowhere, "call", "GET_SN_INFO"}, 4),
              "hgagent: " + nowhere + ": No such file or directory\n");
}

TEST(Trace, LosesNoAnswerToAFullDisk)
{
    const AgentResult result =
        call("GET_SN_INFO", "{}", {"--device", MINIMAL_DEVICE, "--trace", "/dev/full"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, HasSubstr("02:00:5E:10:00:01"));
}

TEST(Trace, ShowsWhatConformanceCalls)
{
    const std::string trace = test_file("conformance.trace");
    const AgentResult result = run_agent(
        {"--device", MINIMAL_DEVICE, "--trace", trace, "conformance", "--command", "GET_SN_INFO"});
    EXPECT_EQ(result.exit_status, 0) << result.output;
    EXPECT_THAT(lines_of(content_of(trace)),
                ElementsAre(HasSubstr("DeviceType=\"EXAMPLE-1\"}) = 0 in ")));
}

} // namespace trace_test
