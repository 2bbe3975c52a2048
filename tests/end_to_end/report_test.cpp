// SPDX-License-Identifier: MIT
// hgagent report: the reports that no command returns.
#include "agent_commands.h"
#include "standing_clock.h"

#include <gmock/gmock.h>

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

TEST(Report, FailsWithItsBuilder)
{
    const AgentResult result =
        run_agent({"--fault", "devapi_get_home_page_info=-1", "report", "home-page"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "{\"Status\":\"1\",\"FailReason\":\"get home page info failed\"}\n");
}

TEST(Report, RefusesOtherNames)
{
    for (const std::string name : {"homepage", "HOME-PAGE", " "}) {
        EXPECT_EQ(error_of({"report", name}, 3),
                  "hgagent: no report \"" + name + "\"; hgagent report lists them\n");
    }
}

// The reply of serve to a report, which has to have been built.
static std::string served(const std::string &request, const std::vector<std::string> &options = {})
{
    const std::string output = serve("{\"id\":1," + request + "}", options).output;
    const std::string beginning = R"({"id":1,"result":0,"reply":)";
    EXPECT_THAT(output, StartsWith(beginning));
    return output.substr(beginning.size(), output.size() - beginning.size() - 2) + "\n";
}

TEST(Report, IsTheSameInServe)
{
    const StandingClock clock;
    for (const std::string name : {"home-page", "main-base", "topology", "mesh", "stations"}) {
        EXPECT_EQ(served("\"report\":\"" + name + "\""), run_agent({"report", name}).output);
    }
    const std::string path = "InternetGatewayDevice.WiFi.MultiAP.APDevice.2.";
    EXPECT_EQ(served(R"("report":"stations","params":{"path":")" + path + "\"}"),
              run_agent({"report", "stations", "--path", path}).output);
}

TEST(Report, FailsInServeWithItsBuilder)
{
    const auto answer = [](const std::string &request, const std::vector<std::string> &options) {
        return serve("{\"id\":1," + request + "}", options).output;
    };
    EXPECT_EQ(answer(R"("report":"home-page")", {"--fault", "devapi_get_home_page_info=-1"}),
              "{\"id\":1,\"result\":-1,\"reply\":{\"Status\":\"1\",\"FailReason\":\"get home page "
              "info failed\"}}\n");
    EXPECT_EQ(answer(R"("report":"mesh")", {"--fault", "devapi_get_hg_base_info=-1"})
                  .find(R"({"id":1,"result":1,"reply":{"topology":{)"),
              0U);
    for (const std::string name : {"homepage", "", "image_upgrade"}) {
        EXPECT_EQ(answer("\"report\":\"" + name + "\"", {}),
                  "{\"id\":1,\"error\":\"no report \\\"" + name +
                      "\\\"; hgagent report lists them\",\"code\":\"bad-request\"}\n");
    }
    for (const std::string request : {R"("report":"stations","params":{"path":7})",
                                      R"("report":"image-upgrade","params":{"url":{}})"}) {
        EXPECT_THAT(answer(request, {}), HasSubstr(R"( is no text","code":"bad-request"})"));
    }
    EXPECT_THAT(answer(R"("report":"home-page")", {"--plugin", PROBE_PLUGIN}),
                HasSubstr(R"( does not export json_get_home_page_info","code":"bad-request"})"));
}
