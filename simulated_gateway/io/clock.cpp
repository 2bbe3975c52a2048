// SPDX-License-Identifier: MIT
#include "io/clock.h"

#include <algorithm>
#include <atomic>
#include <ctime>

namespace simulated_gateway {
namespace {

constexpr int64_t kRuns = -1;
std::atomic<int64_t> fixed_time = kRuns;

} // namespace

int64_t now()
{
    const int64_t fixed = fixed_time;
    return fixed != kRuns ? fixed : std::time(nullptr);
}

int64_t seconds_since(int64_t time)
{
    return std::max<int64_t>(0, now() - time);
}

int64_t later(int64_t time, int64_t seconds)
{
    return seconds > INT64_MAX - time ? INT64_MAX : time + seconds;
}

void fix_clock(std::optional<int64_t> time)
{
    fixed_time = time.value_or(kRuns);
}

bool clock_runs()
{
    return fixed_time == kRuns;
}

} // namespace simulated_gateway
