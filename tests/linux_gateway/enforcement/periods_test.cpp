// SPDX-License-Identifier: MIT
#include "enforcement/periods.h"

#include "system/error.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace linux_gateway {
namespace {

constexpr int64_t kHour = 3600;

// A time in UTC: "2026-03-29 01:00".
int64_t utc(const std::string &text)
{
    std::tm fields = {};
    const char *end = strptime(text.c_str(), "%Y-%m-%d %H:%M", &fields);
    EXPECT_TRUE(end != nullptr && *end == '\0') << text;
    return timegm(&fields);
}

int minute(int hour, int minute_of_hour = 0)
{
    return 60 * hour + minute_of_hour;
}

const std::set<int> kEveryDay = {1, 2, 3, 4, 5, 6, 7};
constexpr int kSunday = 7;
constexpr int kMonday = 1;

class Periods : public testing::Test {
  protected:
    TimeZone zone{"Europe/Berlin"};

    Restriction at(const std::string &time, const std::vector<Period> &periods) const
    {
        return restriction_at(utc(time), periods, zone);
    }
    void expect_free_until(const std::string &time, const std::vector<Period> &periods,
                           const std::string &change) const
    {
        const Restriction restriction = at(time, periods);
        EXPECT_EQ(restriction.until, std::nullopt) << time;
        EXPECT_EQ(restriction.next_change, utc(change)) << time;
    }
    void expect_restricted_until(const std::string &time, const std::vector<Period> &periods,
                                 const std::string &end) const
    {
        const Restriction restriction = at(time, periods);
        EXPECT_EQ(restriction.until, utc(end)) << time;
        EXPECT_EQ(restriction.next_change, utc(end)) << time;
    }
};

TEST_F(Periods, WithoutPeriodsNothingIsRestrictedAndNothingWillBe)
{
    EXPECT_EQ(at("2026-01-15 12:00", {}).until, std::nullopt);
    EXPECT_EQ(at("2026-01-15 12:00", {}).next_change, std::nullopt);
    EXPECT_EQ(at("2026-01-15 12:00", {{minute(8), minute(9), {}}}).next_change, std::nullopt);
}

// In winter the clock in Berlin is an hour ahead of UTC.
TEST_F(Periods, BeginAndEndByTheClockOfTheZone)
{
    const std::vector<Period> periods = {{minute(14), minute(16, 30), kEveryDay}};
    expect_free_until("2026-01-15 12:59", periods, "2026-01-15 13:00");
    expect_restricted_until("2026-01-15 13:00", periods, "2026-01-15 15:30");
    expect_restricted_until("2026-01-15 15:29", periods, "2026-01-15 15:30");
    expect_free_until("2026-01-15 15:30", periods, "2026-01-16 13:00");
}

// 18 January 2026 is a Sunday.
TEST_F(Periods, ApplyOnTheirDaysOfTheWeek)
{
    const std::vector<Period> periods = {{minute(14), minute(16), {kSunday}}};
    expect_free_until("2026-01-15 13:30", periods, "2026-01-18 13:00");
    expect_restricted_until("2026-01-18 13:30", periods, "2026-01-18 15:00");
    expect_free_until("2026-01-18 15:00", periods, "2026-01-25 13:00");
}

TEST_F(Periods, ThatEndBeforeTheyStartEndOnTheNextDay)
{
    const std::vector<Period> periods = {{minute(21), minute(7), {kSunday}}};
    expect_free_until("2026-01-18 19:59", periods, "2026-01-18 20:00");
    expect_restricted_until("2026-01-18 20:00", periods, "2026-01-19 06:00");
    expect_restricted_until("2026-01-18 23:30", periods, "2026-01-19 06:00"); // Monday in Berlin
    expect_restricted_until("2026-01-19 05:59", periods, "2026-01-19 06:00");
    expect_free_until("2026-01-19 06:00", periods, "2026-01-25 20:00");
}

// Just after midnight it is still the day before in UTC.
TEST_F(Periods, JustAfterMidnightBelongToTheNewDay)
{
    const std::vector<Period> periods = {{minute(0), minute(0, 30), {kMonday}}};
    expect_free_until("2026-01-18 22:59", periods, "2026-01-18 23:00");
    expect_restricted_until("2026-01-18 23:00", periods, "2026-01-18 23:30");
    expect_free_until("2026-01-18 23:30", periods, "2026-01-25 23:00");
}

TEST_F(Periods, ThatStartWhenTheyEndLastADay)
{
    const std::vector<Period> periods = {{minute(9), minute(9), {kSunday}}};
    expect_restricted_until("2026-01-18 08:00", periods, "2026-01-19 08:00");
    expect_free_until("2026-01-19 08:00", periods, "2026-01-25 08:00");
}

TEST_F(Periods, ThatOverlapRestrictUntilTheLastEnds)
{
    const std::vector<Period> periods = {{minute(14), minute(16), kEveryDay},
                                         {minute(15), minute(18), kEveryDay}};
    expect_restricted_until("2026-01-15 13:00", {periods[0]}, "2026-01-15 15:00");
    const Restriction within_both = at("2026-01-15 14:30", periods);
    EXPECT_EQ(within_both.until, utc("2026-01-15 17:00"));
    EXPECT_EQ(within_both.next_change, utc("2026-01-15 15:00"));
    EXPECT_EQ(at("2026-01-15 13:00", periods).next_change, utc("2026-01-15 14:00"));
    expect_free_until("2026-01-15 17:00", periods, "2026-01-16 13:00");
}

TEST_F(Periods, AllTheTimeNeverLeaveAGap)
{
    const std::vector<Period> periods = {{minute(0), minute(0), kEveryDay}};
    for (int64_t time = utc("2026-03-27 00:00"); time < utc("2026-03-31 00:00");
         time += kHour / 2) {
        EXPECT_TRUE(restriction_at(time, periods, zone).until.has_value()) << time;
    }
}

// ---- Daylight saving: on 29 March 2026 from 2:00 to 3:00, on 25 October from 3:00 to 2:00
// --------

TEST_F(Periods, FollowTheClockOverTheStartOfDaylightSaving)
{
    const std::vector<Period> periods = {{minute(14), minute(16), kEveryDay}};
    expect_restricted_until("2026-03-28 13:00", periods, "2026-03-28 15:00");
    expect_free_until("2026-03-28 15:00", periods, "2026-03-29 12:00");
    expect_restricted_until("2026-03-29 12:00", periods, "2026-03-29 14:00");
}

TEST_F(Periods, OfTheNightAreAnHourShorterWhenDaylightSavingStarts)
{
    const std::vector<Period> periods = {{minute(22), minute(6), kEveryDay}};
    const Restriction night = at("2026-03-28 21:00", periods);
    EXPECT_EQ(night.until, utc("2026-03-29 04:00"));
    EXPECT_EQ(*night.until - utc("2026-03-28 21:00"), 7 * kHour);
}

TEST_F(Periods, OfTheNightAreAnHourLongerWhenDaylightSavingEnds)
{
    const std::vector<Period> periods = {{minute(22), minute(6), kEveryDay}};
    const Restriction night = at("2026-10-24 20:00", periods);
    EXPECT_EQ(night.until, utc("2026-10-25 05:00"));
    EXPECT_EQ(*night.until - utc("2026-10-24 20:00"), 9 * kHour);
}

TEST_F(Periods, ThatStartInASkippedHourStartAfterIt)
{
    expect_restricted_until("2026-03-29 01:00", {{minute(2, 30), minute(4), {kSunday}}},
                            "2026-03-29 02:00");
    expect_free_until("2026-03-29 00:59", {{minute(2, 30), minute(4), {kSunday}}},
                      "2026-03-29 01:00");
}

TEST_F(Periods, ThatEndInASkippedHourEndAtItsStart)
{
    expect_restricted_until("2026-03-29 00:30", {{minute(1), minute(2, 30), {kSunday}}},
                            "2026-03-29 01:00");
}

TEST_F(Periods, WithinASkippedHourAreLeftOut)
{
    expect_free_until("2026-03-29 00:30", {{minute(2, 10), minute(2, 50), {kSunday}}},
                      "2026-04-05 00:10");
}

TEST_F(Periods, OfARepeatedHourReachFromItsFirstToItsLastTime)
{
    const std::vector<Period> periods = {{minute(2, 15), minute(2, 45), {kSunday}}};
    expect_free_until("2026-10-25 00:14", periods, "2026-10-25 00:15");
    expect_restricted_until("2026-10-25 00:15", periods, "2026-10-25 01:45");
    expect_restricted_until("2026-10-25 01:00", periods, "2026-10-25 01:45");
    expect_free_until("2026-10-25 01:45", periods, "2026-11-01 01:15");
}

// Without daylight saving, and with offsets that are no whole hours.
TEST(TimeZones, OfOtherPlacesAreFollowedAsWell)
{
    const std::vector<Period> periods = {{minute(0, 15), minute(1), {kMonday}}};
    EXPECT_EQ(
        restriction_at(utc("2026-01-18 18:00"), periods, TimeZone("Asia/Kolkata")).next_change,
        utc("2026-01-18 18:45"));
    EXPECT_EQ(restriction_at(utc("2026-01-18 18:00"), periods, TimeZone("Asia/Kathmandu")).until,
              std::nullopt);
    EXPECT_EQ(restriction_at(utc("2026-01-18 18:30"), periods, TimeZone("Asia/Kathmandu")).until,
              utc("2026-01-18 19:15"));
    EXPECT_EQ(
        restriction_at(utc("2026-01-19 10:15"), periods, TimeZone("America/Los_Angeles")).until,
        std::nullopt);
    EXPECT_EQ(
        restriction_at(utc("2026-01-19 08:15"), periods, TimeZone("America/Los_Angeles")).until,
        utc("2026-01-19 09:00"));
}

TEST(TimeZones, ThatDoNotExistAreRefusedByName)
{
    try {
        TimeZone("Europe/Atlantis");
        FAIL();
    } catch (const Error &error) {
        EXPECT_STREQ(error.what(),
                     "there is no time zone \"Europe/Atlantis\" in /usr/share/zoneinfo");
    }
    EXPECT_THROW(TimeZone("../../etc/passwd"), Error);
}

class MachinesZone : public testing::Test {
  protected:
    void TearDown() override { unsetenv("TZ"); }

    static int64_t hour_of_midnight(const char *variable)
    {
        setenv("TZ", variable, 1);
        return TimeZone("").time_of(0, 0, TimeZone::Occurrence::kFirst) / kHour;
    }
};

TEST_F(MachinesZone, IsThatOfTheEnvironment)
{
    EXPECT_EQ(hour_of_midnight("Asia/Tokyo"), -9);
    EXPECT_EQ(hour_of_midnight(":Asia/Tokyo"), -9);
    EXPECT_EQ(hour_of_midnight(""), 0);
    EXPECT_THROW(hour_of_midnight("Nowhere/Town"), Error);
}

TEST_F(MachinesZone, DoesNotReplaceANamedZone)
{
    setenv("TZ", "Asia/Tokyo", 1);
    EXPECT_EQ(TimeZone("UTC").time_of(0, 0, TimeZone::Occurrence::kFirst), 0);
}

} // namespace
} // namespace linux_gateway
