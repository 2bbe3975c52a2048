// SPDX-License-Identifier: MIT
// Threads of the plug-in that outlive the command that started them.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using testing::HasSubstr;

namespace workers_test {

constexpr char kWaiting[] = "hgagent: waiting for the Wi-Fi settings to be applied\n";
constexpr char kDone[] = "the worker has done its work\n";

// A worker that runs until the test releases it.
class HeldWorker {
  public:
    HeldWorker() : pipe_(test_file("pipe"))
    {
        std::filesystem::remove(pipe_);
        EXPECT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
    }
    ~HeldWorker() { close(writer_); }
    HeldWorker(const HeldWorker &) = delete;
    HeldWorker &operator=(const HeldWorker &) = delete;

    std::vector<std::string> call() const
    {
        return {"--plugin", WORKER_PLUGIN, "call", "WORK", "until=" + pipe_};
    }
    std::string line() const
    {
        return R"({"command":"WORK","params":{"until":")" + pipe_ + "\"}}\n";
    }
    // Does not wait until the worker has got this far.
    void release() { writer_ = open(pipe_.c_str(), O_RDWR | O_CLOEXEC); }

  private:
    std::string pipe_;
    int writer_ = -1;
};

TEST(Workers, AreWaitedForAfterTheReply)
{
    HeldWorker worker;
    AgentProcess agent(worker.call());
    EXPECT_THAT(agent.read_line(), HasSubstr(R"("Status":"0"})"));
    EXPECT_TRUE(agent.await_error(kWaiting));
    worker.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.error, std::string(kWaiting) + kDone);
}

TEST(Workers, AreWaitedForWhenTheReplyCannotBeWritten)
{
    HeldWorker worker;
    AgentProcess agent(worker.call(), OutputTo::kFullDevice);
    EXPECT_TRUE(agent.await_error(kWaiting));
    worker.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 5);
    EXPECT_THAT(result.error, HasSubstr("cannot write to standard output"));
    EXPECT_THAT(result.error, HasSubstr(kDone));
}

TEST(Workers, AreWaitedForWhenTheInputOfServeEnds)
{
    HeldWorker worker;
    AgentProcess agent({"--plugin", WORKER_PLUGIN, "serve"});
    agent.send(worker.line());
    EXPECT_THAT(agent.read_line(), HasSubstr(R"("Status":"0"}})"));
    agent.close_input();
    EXPECT_TRUE(agent.await_error(kWaiting));
    worker.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.error, std::string(kWaiting) + kDone);
}

TEST(Workers, AreWaitedForWhenNobodyReadsWhatServeAnswers)
{
    HeldWorker worker;
    AgentProcess agent({"--plugin", WORKER_PLUGIN, "serve"});
    agent.close_output();
    agent.send(worker.line());
    EXPECT_TRUE(agent.await_error(kWaiting));
    worker.release();
    EXPECT_EQ(agent.wait().exit_status, 0);
}

TEST(Workers, DoNotDelayTheEndOnASignal)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        const HeldWorker worker;
        AgentProcess called(worker.call());
        EXPECT_TRUE(called.await_error(kWaiting));
        called.signal(signal);
        const AgentResult result = called.wait();
        EXPECT_EQ(result.exit_status, 128 + signal);
        EXPECT_THAT(result.output, HasSubstr(R"("Status":"0")"));
        EXPECT_EQ(result.error, kWaiting);

        AgentProcess serving({"--plugin", WORKER_PLUGIN, "serve"});
        serving.send(worker.line());
        serving.close_input();
        EXPECT_TRUE(serving.await_error(kWaiting));
        serving.signal(signal);
        EXPECT_EQ(serving.wait().exit_status, 128 + signal);
    }
}

} // namespace workers_test
