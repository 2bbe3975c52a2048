// SPDX-License-Identifier: MIT
#include "system/load_meter.h"

#include <gtest/gtest.h>

using namespace linux_gateway;
using std::chrono::milliseconds;

namespace {

constexpr char kInterfaces[] =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop\n"
    "    lo:     100       1    0    0    0     0          0         0      200       1    0    0\n"
    "  wan0:1000000     999    0    0    0     0          0         0   500000     999    0    0\n";

TEST(LoadMeterTest, CountersComeFromTheColumns)
{
    const LoadCounters counters =
        load_counters("cpu  100 10 50 800 40 1 2 3 4 5\ncpu0 1 1 1 1\n", kInterfaces);
    EXPECT_EQ(counters.all_ticks, 1006u);
    EXPECT_EQ(counters.busy_ticks, 166u);
    ASSERT_EQ(counters.interfaces.size(), 2u);
    EXPECT_EQ(counters.interfaces.at("wan0").received_bytes, 1'000'000u);
    EXPECT_EQ(counters.interfaces.at("wan0").sent_bytes, 500'000u);
}

TEST(LoadMeterTest, TextsThatAreNotThoseOfTheKernelCountNothing)
{
    const LoadCounters counters = load_counters("", "wan0: 1 2\n:\nlo: x x x x x x x x x\n");
    EXPECT_EQ(counters.all_ticks, 0u);
    ASSERT_EQ(counters.interfaces.size(), 1u);
    EXPECT_EQ(counters.interfaces.at("lo").sent_bytes, 0u);
}

TEST(LoadMeterTest, ALoadIsTheDifference)
{
    LoadCounters before;
    before.busy_ticks = 100;
    before.all_ticks = 1000;
    before.interfaces["wan0"] = {1000, 2000};
    before.interfaces["reset"] = {1000, 1000};
    LoadCounters after;
    after.busy_ticks = 125;
    after.all_ticks = 1100;
    after.interfaces["wan0"] = {1000 + 250'000, 2000 + 125'000};
    after.interfaces["reset"] = {0, 0};
    after.interfaces["new"] = {1'000'000, 1'000'000};
    const Load load = load_between(before, after, milliseconds(2000));
    EXPECT_EQ(load.cpu_percent, 25);
    EXPECT_EQ(load.rates_of("wan0").received_kbps, 1000);
    EXPECT_EQ(load.rates_of("wan0").sent_kbps, 500);
    EXPECT_EQ(load.rates_of("reset").received_kbps, 0);
    EXPECT_EQ(load.rates_of("new").received_kbps, 0);
    EXPECT_EQ(load.rates_of("missing").sent_kbps, 0);
    EXPECT_EQ(load_between(after, before, milliseconds(0)).cpu_percent, 0);
}

TEST(LoadMeterTest, MemoryThatCanBeFreedIsNotInUse)
{
    EXPECT_EQ(memory_percent("MemTotal:  1000 kB\nMemFree:  10 kB\nMemAvailable:  530 kB\n"), 47);
    EXPECT_EQ(memory_percent("MemTotal: 0 kB\n"), 0);
    EXPECT_EQ(memory_percent("MemTotal: 9223372036854775807 kB\n"), 100);
    EXPECT_EQ(memory_percent(""), 0);
}

TEST(LoadMeterTest, TheMeterReadsThisMachine)
{
    LoadMeter meter;
    const auto first = meter.load();
    EXPECT_GE(first->cpu_percent, 0);
    EXPECT_LE(first->cpu_percent, 100);
    EXPECT_GT(first->memory_percent, 0);
    EXPECT_TRUE(first->rates.contains("lo"));
}

} // namespace
