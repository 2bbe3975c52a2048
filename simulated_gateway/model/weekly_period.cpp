// SPDX-License-Identifier: MIT
#include "model/weekly_period.h"

#include "io/clock.h"

#include <algorithm>

namespace simulated_gateway {
namespace {

constexpr int64_t kDay = 86'400;
constexpr int64_t kDaysOfWeek = 7;

int64_t seconds_of_day(const std::string &time)
{
    const auto digit = [&](size_t at) {
        return time[at] - '0';
    };
    const int64_t hours = 10 * digit(0) + digit(1);
    const int64_t minutes = 10 * digit(3) + digit(4);
    return hours * 3600 + minutes * 60;
}

// From 1, Monday, to 7. 1 January 1970 was a Thursday.
char day_of_week(int64_t day)
{
    return static_cast<char>('1' + (day + 3) % kDaysOfWeek);
}

struct Span {
    int64_t start;
    int64_t end;
};

// Calls visit with each span that started on the day of the time or in the week before it.
template <class Visit> void visit_spans(const WeeklyPeriod &period, int64_t time, Visit visit)
{
    const int64_t start = seconds_of_day(period.start);
    const int64_t end = seconds_of_day(period.end);
    const int64_t today = time / kDay;
    for (int64_t day = std::max<int64_t>(0, today - kDaysOfWeek); day <= today; ++day) {
        if (period.days.find(day_of_week(day)) != std::string::npos) {
            const int64_t midnight = day * kDay;
            visit(Span{later(midnight, start), later(midnight, end <= start ? kDay + end : end)});
        }
    }
}

} // namespace

bool is_within(const WeeklyPeriod &period, int64_t time)
{
    bool within = false;
    visit_spans(period, time, [&](const Span &span) {
        within = within || (span.start <= time && time < span.end);
    });
    return within;
}

int64_t last_end(const WeeklyPeriod &period, int64_t time)
{
    int64_t last = 0;
    visit_spans(period, time, [&](const Span &span) {
        if (span.end <= time) {
            last = std::max(last, span.end);
        }
    });
    return last;
}

} // namespace simulated_gateway
