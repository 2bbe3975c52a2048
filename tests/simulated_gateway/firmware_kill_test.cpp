// SPDX-License-Identifier: MIT
// A process that is killed while it downloads, flashes and restarts leaves a gateway that runs one
// complete firmware.
#include "firmware_fixture.h"
#include "process_fixture.h"
#include "sample.h"

#include <algorithm>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class FirmwareKillTest : public FirmwareTest {
  protected:
    FirmwareKillTest()
    {
        write("first.image", make_image({.version = "V3", .payload_size = 40'000}));
        write("second.image", make_image({.version = "V4", .payload_size = 40'000}));
    }
    void SetUp() override {} // The gateways are those of the processes.
    std::vector<std::string> process(const std::string &count, const std::string &step) const
    {
        return {path("state"), count, step, server_.address("first.image"),
                server_.address("second.image")};
    }
    void start_over() const
    {
        for (const char *name : {"state", "state.lock", "state.firmware"}) {
            std::filesystem::remove_all(path(name));
        }
    }

    // Checks what runs after a kill and after a restart, and that the next image can be installed,
    // even after a download that was interrupted.
    struct Versions {
        std::string before;
        std::string after;
    };
    Versions versions_after_kill() const
    {
        EXPECT_EQ(open({.state_file = path("state")}), "");
        Versions versions = {version(), ""};
        simulated_gateway_power_cycle();
        versions.after = version();
        EXPECT_EQ(devapi_flash_update_image(server_.address("second.image").c_str()), 0);
        EXPECT_EQ(devapi_flash_update_image(server_.address("first.image").c_str()), 0);
        simulated_gateway_power_cycle();
        EXPECT_EQ(version(), "V3");
        EXPECT_FALSE(has_partial());
        close();
        return versions;
    }
};

TEST_F(FirmwareKillTest, AKillAtEveryStepLeavesOneCompleteFirmware)
{
    // By the number of dots printed: open, first flash, second flash, power cycle.
    const std::vector<std::string> may_run_before[] = {
        {"V2.4.1"}, {"V2.4.1"}, {"V2.4.1"}, {"V2.4.1", "V4"}, {"V4"}};
    // While the second image replaces the first, neither is complete for a moment.
    const std::vector<std::string> may_run_after[] = {
        {"V2.4.1"}, {"V2.4.1", "V3"}, {"V2.4.1", "V3", "V4"}, {"V4"}, {"V4"}};
    int step = 0;
    for (bool killed = true; killed; step += sample_of(7)) {
        SCOPED_TRACE("killed at step " + std::to_string(step));
        start_over();
        GatewayProcess victim(process("1", std::to_string(step)));
        size_t dots = 0;
        while (dots < 4 && victim.wait_for(1)) {
            ++dots;
        }
        const int status = victim.end();
        killed = WIFSIGNALED(status);
        ASSERT_TRUE(killed || status == 0) << status;

        const Versions versions = versions_after_kill();
        EXPECT_TRUE(std::ranges::count(may_run_before[dots], versions.before) == 1)
            << versions.before << " after " << dots << " dots";
        EXPECT_TRUE(std::ranges::count(may_run_after[dots], versions.after) == 1)
            << versions.after << " after " << dots << " dots";
        ASSERT_FALSE(HasFailure());
    }
    // Opening, closing, two flashes and a power cycle save with six steps each; the other steps
    // write images.
    EXPECT_GT(step, 5 * 6 + 2 * 20);
    const auto requests = server_.requests();
    EXPECT_TRUE(std::ranges::any_of(requests, [](auto &it) {
        return it.find("bytes=") != std::string::npos;
    })) << "no download went on where a kill had ended it";
}

TEST_F(FirmwareKillTest, AKillAtAnyMomentLeavesOneCompleteFirmware)
{
    constexpr int kills = 20;
    for (int times = 0; times < kills; times += sample_of(3)) {
        GatewayProcess victim(process("1000000", "-1"));
        ASSERT_TRUE(victim.wait_for(1 + times % 4));
        usleep(static_cast<useconds_t>(times * 997 % 40'000));
        victim.kill();
        const Versions versions = versions_after_kill();
        const std::vector<std::string> possible = {"V2.4.1", "V3", "V4"};
        EXPECT_EQ(std::ranges::count(possible, versions.before), 1) << versions.before;
        EXPECT_EQ(std::ranges::count(possible, versions.after), 1) << versions.after;
    }
}

} // namespace
