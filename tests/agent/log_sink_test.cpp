// SPDX-License-Identifier: MIT
// The log's lines on standard error.
#include "captured_error.h"
#include "protocol/log_sink.h"
#include "smart_router_service/host_agent.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

TEST(LogSink, WritesOneLineForEachCall)
{
    const CapturedError error;
    agent::log_line(3, "no end");
    agent::log_line(3, "an end\n");
    agent::log_line(0, "another end\r\n");
    agent::log_line(-1, "two ends\n\n");
    agent::log_line(3, "%s", "");
    agent::log_line(4, "too detailed");
    EXPECT_THAT(error.lines(), testing::ElementsAre("<3> hgagent: no end", "<3> hgagent: an end",
                                                    "<0> hgagent: another end",
                                                    "<-1> hgagent: two ends\\n", "<3> hgagent: "));
}

TEST(LogSink, WritesWholeLinesFromManyThreads)
{
    constexpr int kThreads = 8;
    constexpr int kLines = 500;
    const CapturedError error;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            const std::string text(300, static_cast<char>('a' + thread));
            for (int line = 0; line < kLines; ++line) {
                agent::log_line(3, "%s", text.c_str());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = error.lines();
    EXPECT_EQ(lines.size(), static_cast<size_t>(kThreads * kLines));
    for (const std::string &line : lines) {
        EXPECT_EQ(line, "<3> hgagent: " + std::string(300, line.back()));
    }
}

TEST(LogSink, CountsTheErrorsOfLibraries)
{
    const CapturedError error;
    const uint64_t before = agent::errors_of_libraries();
    agent::log_line(3, "of the agent itself");
    ts_mod_log_printf("library", 4, "no error");
    EXPECT_EQ(agent::errors_of_libraries(), before);
    agent::set_log({.level = 2});
    ts_mod_log_printf("library", 3, "not shown");
    agent::set_log({});
    ts_mod_log_printf("library", 0, "shown");
    EXPECT_EQ(agent::errors_of_libraries(), before + 2);
    EXPECT_THAT(error.lines(),
                testing::ElementsAre("<3> hgagent: of the agent itself", "<0> library: shown"));
}
