// SPDX-License-Identifier: MIT
#include "model/timed_cache.h"

#include <gtest/gtest.h>

namespace {

using simulated_gateway::TimedCache;

class TimedCacheTest : public testing::Test {
  protected:
    // The value at a time; each computation returns a new one.
    int at(TimedCache<int> &value, int64_t time)
    {
        return value.at(time, [&] { return ++made_; });
    }

  private:
    int made_ = 0;
};

TEST_F(TimedCacheTest, IsComputedOnceForATime)
{
    TimedCache<int> value;
    EXPECT_EQ(at(value, 0), 1);
    EXPECT_EQ(at(value, 0), 1);
    EXPECT_EQ(at(value, 7), 2);
    EXPECT_EQ(at(value, 7), 2);
    EXPECT_EQ(at(value, 0), 3);
}

TEST_F(TimedCacheTest, ACopyStartsEmpty)
{
    TimedCache<int> value;
    EXPECT_EQ(at(value, 0), 1);
    TimedCache<int> copy = value;
    EXPECT_EQ(at(copy, 0), 2);
    EXPECT_EQ(at(value, 0), 1);
    value = copy;
    EXPECT_EQ(at(value, 0), 3);
}

} // namespace
