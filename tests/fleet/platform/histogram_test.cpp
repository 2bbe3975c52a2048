// SPDX-License-Identifier: MIT
#include "fleet/platform/histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace agent::fleet::platform {
namespace {

using Time = Histogram::Time;

TEST(Histogram, IsEmptyAtFirst)
{
    const Histogram times;
    EXPECT_EQ(times.count(), 0U);
    EXPECT_EQ(times.percentile(99).count(), 0);
    EXPECT_EQ(times.largest().count(), 0);
}

TEST(Histogram, KnowsSmallTimesExactly)
{
    Histogram times;
    for (int microseconds = 1; microseconds <= 100; ++microseconds) {
        times.add(Time(microseconds));
    }
    EXPECT_EQ(times.percentile(50).count(), 50);
    EXPECT_EQ(times.percentile(99).count(), 99);
    EXPECT_EQ(times.percentile(100).count(), 100);
    EXPECT_EQ(times.sum().count(), 5050);
    EXPECT_EQ(times.count_up_to(Time(40)), 40U);
}

TEST(Histogram, KnowsPercentilesWithinOneSixtyFourth)
{
    std::mt19937_64 random(1);
    std::lognormal_distribution<> draw(8, 3);
    Histogram times;
    std::vector<int64_t> all;
    for (int number = 0; number < 20000; ++number) {
        all.push_back(static_cast<int64_t>(std::min(draw(random), 6e10)));
        times.add(Time(all.back()));
    }
    std::ranges::sort(all);
    for (const double share : {1.0, 50.0, 90.0, 99.0, 99.9}) {
        const auto exact = static_cast<double>(
            all[static_cast<size_t>(std::ceil(share / 100 * static_cast<double>(all.size()))) - 1]);
        const auto found = static_cast<double>(times.percentile(share).count());
        EXPECT_GE(found, exact) << share;
        EXPECT_LE(found, exact * (1 + 1.0 / 64)) << share;
    }
    EXPECT_EQ(times.largest().count(), all.back());
}

TEST(Histogram, TakesAnyTime)
{
    Histogram times;
    times.add(Time(-1));
    times.add(Time(0));
    times.add(Time::max());
    EXPECT_EQ(times.count(), 3U);
    EXPECT_EQ(times.percentile(50).count(), 0);
    EXPECT_EQ(times.largest(), Time::max());
}

TEST(Histogram, AddsAnother)
{
    Histogram one;
    one.add(Time(10));
    Histogram other;
    other.add(Time(20000));
    one.add(other);
    EXPECT_EQ(one.count(), 2U);
    EXPECT_EQ(one.largest().count(), 20000);
    EXPECT_EQ(one.percentile(50).count(), 10);
    EXPECT_EQ(one.sum().count(), 20010);
}

} // namespace
} // namespace agent::fleet::platform
