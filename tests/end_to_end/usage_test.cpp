// SPDX-License-Identifier: MIT
// hgagent's errors for an invalid command line or request.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace usage_test {

constexpr char kSeeHelp[] = "Run with --help for more information.\n";

// The error for a wrong usage.
std::string message_of(const std::vector<std::string> &words)
{
    const AgentResult result = run_agent(words);
    EXPECT_EQ(result.exit_status, 2) << testing::PrintToString(words);
    EXPECT_THAT(result.output, IsEmpty()) << testing::PrintToString(words);
    return result.error;
}

std::string hint(const std::string &text)
{
    return "hgagent: " + text + "\n" + kSeeHelp;
}

TEST(WrongUsage, SuggestsTheNearestSubcommand)
{
    EXPECT_EQ(message_of({"cal", "GET_SN_INFO"}), hint("no subcommand \"cal\"; was call meant?"));
    EXPECT_EQ(message_of({"--log-level", "7", "sevre"}),
              hint("no subcommand \"sevre\"; was serve meant?"));
    EXPECT_EQ(message_of({"GET_SN_INFO", "{}"}),
              hint("GET_SN_INFO is a command: hgagent call GET_SN_INFO"));
    EXPECT_EQ(message_of({"rubbish\n"}), hint("no subcommand \"rubbish\\n\""));
    EXPECT_LT(message_of({std::string(100000, 'c')}).size(), 400U);
    EXPECT_THAT(message_of({}), HasSubstr("A subcommand is required"));
}

TEST(WrongUsage, SaysWhereAnOptionBelongs)
{
    EXPECT_EQ(message_of({"call", "GET_SN_INFO", "--log-level", "7"}),
              hint("--log-level belongs before the subcommand: hgagent --log-level ... call ..."));
    EXPECT_EQ(message_of({"serve", "--state=home.json"}),
              hint("--state belongs before the subcommand: hgagent --state ... serve ..."));
    EXPECT_EQ(message_of({"hosts", "--scenario", "single_router"}),
              hint("--scenario belongs before the subcommand: hgagent --scenario ... hosts ..."));
    EXPECT_EQ(message_of({"--max-line", "5", "serve"}),
              hint("--max-line belongs behind the subcommand serve or run"));
    EXPECT_EQ(message_of({"--reasons", "call", "GET_SN_INFO"}),
              hint("--reasons belongs behind the subcommand call or serve or run"));
    EXPECT_THAT(message_of({"call", "GET_SN_INFO", "--rubbish"}),
                HasSubstr("not expected: --rubbish"));
}

TEST(BadRequest, SuggestsTheNearestKey)
{
    for (const std::string word : {"1", "up-to-date", "true"}) {
        EXPECT_THAT(message_of({"call", "SET_UPNP_STATE", word}),
                    testing::EndsWith("; was KEY=VALUE meant?\n"));
    }
    for (const std::string word : {"{", "[]", "\"text\"", ""}) {
        EXPECT_THAT(message_of({"call", "SET_UPNP_STATE", word}), Not(HasSubstr("KEY=VALUE")));
    }
}

TEST(RefusedRequest, PointsToTheDescription)
{
    const AgentResult refused = call("SET_UPNP_STATE", "{}");
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_EQ(refused.error, "hgagent: SET_UPNP_STATE failed: \"hgagent describe SET_UPNP_STATE\" "
                             "shows what it takes and when it fails\n");
    const AgentResult described = run_agent({"describe", "SET_UPNP_STATE"});
    EXPECT_THAT(described.output, HasSubstr("Enable  required"));
    EXPECT_THAT(described.output, HasSubstr("Reply, failure"));
}

TEST(UnknownCommand, GetsASuggestionFromServe)
{
    const AgentResult result = serve(R"({"id":1,"command":"GET_SNINFO"})");
    EXPECT_EQ(result.output, "{\"id\":1,\"result\":-3,\"reply\":{}}\n");
    EXPECT_EQ(result.error, call("GET_SNINFO").error);
    EXPECT_THAT(result.error,
                StartsWith("hgagent: no command \"GET_SNINFO\"; the nearest are GET_SN_INFO, "));
    EXPECT_THAT(serve(R"({"id":1,"command":"GET_SN_INFO"})").error, IsEmpty());
}

} // namespace usage_test
