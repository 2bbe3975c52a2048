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
        const std::vector<std::string> lines = lines_of(error_of(words, 1));
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

    EXPECT_THAT(error_of(words("", {"--log-level", "2"}), 1),
                EndsWith(std::string(kNotInstalled) + "\n"));
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    expect_version(kOldVersion);
}

TEST_F(ImageUpgrade, RefusesAnAddressThatIsTooLong)
{
    EXPECT_EQ(error_of(words("http://127.0.0.1/" + std::string(239, 'x')), 2),
              "hgagent: the address is longer than 255 bytes\n");
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

} // namespace image_upgrade_test
