// SPDX-License-Identifier: MIT
// Daily time spans that recur on given days of the week. A span that ends no later than it starts
// ends on the next day. Days and times are in UTC, as the gateway's clock.
#pragma once

#include <cstdint>
#include <string>

namespace simulated_gateway {

struct WeeklyPeriod {
    const std::string &start; // as TimeOfDay
    const std::string &end;
    const std::string &days; // on which it starts, as DaysOfWeek
};

// Whether the time, in seconds since 1970, is within the period. The end is exclusive.
bool is_within(const WeeklyPeriod &period, int64_t time);

// When the period last ended; 0 if it has not in the week before the time.
int64_t last_end(const WeeklyPeriod &period, int64_t time);

} // namespace simulated_gateway
