// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"
#include "process_fixture.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class KillTest : public GatewayTest {
  protected:
    // The copy is renamed into place before the file: next to every file there is a complete copy,
    // at most one change ahead.
    static void expect_copy_of(const std::string &state)
    {
        const int64_t boots = json_of(state).at("boot_count");
        const int64_t copied_boots = json_of(state + ".good").at("boot_count");
        EXPECT_GE(copied_boots, boots);
        EXPECT_LE(copied_boots, boots + 1);
    }
};

TEST_F(KillTest, AKillAtEveryStepLeavesTheOldStateOrTheNew)
{
    int step = 0;
    for (bool killed = true; killed; ++step) {
        const std::string state = path("state" + std::to_string(step));
        GatewayProcess process({state, "2", std::to_string(step)});
        int64_t dots = 0;
        while (dots < 3 && process.wait_for(1)) {
            ++dots;
        }
        const int status = process.end();
        killed = WIFSIGNALED(status);
        ASSERT_EQ(status, killed ? SIGKILL : 0) << "at step " << step;
        if (std::filesystem::exists(state)) {
            expect_copy_of(state);
        }

        // Before the first dot there may be no state yet, and opening makes it.
        ASSERT_EQ(open({.state_file = state}), "") << "killed at step " << step;
        EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
        close();
        const int64_t boots = json_of(state).at("boot_count");
        EXPECT_GE(boots, dots) << "killed at step " << step;
        EXPECT_LE(boots, dots + 1) << "killed at step " << step;
    }
    // Opening, two power cycles and closing save with twelve steps each.
    EXPECT_GT(step, 4 * 12);
}

TEST_F(KillTest, AKillAtAnyMomentLeavesTheOldStateOrTheNew)
{
    constexpr int kills = 20;
    int64_t least_boots = 1;
    for (int times = 0; times < kills; ++times) {
        GatewayProcess process({path("state"), "1000000", "-1"});
        const int dots = 1 + times % 5;
        ASSERT_TRUE(process.wait_for(dots));
        usleep(static_cast<useconds_t>(times * 97 % 1500));
        process.kill();

        least_boots += dots - 1;
        const int64_t boots = json_of(path("state")).at("boot_count");
        expect_copy_of(path("state"));
        EXPECT_GE(boots, least_boots);
        least_boots = boots;
        ASSERT_EQ(open({.state_file = path("state")}), "");
        EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
        close();
    }
}

TEST_F(KillTest, LeftoversOfAKilledProcessDoNoHarm)
{
    for (const char *name : {"state.tmp", "state.good.tmp"}) {
        write(name, "{\"format\": \"simulated gat");
    }
    ASSERT_EQ(open({.state_file = path("state")}), "");
    close();
    EXPECT_EQ(json_of(path("state")).at("boot_count"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("state.tmp")));
    EXPECT_FALSE(std::filesystem::exists(path("state.good.tmp")));
}

TEST_F(KillTest, AStateBelongsToOneProcessAtATime)
{
    GatewayProcess process({path("state"), "0", "-1"});
    ASSERT_TRUE(process.wait_for(1));
    EXPECT_EQ(open({.state_file = path("state")}),
              path("state") + ": is in use by another gateway");
    std::filesystem::create_symlink(path("state"), path("link"));
    EXPECT_EQ(open({.state_file = path("link")}), path("link") + ": is in use by another gateway");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(open({.state_file = path("state")}), "");
}

TEST_F(KillTest, AHardLinkIsTheSameState)
{
    GatewayProcess process({path("state"), "0", "-1"});
    ASSERT_TRUE(process.wait_for(1));
    std::filesystem::create_hard_link(path("state"), path("link"));
    EXPECT_EQ(open({.state_file = path("link")}), path("link") + ": is in use by another gateway");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(open({.state_file = path("link")}), "");
}

TEST_F(KillTest, AHardLinkToTheLoadedFileIsTheSameState)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    close();
    std::filesystem::create_hard_link(path("state"), path("link"));
    GatewayProcess process({path("state"), "0", "-1"});
    ASSERT_TRUE(process.wait_for(1));
    EXPECT_EQ(open({.state_file = path("link")}), path("link") + ": is in use by another gateway");
}

} // namespace
