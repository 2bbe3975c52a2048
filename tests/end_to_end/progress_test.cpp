// SPDX-License-Identifier: MIT
// Progress of long operations, even if the device library reports impossible values.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace progress_test {

constexpr char kDownload[] = R"({"UpdateUrl":"http://192.0.2.1/image"})";

std::string bar(const std::string &task, size_t done, const std::string &percent)
{
    return task + " [" + std::string(done, '#') + std::string(40 - done, '.') + "] " + percent +
           " %";
}

TEST(Progress, IsALineOfServe)
{
    const AgentResult result =
        serve(std::string(R"({"id":1,"command":"HG_IMAGE_DOWNLOAD","params":)") + kDownload + "}",
              {"--device", HOSTILE_DEVICE});
    EXPECT_THAT(lines_of(result.output),
                ElementsAre(R"({"progress":{"task":"image\n\u001b[31m","percent":0}})",
                            R"({"progress":{"task":"","percent":50}})",
                            R"({"progress":{"task":"image","percent":100}})",
                            R"({"progress":{"task":"image","percent":3}})",
                            HasSubstr(R"("FailReason":"hg download image failed")")));
}

TEST(Progress, IsABarOnATerminal)
{
    AgentProcess agent({"--device", HOSTILE_DEVICE, "call", "HG_IMAGE_DOWNLOAD", kDownload},
                       OutputTo::kOneTerminal);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 1);
    const std::string erase = "\r\x1b[K";
    EXPECT_THAT(result.output, StartsWith(bar("image\\n\\x1b[31m", 0, "0") + erase +
                                          bar("", 20, "50") + erase + bar("image", 40, "100") +
                                          "\r\n" + bar("image", 1, "3") + erase + "{\r\n"));
    const std::string still = bar("image", 1, "3") + erase;
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("\r\n}\r\n" + still + "hgagent: HG_IMAGE_DOWNLOAD failed: "),
                      EndsWith("\r\n" + still)));
}

TEST(Progress, IsNotShownWithoutATerminal)
{
    for (const OutputTo output : {OutputTo::kPipe, OutputTo::kTerminal}) {
        AgentProcess agent({"--device", HOSTILE_DEVICE, "call", "HG_IMAGE_DOWNLOAD", kDownload},
                           output);
        const AgentResult result = agent.finish();
        EXPECT_THAT(result.error, Not(HasSubstr("#")));
        EXPECT_THAT(result.output, Not(HasSubstr("#")));
    }
}

TEST(Progress, IsNotRequestedFromADeviceWithoutIt)
{
    const AgentResult result = run_agent(
        {"--plugin", PROBE_PLUGIN, "--device", PROBE_PLUGIN, "serve"}, R"({"command":"NONE"})");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, "{\"id\":null,\"result\":-3,\"reply\":{}}\n");
}

} // namespace progress_test
