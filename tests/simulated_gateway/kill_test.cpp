#include "gateway_fixture.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A gateway_process and the two pipes to it.
class GatewayProcess {
  public:
    explicit GatewayProcess(std::vector<std::string> arguments)
    {
        int input[2];
        int output[2];
        if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        std::vector<char *> argv = {const_cast<char *>(GATEWAY_PROCESS)};
        for (std::string &argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        if (posix_spawn(&pid_, GATEWAY_PROCESS, &actions, nullptr, argv.data(), environ) != 0) {
            throw std::runtime_error("no process");
        }
        posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        input_ = input[1];
        output_ = output[0];
    }
    ~GatewayProcess()
    {
        if (pid_ != 0) {
            kill();
        }
        ::close(output_);
    }
    GatewayProcess(const GatewayProcess &) = delete;
    GatewayProcess &operator=(const GatewayProcess &) = delete;

    // Waits for so many of its dots; false when it ends before.
    bool wait_for(int dots)
    {
        for (char dot; dots > 0; --dots) {
            if (read(output_, &dot, 1) != 1) {
                return false;
            }
        }
        return true;
    }
    void kill()
    {
        ::kill(pid_, SIGKILL);
        end();
    }
    // Lets it go; result: its exit status.
    int end()
    {
        ::close(input_);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = 0;
        return status;
    }

  private:
    pid_t pid_ = 0;
    int input_ = -1;
    int output_ = -1;
};

using KillTest = GatewayTest;

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
        killed = WIFSIGNALED(process.end());

        // Before the first dot there may be no state yet, and opening makes it.
        ASSERT_EQ(open({.state_file = state}), "") << "killed at step " << step;
        EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
        close();
        const int64_t boots = json_of(state).at("boot_count");
        EXPECT_GE(boots, dots) << "killed at step " << step;
        EXPECT_LE(boots, dots + 1) << "killed at step " << step;
    }
    // Opening, two power cycles and closing save with six steps each.
    EXPECT_GT(step, 4 * 6);
}

TEST_F(KillTest, AKillAtAnyMomentLeavesTheOldStateOrTheNew)
{
    constexpr int kills = 20;
    int64_t least_boots = 1;
    for (int times = 0; times < kills; ++times) {
        GatewayProcess process({path("state"), "1000000"});
        const int dots = 1 + times % 5;
        ASSERT_TRUE(process.wait_for(dots));
        usleep(static_cast<useconds_t>(times * 97 % 1500));
        process.kill();

        least_boots += dots - 1;
        const int64_t boots = json_of(path("state")).at("boot_count");
        EXPECT_GE(boots, least_boots);
        least_boots = boots;
        ASSERT_EQ(open({.state_file = path("state")}), "");
        EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
        close();
    }
}

TEST_F(KillTest, WhatAKilledProcessLeftDoesNoHarm)
{
    write("state.tmp", "{\"format\": \"simulated gat");
    ASSERT_EQ(open({.state_file = path("state")}), "");
    close();
    EXPECT_EQ(json_of(path("state")).at("boot_count"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("state.tmp")));
}

TEST_F(KillTest, AStateBelongsToOneProcessAtATime)
{
    GatewayProcess process({path("state"), "0"});
    ASSERT_TRUE(process.wait_for(1));
    EXPECT_EQ(open({.state_file = path("state")}),
              path("state") + ": is in use by another gateway");
    std::filesystem::create_symlink(path("state"), path("link"));
    EXPECT_EQ(open({.state_file = path("link")}), path("link") + ": is in use by another gateway");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(open({.state_file = path("state")}), "");
}

} // namespace
