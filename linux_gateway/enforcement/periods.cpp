// SPDX-License-Identifier: MIT
#include "enforcement/periods.h"

#include <algorithm>

namespace linux_gateway {
namespace {

// From 1, Monday, to 7. 1 January 1970 was a Thursday.
int day_of_week(int64_t day)
{
    return static_cast<int>((day + 3) % 7) + 1;
}

void keep_earlier(std::optional<int64_t> &earliest, int64_t time)
{
    earliest = std::min(earliest.value_or(time), time);
}

} // namespace

Restriction restriction_at(int64_t time, const std::vector<Period> &periods, const TimeZone &zone)
{
    Restriction restriction;
    const int64_t today = zone.day_of(time);
    for (const Period &period : periods) {
        const int64_t days = period.end_minute <= period.start_minute ? 1 : 0;
        // A period of yesterday may still be in force, and one of today in a week is the next one
        // if today's has ended.
        for (int64_t day = today - 1; day <= today + 7; ++day) {
            if (!period.days.contains(day_of_week(day))) {
                continue;
            }
            const int64_t start =
                zone.time_of(day, period.start_minute, TimeZone::Occurrence::kFirst);
            const int64_t end =
                zone.time_of(day + days, period.end_minute, TimeZone::Occurrence::kLast);
            if (start > time && start < end) {
                keep_earlier(restriction.next_change, start);
            } else if (start <= time && end > time) {
                keep_earlier(restriction.next_change, end);
                restriction.until = std::max(restriction.until.value_or(end), end);
            }
        }
    }
    return restriction;
}

} // namespace linux_gateway
