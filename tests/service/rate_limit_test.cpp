// SPDX-License-Identifier: MIT
// Token buckets, with a simulated time.
#include "service/gate/rate_limit.h"
#include "service/gate/refusals.h"

#include <gtest/gtest.h>

namespace agent::service {

namespace {

using std::chrono::milliseconds;
using Time = TokenBucket::Time;

constexpr Time kStart{std::chrono::hours(1)};

int taken_at(TokenBucket &bucket, Time now, int tries)
{
    int taken = 0;
    for (int left = tries; left > 0; --left) {
        taken += bucket.take(now) ? 1 : 0;
    }
    return taken;
}

} // namespace

TEST(TokenBucket, GivesItsBurstAndThenNothing)
{
    TokenBucket bucket({2, 5}, kStart);
    EXPECT_EQ(taken_at(bucket, kStart, 100), 5);
}

TEST(TokenBucket, FillsWithTime)
{
    TokenBucket bucket({2, 5}, kStart);
    taken_at(bucket, kStart, 5);
    EXPECT_EQ(taken_at(bucket, kStart + milliseconds(499), 10), 0);
    EXPECT_EQ(taken_at(bucket, kStart + milliseconds(500), 10), 1);
    EXPECT_EQ(taken_at(bucket, kStart + milliseconds(1500), 10), 2);
}

TEST(TokenBucket, HoldsNoMoreThanItsBurst)
{
    TokenBucket bucket({2, 5}, kStart);
    EXPECT_EQ(taken_at(bucket, kStart + std::chrono::hours(24), 100), 5);
}

TEST(TokenBucket, KeepsPartsOfATokenBetweenTries)
{
    TokenBucket bucket({1, 1}, kStart);
    taken_at(bucket, kStart, 1);
    int taken = 0;
    for (int step = 1; step <= 100; ++step) {
        taken += bucket.take(kStart + milliseconds(step * 125)) ? 1 : 0;
    }
    EXPECT_EQ(taken, 12);
}

TEST(TokenBucket, TakesATimeThatGoesBackForNone)
{
    TokenBucket bucket({1, 1}, kStart);
    taken_at(bucket, kStart, 1);
    EXPECT_EQ(taken_at(bucket, kStart - std::chrono::hours(1), 10), 0);
    EXPECT_EQ(taken_at(bucket, kStart + milliseconds(999), 10), 0);
    EXPECT_EQ(taken_at(bucket, kStart + milliseconds(1000), 10), 1);
}

TEST(RateLimiter, CountsEachRoleByItself)
{
    RateLimiter limiter;
    limiter.set_limits({{"one", {1, 1}}, {"two", {1, 1}}}, kStart);
    EXPECT_TRUE(limiter.take("one", kStart));
    EXPECT_FALSE(limiter.take("one", kStart));
    EXPECT_TRUE(limiter.take("two", kStart));
}

TEST(RateLimiter, LetsRolesWithoutALimitThrough)
{
    RateLimiter limiter;
    limiter.set_limits({{"one", {1, 1}}}, kStart);
    for (int left = 1000; left > 0; --left) {
        ASSERT_TRUE(limiter.take("owner", kStart));
    }
}

TEST(RateLimiter, KeepsABucketWhoseLimitIsTheSame)
{
    RateLimiter limiter;
    limiter.set_limits({{"one", {1, 1}}, {"two", {1, 1}}}, kStart);
    EXPECT_TRUE(limiter.take("one", kStart));
    EXPECT_TRUE(limiter.take("two", kStart));
    limiter.set_limits({{"one", {1, 1}}, {"two", {1, 2}}}, kStart);
    EXPECT_FALSE(limiter.take("one", kStart));
    EXPECT_TRUE(limiter.take("two", kStart));
}

TEST(RateLimiter, ForgetsARoleThatHasNoLimitAnyMore)
{
    RateLimiter limiter;
    limiter.set_limits({{"one", {1, 1}}}, kStart);
    EXPECT_TRUE(limiter.take("one", kStart));
    limiter.set_limits({}, kStart);
    EXPECT_TRUE(limiter.take("one", kStart));
    EXPECT_TRUE(limiter.take("one", kStart));
}

TEST(RefusalEvents, AreLimitedForEachClient)
{
    RefusalEvents events;
    for (int count = 0; count < 10; ++count) {
        EXPECT_EQ(events.take("one", kStart), 0U);
    }
    for (int count = 0; count < 500; ++count) {
        EXPECT_EQ(events.take("one", kStart), std::nullopt);
    }
    EXPECT_EQ(events.take("two", kStart), 0U);
    EXPECT_EQ(events.take("one", kStart + milliseconds(1000)), 500U);
    EXPECT_EQ(events.take("one", kStart + milliseconds(1000)), std::nullopt);
    EXPECT_EQ(events.take("one", kStart + milliseconds(2000)), 1U);
}

TEST(RefusalEvents, HoldManyClients)
{
    RefusalEvents events;
    for (int count = 0; count < 100'000; ++count) {
        EXPECT_EQ(events.take(std::to_string(count), kStart), 0U);
    }
}

} // namespace agent::service
