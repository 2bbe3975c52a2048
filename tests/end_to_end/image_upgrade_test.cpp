// SPDX-License-Identifier: MIT
// hgagent report image-upgrade: an upgrade that the agent starts, not a command.
#include "firmware_test.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace image_upgrade_test {

constexpr char kNotInstalled[] = "hgagent: the firmware was not installed";

class ImageUpgrade : public FirmwareTest {
  protected:
    std::vector<std::string> words(const std::string &address,
                                   std::vector<std::string> options = {}) const
    {
        options.insert(options.end(),
                       {"--state", state_, "report", "image-upgrade", "--url", address});
        return options;
    }
    // Runs an upgrade that fails for the reason in the log.
    void expect_failure(const std::vector<std::string> &words, const std::string &reason) const
    {
        const AgentResult result = run_agent(words);
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_THAT(result.output, IsEmpty());
        const std::vector<std::string> lines = lines_of(result.error);
        EXPECT_THAT(lines, Contains("<3> libtsiotAgtd: " + reason));
        EXPECT_EQ(lines.back(), kNotInstalled);
    }
};

TEST_F(ImageUpgrade, InstallsWhatRunsAfterAReboot)
{
    const AgentResult result = run_agent(words(address("new.image")));
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.error, Not(HasSubstr("<3>")));
    expect_version(kOldVersion);
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    expect_version(kNewVersion);
}

TEST_F(ImageUpgrade, ShowsABarOnATerminal)
{
    AgentProcess agent(words(address("new.image")), OutputTo::kOneTerminal);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, HasSubstr("firmware [####"));
    EXPECT_THAT(result.output, EndsWith("firmware [" + std::string(40, '#') + "] 100 %\r\n"));
}

TEST_F(ImageUpgrade, FailsAsTheLogSays)
{
    expect_failure(words(""), "update_url is err!");
    expect_failure({"--state", state_, "report", "image-upgrade"}, "update_url is err!");
    expect_failure(words(address("missing.image")), "download image failed");
    expect_failure(words(address("new.image"), {"--fault", "devapi_update_image=-1"}),
                   "update image failed");

    const AgentResult silent = run_agent(words("", {"--log-level", "2"}));
    EXPECT_EQ(silent.exit_status, 1);
    EXPECT_THAT(silent.error, EndsWith(std::string(kNotInstalled) + "\n"));
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    expect_version(kOldVersion);
}

TEST_F(ImageUpgrade, RefusesAnAddressThatIsTooLong)
{
    const AgentResult refused = run_agent(words("http://127.0.0.1/" + std::string(239, 'x')));
    EXPECT_EQ(refused.exit_status, 2);
    EXPECT_EQ(refused.error, "hgagent: the address is longer than 255 bytes\n");
    EXPECT_THAT(refused.output, IsEmpty());

    const std::string name(255 - address("").size(), 'x');
    serve_image_as(name);
    EXPECT_EQ(run_agent(words(address(name))).exit_status, 0);
}

TEST_F(ImageUpgrade, EndsWithASignal)
{
    AgentProcess agent(words(address("hold/new.image")));
    EXPECT_TRUE(agent.await_error("waiting for the firmware to be installed"));
    agent.signal(SIGTERM);
    EXPECT_EQ(agent.wait().exit_status, 128 + SIGTERM);
    expect_version(kOldVersion);
}

TEST_F(ImageUpgrade, NeedsAPluginThatKnowsIt)
{
    const AgentResult result =
        run_agent({"--plugin", PROBE_PLUGIN, "report", "image-upgrade", "--url", "http://x/"});
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_EQ(result.error,
              "hgagent: the plug-in " PROBE_PLUGIN " does not export pthread_hg_image_upgrade\n");
}

TEST_F(ImageUpgrade, IsTheOnlyReportWithAnAddress)
{
    EXPECT_EQ(run_agent({"report", "home-page", "--url", "http://x/"}).exit_status, 2);
    EXPECT_EQ(run_agent({"report", "--url", "http://x/"}).exit_status, 2);
}

} // namespace image_upgrade_test
