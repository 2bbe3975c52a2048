// SPDX-License-Identifier: MIT
// What holds for all subcommands: wrong usage, help, and where their output goes.
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
    return error_of(words, 2);
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

TEST(WrongUsage, HasAnExitStatusAndAnError)
{
    const std::vector<std::string> wrong[] = {
        {},
        {"call"},
        {"reboot"},
        {"call", "GET_SN_INFO", "--rubbish"},
        {"call", "GET_SN_INFO", "{}", "{}"},
        {"call", "GET_SN_INFO", "-", "a=b"},
        {"--log-level", "8", "call", "GET_SN_INFO"},
        {"--log-level", "error", "call", "GET_SN_INFO"},
        {"--fault", "call", "GET_SN_INFO"},
        {"serve", "--max-line", "0"},
        {"hosts", "all"},
        {"notice", "text"},
        {"notice", "--plugin-name", "p"},
        {"notice", "--plugin-name", "p", "two", "texts"},
        {"report", "home-page", "{}"},
        {"report", "home-page", "--url", "http://x/"},
        {"report", "--url", "http://x/"},
        {"report", "topology", "--path", "x"},
        {"report", "--path", "x"},
        {"topology", "--ascii", "--dot"},
        {"topology", "everything"},
    };
    for (const auto &words : wrong) {
        EXPECT_NE(message_of(words), "") << testing::PrintToString(words);
    }
}

TEST(BadRequest, SuggestsAWordWithAnEqualsSign)
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

TEST(Usage, HelpAndVersionSucceed)
{
    const AgentResult help = run_agent({"--help"});
    EXPECT_EQ(help.exit_status, 0);
    for (const char *word :
         {"--device", "--plugin", "--scenario", "--state", "--fault", "--trace", "--log-level",
          "--show-secrets", "--raw-bytes", "--refuse-notices", "call", "serve", "notice", "report",
          "hosts", "list", "describe", "Exit status", "Examples"}) {
        EXPECT_THAT(help.output, HasSubstr(word));
    }
    EXPECT_THAT(help.output, HasSubstr("--record-limit BYTES "));
    EXPECT_EQ(run_agent({"--version"}).output, "hgagent " PROJECT_VERSION "\n");
}

TEST(Output, IsIndentedOnATerminal)
{
    const struct {
        std::vector<std::string> words;
        const char *start;
    } cases[] = {
        {{"notice", "--plugin-name", "p", "text"}, "{\r\n\t\"RPCMethod\":\t\"Push\",\r\n"},
        {{"report", "home-page"}, "{\r\n\t\"Status\":\t\"0\",\r\n\t\"Devname\":\t\""},
    };
    for (const auto &[words, start] : cases) {
        AgentProcess agent(words, OutputTo::kTerminal);
        const AgentResult result = agent.finish();
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_THAT(result.output, StartsWith(start));
        EXPECT_THAT(result.output, testing::EndsWith("\"\r\n}\r\n"));
    }
}

TEST(Output, ThatCannotBeWrittenIsAnError)
{
    const std::vector<std::string> all[] = {
        {"describe", "GET_SN_INFO"},
        {"hosts"},
        {"list"},
        {"notice", "--plugin-name", "p", "text"},
        {"report"},
        {"report", "home-page"},
        {"topology"},
    };
    for (const auto &words : all) {
        AgentProcess agent(words, OutputTo::kFullDevice);
        const AgentResult result = agent.finish();
        EXPECT_EQ(result.exit_status, 5) << words[0];
        EXPECT_THAT(result.error, HasSubstr("cannot write to standard output")) << words[0];
    }
}

TEST(AnotherPlugin, LacksWhatASubcommandNeeds)
{
    const struct {
        std::vector<std::string> words;
        const char *lacking;
    } cases[] = {
        {{"hosts"}, "has no command GET_AD_BASE_INFO"},
        {{"topology"}, "has no command GET_TSLINK_TOPOLOGY_INFO"},
        {{"notice", "--plugin-name", "p", "text"}, "does not export json_msg_notice_to_app"},
        {{"report", "home-page"}, "does not export json_get_home_page_info"},
        {{"report", "image-upgrade", "--url", "http://x/"},
         "does not export pthread_hg_image_upgrade"},
    };
    for (auto [words, lacking] : cases) {
        words.insert(words.begin(), {"--plugin", PROBE_PLUGIN});
        EXPECT_EQ(error_of(words, 4),
                  std::string("hgagent: the plug-in " PROBE_PLUGIN " ") + lacking + "\n");
    }
}

} // namespace usage_test
