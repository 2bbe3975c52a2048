// SPDX-License-Identifier: MIT
// The last lines of the trace, which the gateway keeps in memory.
#include "core/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using simulated_gateway::Trace;

constexpr size_t kMostBytes = 65536;

Trace::Call call_of(const char *function, int32_t result, int64_t microseconds,
                    const std::string &note = "")
{
    return {function, {}, true, result, std::chrono::microseconds(microseconds), note};
}

// The number of bytes of text, without line ends.
size_t length_of(const std::string &lines)
{
    return lines.size() - static_cast<size_t>(std::ranges::count(lines, '\n'));
}

TEST(RecentTrace, HasCallsAndEventsAsTheTraceWritesThem)
{
    Trace trace;
    trace.call(0, call_of("devapi_one", 0, 7));
    trace.call(12, call_of("devapi_two", -1, 1234567, "a note\nof two lines"));
    trace.event(-3, "warning", "low battery");
    trace.event(3600, "power cycle");
    EXPECT_EQ(trace.recent(), "[0] devapi_one = 0 in 7 us\n"
                              "[12] devapi_two = -1 in 1234567 us, a note\\nof two lines\n"
                              "[-3] warning, low battery\n"
                              "[3600] power cycle\n");
}

// Lines of every length: the counted size has to be that of the returned lines.
TEST(RecentTrace, IsTheLast64KiB)
{
    const auto look_at = [](int64_t uptime, const Trace::Call &call) {
        Trace trace;
        for (int count = 0; count < 5000; ++count) {
            trace.call(uptime, call);
        }
        const std::string recent = trace.recent();
        const size_t line = recent.find('\n');
        EXPECT_EQ(length_of(recent), kMostBytes / line * line) << recent.substr(0, line);
    };
    look_at(0, call_of("f", 0, 0));
    look_at(9, call_of("f", -9, 9));
    look_at(10, call_of("devapi_get_ad_base_info", 10, 99));
    look_at(INT64_MAX, call_of("f", INT32_MIN, INT64_MAX));
    look_at(INT64_MIN, call_of("f", 1000, INT64_MIN, "note"));
}

TEST(RecentTrace, DropsTheOldestFirst)
{
    Trace trace;
    trace.event(1, "first");
    trace.event(2, std::string(kMostBytes - std::string("[1] first[2] ").size(), 'x').c_str());
    EXPECT_TRUE(trace.recent().starts_with("[1] first\n[2] xxx"));
    trace.event(3, "");
    EXPECT_TRUE(trace.recent().starts_with("[2] xxx"));
}

} // namespace
