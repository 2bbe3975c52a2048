// hgagent report: the builders that no command leads to.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(Report, ListsTheBuilders)
{
    const AgentResult result = run_agent({"report"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(
        lines_of(result.output),
        testing::IsSupersetOf({MatchesRegex("home-page +What a home page shows of the gateway"),
                               MatchesRegex("image-upgrade +Fetch the image at --url .+")}));
    for (const std::string &line : lines_of(result.output)) {
        EXPECT_THAT(line, MatchesRegex("[a-z0-9-]+  +[A-Z].+"));
    }
}

TEST(Report, PrintsTheHomePage)
{
    const AgentResult result = run_agent({"report", "home-page"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_THAT(
        result.output,
        MatchesRegex("\\{\"Status\":\"0\",\"Devname\":\"Lindenhof\",\"UploadSpeed\":\"[0-9]+\","
                     "\"DownloadSpeed\":\"[0-9]+\",\"GameSpeed\":\"1\",\"GamePort\":\"2\","
                     "\"GameBand\":\"5GHz\",\"CpuRate\":\"[0-9]+\",\"MemRate\":\"[0-9]+\","
                     "\"CpuTemperature\":\"[0-9]+\"\\}\n"));
}

TEST(Report, IsIndentedOnATerminal)
{
    AgentProcess agent({"report", "home-page"}, OutputTo::kTerminal);
    const AgentResult result = agent.finish();
    EXPECT_THAT(result.output, StartsWith("{\r\n\t\"Status\":\t\"0\",\r\n\t\"Devname\":\t\""));
    EXPECT_THAT(result.output, EndsWith("\"\r\n}\r\n"));
}

TEST(Report, FailsWithItsBuilder)
{
    const AgentResult result =
        run_agent({"--fault", "devapi_get_home_page_info=-1", "report", "home-page"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "{\"Status\":\"1\",\"FailReason\":\"get home page info failed\"}\n");
}

TEST(Report, SaysThatThePluginLacksTheBuilder)
{
    const AgentResult result = run_agent({"--plugin", PROBE_PLUGIN, "report", "home-page"});
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_EQ(result.error,
              "hgagent: the plug-in " PROBE_PLUGIN " does not export json_get_home_page_info\n");
    EXPECT_THAT(result.output, IsEmpty());
}

TEST(Report, KnowsNoOtherNames)
{
    for (const std::string name : {"homepage", "HOME-PAGE", " "}) {
        const AgentResult result = run_agent({"report", name});
        EXPECT_EQ(result.exit_status, 3) << name;
        EXPECT_EQ(result.error, "hgagent: no report \"" + name + "\"; hgagent report lists them\n");
        EXPECT_THAT(result.output, IsEmpty());
    }
    EXPECT_EQ(run_agent({"report", "home-page", "{}"}).exit_status, 2);
}

TEST(Report, SaysWhenItCannotBeWritten)
{
    for (const std::vector<std::string> &words :
         {std::vector<std::string>{"report"}, std::vector<std::string>{"report", "home-page"}}) {
        AgentProcess agent(words, OutputTo::kFullDevice);
        const AgentResult result = agent.finish();
        EXPECT_EQ(result.exit_status, 5);
        EXPECT_THAT(result.error, HasSubstr("cannot write to standard output"));
    }
}
