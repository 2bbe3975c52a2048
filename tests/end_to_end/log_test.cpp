// SPDX-License-Identifier: MIT
// The agent's log: levels, whole lines, masked secrets.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace log_test {

std::vector<std::string> log_of(const std::string &text, std::vector<std::string> options)
{
    options.insert(options.end(), {"--plugin", PROBE_PLUGIN, "call", "LOG", "text=" + text});
    return lines_of(run_agent(options).error);
}

TEST(Log, ShowsErrorsByDefault)
{
    EXPECT_THAT(log_of("x", {}), ElementsAre("<3> probe: error x", "<3> probe: ended by itself x",
                                             "<3> probe: Account:x|Password:***|Enable:x"));
    EXPECT_THAT(log_of("x", {"--log-level", "7"}),
                ElementsAre("<3> probe: error x", "<3> probe: ended by itself x",
                            "<7> probe: trace x", "<3> probe: Account:x|Password:***|Enable:x"));
    EXPECT_THAT(log_of("x", {"--log-level", "2"}), IsEmpty());
}

TEST(Log, ShowsSecretsOnRequest)
{
    EXPECT_THAT(log_of("x", {"--show-secrets"}).back(), "<3> probe: Account:x|Password:x|Enable:x");
}

TEST(Log, CannotBeForgedByARequest)
{
    const std::vector<std::string> lines = log_of("a\n<3> probe: forged\r\x1b[2J\u009b", {});
    EXPECT_THAT(lines, ElementsAre("<3> probe: error a\\n<3> probe: forged\\r\\x1b[2J\\x9b",
                                   testing::_, testing::_));
}

TEST(Log, CutsALineOfAMegabyte)
{
    const std::string report(1024 * 1024, 'v');
    const AgentResult result =
        run_agent({"--log-level", "7", "call", "RESPONSE_ROUTER_VERSION", "-"},
                  "{\"VersionInfo\":\"" + report + "\"}");
    const std::vector<std::string> lines = lines_of(result.error);
    ASSERT_THAT(lines, ElementsAre(HasSubstr("json_response_router_version out = {"),
                                   "<7> libtsiotAgtd: json_response_router_version is too long"));
    EXPECT_LT(lines[0].size(), 5000U);
    EXPECT_THAT(lines[0], testing::EndsWith(" more bytes]"));
}

TEST(Log, MasksSecretsInsideJson)
{
    const std::string request = R"({"VersionInfo":"1","PWD":"hidden","Login":{"Password":"too"}})";
    const AgentResult masked = call("RESPONSE_ROUTER_VERSION", request, {"--log-level", "7"});
    EXPECT_EQ(masked.error, "<7> libtsiotAgtd: json_response_router_version out = "
                            R"({\n\t"VersionInfo":\t"1",\n\t"PWD":\t"***",\n\t"Login":\t{\n\t\t)"
                            R"("Password":\t"***"\n\t},\n\t"Status":\t"0"\n})"
                            "\n");
    EXPECT_THAT(masked.output, HasSubstr("hidden"));

    const AgentResult shown =
        call("RESPONSE_ROUTER_VERSION", request, {"--log-level", "7", "--show-secrets"});
    EXPECT_THAT(shown.error, HasSubstr("hidden"));
    EXPECT_THAT(shown.error, Not(HasSubstr("***")));
}

TEST(Log, KeepsTheVersionReportInTheAgentsBuffer)
{
    // Without a buffer the plug-in would log that it is missing.
    const AgentResult result =
        call("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":"1"})", {"--log-level", "7"});
    EXPECT_THAT(result.error, Not(HasSubstr("the time of")));
}

TEST(Log, SaysThatTheProfileHasChanged)
{
    const std::string changed = "<6> hgagent: the profile has changed";
    const std::string request = R"({"ConfiguerStatus":"1"})";
    EXPECT_THAT(call("SET_TSLINK_CONFIG_STATUS", request, {"--log-level", "6"}).error,
                HasSubstr(changed));
    EXPECT_THAT(call("SET_TSLINK_CONFIG_STATUS", request,
                     {"--log-level", "6", "--fault", "devapi_set_sta_tslink_config=-1"})
                    .error,
                Not(HasSubstr(changed)));
}

} // namespace log_test
