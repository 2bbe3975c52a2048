// SPDX-License-Identifier: MIT
// Tests in which one agent changes the simulated gateway and the next one reports the change.
#pragma once

#include "agent_commands.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// The reply of a successful setting.
constexpr char kDone[] = "{\"Status\":\"0\"}\n";

// A gateway whose state is kept in a file from one agent to the next. Its clock is stopped at a
// time that the test chooses, so that what depends on the time is predictable.
class GatewayTest : public testing::Test {
  protected:
    GatewayTest();
    ~GatewayTest() override;

    static constexpr int64_t kStart = 1767225600;
    static void set_time(int64_t time);

    // Each of these runs a separate agent.
    AgentResult run(const std::string &command, const std::string &request = "{}") const;
    std::string reply(const std::string &command, const std::string &request = "{}") const;
    // The text of a key in the reply.
    std::string text(const std::string &command, const std::string &key) const;

    // Sets, and expects the keys in the reply of the query that follows.
    void expect_kept(const std::string &setting, const std::string &request,
                     const std::string &query, const std::string &keys) const;

    const std::string state_;
};
