// SPDX-License-Identifier: MIT
// What a fleet refuses in advance.
#include "fleet/limits.h"
#include "fleet/status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace agent::fleet;
using testing::HasSubstr;

constexpr uint64_t kGigabyte = 1024UL * 1024 * 1024;

// A machine with this limit alone.
Limits with(std::optional<uint64_t> Limits::*limit, uint64_t value)
{
    Limits limits;
    limits.*limit = value;
    return limits;
}

TEST(LimitsTest, MemoryLimitsTheNumber)
{
    EXPECT_EQ(problem_of(with(&Limits::memory, kGigabyte), 800), "");
    EXPECT_EQ(problem_of(with(&Limits::memory, kGigabyte), 10'000),
              "10000 gateways need about 11718 MB of memory, and 1024 MB are free: at most 873 can "
              "be started");
    EXPECT_EQ(problem_of(with(&Limits::memory, kGigabyte), 873), "");
    EXPECT_NE(problem_of(with(&Limits::memory, kGigabyte), 874), "");
}

TEST(LimitsTest, ProcessesLimitTheNumber)
{
    EXPECT_EQ(problem_of(with(&Limits::processes, 100), 100), "");
    EXPECT_EQ(problem_of(with(&Limits::processes, 100), 101),
              "101 gateways are as many processes, and the system allows 100 more (ulimit -u, "
              "pids.max, pid_max)");
}

TEST(LimitsTest, DescriptorsLimitAGateway)
{
    EXPECT_EQ(problem_of(with(&Limits::descriptors, kDescriptorsOfGateway), 100), "");
    EXPECT_THAT(problem_of(with(&Limits::descriptors, kDescriptorsOfGateway - 1), 1),
                HasSubstr("(ulimit -n)"));
}

TEST(LimitsTest, FilesAndPortsLimitTheNumber)
{
    EXPECT_EQ(problem_of(with(&Limits::files, 3200), 100), "");
    EXPECT_THAT(problem_of(with(&Limits::files, 3199), 100), HasSubstr("(fs.file-max)"));
    EXPECT_EQ(problem_of(with(&Limits::ports, 100), 100), "");
    EXPECT_THAT(problem_of(with(&Limits::ports, 99), 100), HasSubstr("ip_local_port_range"));
}

TEST(LimitsTest, WhatIsUnknownLimitsNothing)
{
    EXPECT_EQ(problem_of({}, 1'000'000), "");
}

TEST(LimitsTest, ThisMachineHasMemoryPortsAndDescriptors)
{
    const Limits limits = limits_of_this_machine();
    EXPECT_GT(limits.memory.value_or(0), 0U);
    EXPECT_GT(limits.ports.value_or(0), 0U);
    EXPECT_GT(limits.descriptors.value_or(0), 0U);
}

TEST(StatusTest, MetricsHaveEachStateAndCause)
{
    Status status;
    status.up = 7;
    status.failed = 2;
    status.hangs = 3;
    status.requests = 12'345'678'901;
    status.memory_each = 1000;
    const std::string text = metrics_of(status);
    EXPECT_THAT(text, HasSubstr("\nhgfleet_gateways{state=\"up\"} 7\n"));
    EXPECT_THAT(text, HasSubstr("\nhgfleet_gateways{state=\"failed\"} 2\n"));
    EXPECT_THAT(text, HasSubstr("\nhgfleet_restarts_total{cause=\"hang\"} 3\n"));
    EXPECT_THAT(text, HasSubstr("\nhgfleet_requests_total 12345678901\n"));
    EXPECT_THAT(text, HasSubstr("\nhgfleet_memory_bytes 7000\n"));
}

TEST(StatusTest, TheTableHasTheSameNumbers)
{
    Status status;
    status.up = 9998;
    status.off = 2;
    status.memory_each = 512UL * 1024;
    const auto table = table_of(status);
    ASSERT_EQ(table.size(), 4U);
    EXPECT_THAT(table[0], HasSubstr("up 9998 "));
    EXPECT_THAT(table[0], HasSubstr("off 2 "));
    EXPECT_THAT(table[3], HasSubstr("0.50 MB each, 4999 MB in all"));
}

} // namespace
