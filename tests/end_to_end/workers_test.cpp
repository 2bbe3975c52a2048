// SPDX-License-Identifier: MIT
// Threads of the plug-in that outlive the command that started them.
#include "agent_commands.h"
#include "held_pipe.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::HasSubstr;

namespace workers_test {

constexpr char kWaiting[] = "hgagent: waiting for the Wi-Fi settings to be applied\n";
constexpr char kDone[] = "the worker has done its work\n";

std::vector<std::string> call_of(const HeldPipe &pipe)
{
    return {"--plugin", WORKER_PLUGIN, "call", "WORK", "until=" + pipe.path()};
}

std::string line_of(const HeldPipe &pipe)
{
    return R"({"command":"WORK","params":{"until":")" + pipe.path() + "\"}}\n";
}

TEST(Workers, AreWaitedForAfterTheReply)
{
    HeldPipe pipe;
    AgentProcess agent(call_of(pipe));
    EXPECT_THAT(agent.read_line(), HasSubstr(R"("Status":"0"})"));
    EXPECT_TRUE(agent.await_error(kWaiting));
    pipe.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.error, std::string(kWaiting) + kDone);
}

TEST(Workers, AreWaitedForWhenTheReplyCannotBeWritten)
{
    HeldPipe pipe;
    AgentProcess agent(call_of(pipe), OutputTo::kFullDevice);
    EXPECT_TRUE(agent.await_error(kWaiting));
    pipe.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 5);
    EXPECT_THAT(result.error, HasSubstr("cannot write to standard output"));
    EXPECT_THAT(result.error, HasSubstr(kDone));
}

TEST(Workers, AreWaitedForWhenTheInputOfServeEnds)
{
    HeldPipe pipe;
    AgentProcess agent({"--plugin", WORKER_PLUGIN, "serve"});
    agent.send(line_of(pipe));
    EXPECT_THAT(agent.read_line(), HasSubstr(R"("Status":"0"}})"));
    agent.close_input();
    EXPECT_TRUE(agent.await_error(kWaiting));
    pipe.release();
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.error, std::string(kWaiting) + kDone);
}

TEST(Workers, AreWaitedForWhenNobodyReadsWhatServeAnswers)
{
    HeldPipe pipe;
    AgentProcess agent({"--plugin", WORKER_PLUGIN, "serve"});
    agent.close_output();
    agent.send(line_of(pipe));
    EXPECT_TRUE(agent.await_error(kWaiting));
    pipe.release();
    EXPECT_EQ(agent.wait().exit_status, 0);
}

TEST(Workers, DoNotDelayTheEndOnASignal)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        const HeldPipe pipe;
        AgentProcess called(call_of(pipe));
        EXPECT_TRUE(called.await_error(kWaiting));
        called.signal(signal);
        const AgentResult result = called.wait();
        EXPECT_EQ(result.exit_status, 128 + signal);
        EXPECT_THAT(result.output, HasSubstr(R"("Status":"0")"));
        EXPECT_EQ(result.error, kWaiting);

        AgentProcess serving({"--plugin", WORKER_PLUGIN, "serve"});
        serving.send(line_of(pipe));
        serving.close_input();
        EXPECT_TRUE(serving.await_error(kWaiting));
        serving.signal(signal);
        EXPECT_EQ(serving.wait().exit_status, 128 + signal);
    }
}

} // namespace workers_test
