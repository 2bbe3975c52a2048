// SPDX-License-Identifier: MIT
#include "io/clock.h"

#include <algorithm>
#include <atomic>
#include <ctime>

namespace simulated_gateway {
namespace {

constexpr int64_t kRuns = -1;
constexpr int64_t kLargestLead = INT64_C(100) * 366 * 86400;
std::atomic<int64_t> fixed_time = kRuns;
std::atomic<int64_t> lead = 0;

} // namespace

int64_t now()
{
    const int64_t fixed = fixed_time;
    return fixed != kRuns ? fixed : std::time(nullptr) + lead;
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
    lead = 0;
    fixed_time = time.value_or(kRuns);
}

bool advance_clock(int64_t seconds)
{
    if (!clock_runs()) {
        fixed_time = later(fixed_time, seconds);
    } else if (seconds > kLargestLead - lead) {
        return false;
    } else {
        lead += seconds;
    }
    return true;
}

int64_t clock_lead()
{
    return lead;
}

bool clock_runs()
{
    return fixed_time == kRuns;
}

} // namespace simulated_gateway
