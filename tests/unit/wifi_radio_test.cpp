#include "handler_test.h"
#include "request.h"
#include "wifi.h"

#include <cstring>

namespace wifi_radio_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;
using Names = std::vector<std::string>;

// ---- GET_WIFI_SLEEP_SCHEDULE -------------------------------------------------------------------

class SleepScheduleTest : public HandlerTest {};

// A device whose periods hold their names with the start timer behind; the period of that timer
// cannot be read.
void schedule_failing_at(int32_t timer)
{
    when<devapi_get_wifi_sleep_info>([timer](WifiSleepInfo *info) {
        const std::string number = std::to_string(info->StartTimer);
        strcpy(info->Enable, ("e" + number).c_str());
        strcpy(info->StartTime, ("s" + number).c_str());
        strcpy(info->EndTime, ("t" + number).c_str());
        strcpy(info->DaysOfWeek, ("d" + number).c_str());
        return info->StartTimer == timer ? -7 : 0;
    });
}

std::string period(const std::string &timer)
{
    return R"({"Enable":"e)" + timer + R"(","StartTime":"s)" + timer + R"(","EndTime":"t)" + timer +
           R"(","DaysOfWeek":"d)" + timer + "\"}";
}

TEST_F(SleepScheduleTest, ReportsThreePeriods)
{
    schedule_failing_at(0);
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE", R"({"WIFISleepList":"kept"})"),
              R"({"WIFISleepList":"kept","WIFISleepList":[)" + period("1") + "," + period("3") +
                  "," + period("5") + R"(],"Status":"0"})");
    std::vector<Call> expected;
    for (const int32_t start : {1, 3, 5}) {
        WifiSleepInfo asked = {};
        asked.StartTimer = start;
        asked.EndTimer = start + 1;
        expected.push_back({"devapi_get_wifi_sleep_info", {contents(&asked)}});
    }
    EXPECT_EQ(recording_device::calls(), expected);
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SleepScheduleTest, LeavesOutAPeriodThatCannotBeRead)
{
    schedule_failing_at(3);
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE"),
              R"({"WIFISleepList":[)" + period("1") + "," + period("5") + R"(],"Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{3, "json_get_wifi_sleep_info error! return =-7! index=2\n"}}));
}

TEST_F(SleepScheduleTest, NeverFails)
{
    when<devapi_get_wifi_sleep_info>([](WifiSleepInfo *) { return 1; });
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE"), R"({"WIFISleepList":[],"Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{3, "json_get_wifi_sleep_info error! return =1! index=1\n"},
                                    {3, "json_get_wifi_sleep_info error! return =1! index=2\n"},
                                    {3, "json_get_wifi_sleep_info error! return =1! index=3\n"}}));
}

// ---- SET_WIFI_SLEEP_SCHEDULE -------------------------------------------------------------------

const Request kPeriod({{"Enable", R"("1")"},
                       {"StartTime", R"("23:00")"},
                       {"EndTime", R"("06:30")"},
                       {"DaysOfWeek", R"("12345")"}});
constexpr WifiSleepInfo kPeriodRecord = {0, 0, "1", "23:00", "06:30", "12345"};

std::string schedule(const std::string &elements)
{
    return R"({"First":1,"WIFISleepList":[)" + elements + R"(],"Last":2})";
}

std::string schedule_reply(const std::string &reply)
{
    return R"({"First":1,"Last":2,)" + reply + "}";
}

TEST_F(SleepScheduleTest, ReplacesTheOldSchedule)
{
    const std::string second = kPeriod.with("Enable", R"("0")").json();
    EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(kPeriod.json() + "," + second)),
              schedule_reply(R"("Status":"0")"));
    WifiSleepInfo off = kPeriodRecord;
    off.Enable[0] = '0';
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_del_all_wifi_timerinfo", {}},
                                 {"devapi_add_wifi_timer", {contents(&kPeriodRecord)}},
                                 {"devapi_set_wifi_sleep_info", {contents(&kPeriodRecord)}},
                                 {"devapi_add_wifi_timer", {contents(&off)}},
                                 {"devapi_set_wifi_sleep_info", {contents(&off)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SleepScheduleTest, TheRecordGoesOnAsTheDeviceLeftIt)
{
    when<devapi_add_wifi_timer>([](WifiSleepInfo *info) {
        info->StartTimer += 10;
        info->DaysOfWeek[31] = '!';
        return 0;
    });
    when<devapi_set_wifi_sleep_info>([](WifiSleepInfo *info) {
        info->EndTimer += 1;
        return 0;
    });
    run("SET_WIFI_SLEEP_SCHEDULE", schedule(kPeriod.json() + "," + kPeriod.json()));
    const auto calls = recording_device::calls();
    WifiSleepInfo record = kPeriodRecord;
    EXPECT_EQ(calls.at(1).arguments[0], contents(&record));
    record.StartTimer = 10;
    record.DaysOfWeek[31] = '!';
    EXPECT_EQ(calls.at(2).arguments[0], contents(&record));
    record.EndTimer = 1;
    EXPECT_EQ(calls.at(3).arguments[0], contents(&record));
    record.StartTimer = 20;
    EXPECT_EQ(calls.at(4).arguments[0], contents(&record));
}

TEST_F(SleepScheduleTest, TakesAnyNumberOfPeriods)
{
    for (const size_t count : {0u, 1u, 3u, 1000u}) {
        recording_device::reset();
        std::string elements;
        for (size_t at = 0; at < count; ++at) {
            elements += (at > 0 ? "," : "") + kPeriod.json();
        }
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(elements)),
                  schedule_reply(R"("Status":"0")"));
        EXPECT_EQ(recording_device::calls().size(), 1 + 2 * count);
    }
}

TEST_F(SleepScheduleTest, StopsWhenTheOldScheduleStays)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        recording_device::reset();
        when<devapi_del_all_wifi_timerinfo>([result] { return result; });
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(kPeriod.json())),
                  schedule_reply(failure("del all wifi timerinfo failed")));
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_del_all_wifi_timerinfo"});
    }
}

TEST_F(SleepScheduleTest, StopsAtTheFirstElementWithoutOneOfItsKeys)
{
    std::vector<std::string> wrong = {"null", "7",  R"("Enable")",
                                      "[]",   "{}", "[" + kPeriod.json() + "]"};
    for (const auto &[key, json] : kPeriod.keys()) {
        wrong.push_back(kPeriod.without(key).json());
        for (const std::string &no_text : kNoTexts) {
            wrong.push_back(kPeriod.with(key, no_text).json());
        }
    }
    for (const std::string &element : wrong) {
        recording_device::reset();
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE",
                      schedule(kPeriod.json() + "," + element + "," + kPeriod.json())),
                  schedule_reply(failure("parse sleep info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_del_all_wifi_timerinfo", "devapi_add_wifi_timer",
                         "devapi_set_wifi_sleep_info"}))
            << element;
    }
}

TEST_F(SleepScheduleTest, StopsAtTheFirstPeriodThatTheDeviceRefuses)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        recording_device::reset();
        int countdown = 2;
        when<devapi_set_wifi_sleep_info>(
            [&](WifiSleepInfo *) { return --countdown == 0 ? result : 0; });
        const std::string three = kPeriod.json() + "," + kPeriod.json() + "," + kPeriod.json();
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(three)),
                  schedule_reply(failure("set ssid failed")));
        EXPECT_EQ(recording_device::calls().size(), 5u);

        recording_device::reset();
        when<devapi_add_wifi_timer>([result](WifiSleepInfo *) { return result; });
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(three)),
                  schedule_reply(failure("add wifi timer failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_del_all_wifi_timerinfo", "devapi_add_wifi_timer"}));
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SleepScheduleTest, AnElementFillsTheTextsOfARecord)
{
    Request request({});
    for (const auto &[key, json] : kPeriod.keys()) {
        request = request.with(key, quoted(text_of_length(100000)));
    }
    WifiSleepInfo record = {7, 8, "x", "x", "x", "x"};
    EXPECT_EQ(parse_wifi_sleep_info_from_json(&record, parse(request.json()).get()), 0);
    WifiSleepInfo expected = {7, 8, "", "", "", ""};
    text_of_length(15).copy(expected.Enable, 15);
    for (char *field : {expected.StartTime, expected.EndTime, expected.DaysOfWeek}) {
        text_of_length(31).copy(field, 31);
    }
    EXPECT_EQ(contents(&record), contents(&expected));

    EXPECT_EQ(parse_wifi_sleep_info_from_json(&record, nullptr), -1);
    EXPECT_EQ(parse_wifi_sleep_info_from_json(&record, parse("{}").get()), -1);
    EXPECT_EQ(parse_wifi_sleep_info_from_json(nullptr, parse(kPeriod.json()).get()), -1);
    EXPECT_EQ(contents(&record), contents(&expected)) << "a refused element leaves it untouched";
}

} // namespace wifi_radio_test
