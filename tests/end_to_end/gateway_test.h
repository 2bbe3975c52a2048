// Tests of what one agent does to the simulated gateway and the next one finds.
#pragma once

#include "agent_commands.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// The reply of a setting that succeeded.
constexpr char kDone[] = "{\"Status\":\"0\"}\n";

// A gateway whose state stays in a file from one agent to the next. Its clock stands still at a
// time of the test's, so that what depends on the time can be told.
class GatewayTest : public testing::Test {
  protected:
    GatewayTest();
    ~GatewayTest() override;

    static constexpr int64_t kStart = 1767225600;
    static void set_time(int64_t time);

    // Each of them runs an agent of its own.
    AgentResult run(const std::string &command, const std::string &request = "{}") const;
    std::string reply(const std::string &command, const std::string &request = "{}") const;
    // The text behind a key of the reply.
    std::string text(const std::string &command, const std::string &key) const;

    // Sets, and expects the keys in what is asked for afterwards.
    void expect_kept(const std::string &setting, const std::string &request,
                     const std::string &query, const std::string &keys) const;

    const std::string state_;
};
