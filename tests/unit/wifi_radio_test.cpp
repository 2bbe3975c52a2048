// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "request.h"
#include "wifi.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace wifi_radio_test {

// ---- GET_WIFI_SLEEP_SCHEDULE -------------------------------------------------------------------

class GetWifiSleepSchedule : public HandlerTest {};
class SetWifiSleepSchedule : public HandlerTest {};

// A device whose periods contain their names followed by the start timer; the period of that timer
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

TEST_F(GetWifiSleepSchedule, ReportsThreePeriods)
{
    schedule_failing_at(0);
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE", R"({"WIFISleepList":"kept"})"),
              R"({"WIFISleepList":"kept","WIFISleepList":[)" + period("1") + "," + period("3") +
                  "," + period("5") + R"(],"Status":"0"})");
    Calls expected;
    for (const int32_t start : {1, 3, 5}) {
        WifiSleepInfo asked = {};
        asked.StartTimer = start;
        asked.EndTimer = start + 1;
        expected.push_back({"devapi_get_wifi_sleep_info", {contents(&asked)}});
    }
    EXPECT_EQ(recording_device::calls(), expected);
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetWifiSleepSchedule, LeavesOutAPeriodThatCannotBeRead)
{
    schedule_failing_at(3);
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE"),
              R"({"WIFISleepList":[)" + period("1") + "," + period("5") + R"(],"Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "json_get_wifi_sleep_info error! return =-7! index=2\n"}}));
}

TEST_F(GetWifiSleepSchedule, NeverFails)
{
    when<devapi_get_wifi_sleep_info>([](WifiSleepInfo *) { return 1; });
    EXPECT_EQ(run("GET_WIFI_SLEEP_SCHEDULE"), R"({"WIFISleepList":[],"Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "json_get_wifi_sleep_info error! return =1! index=1\n"},
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

TEST_F(SetWifiSleepSchedule, ReplacesTheOldSchedule)
{
    const std::string second = kPeriod.with("Enable", R"("0")").json();
    EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(kPeriod.json() + "," + second)),
              schedule_reply(R"("Status":"0")"));
    WifiSleepInfo off = kPeriodRecord;
    off.Enable[0] = '0';
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_del_all_wifi_timerinfo", {}},
                     {"devapi_add_wifi_timer", {contents(&kPeriodRecord)}},
                     {"devapi_set_wifi_sleep_info", {contents(&kPeriodRecord)}},
                     {"devapi_add_wifi_timer", {contents(&off)}},
                     {"devapi_set_wifi_sleep_info", {contents(&off)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetWifiSleepSchedule, UsesTheRecordThatTheDeviceLeftForTheNext)
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

TEST_F(SetWifiSleepSchedule, TakesAnyNumberOfPeriods)
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

TEST_F(SetWifiSleepSchedule, StopsIfTheOldScheduleIsNotRemoved)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        recording_device::reset();
        when<devapi_del_all_wifi_timerinfo>([result] { return result; });
        EXPECT_EQ(run("SET_WIFI_SLEEP_SCHEDULE", schedule(kPeriod.json())),
                  schedule_reply(failure("del all wifi timerinfo failed")));
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_del_all_wifi_timerinfo"});
    }
}

TEST_F(SetWifiSleepSchedule, StopsAtTheFirstElementWithoutOneOfItsKeys)
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

TEST_F(SetWifiSleepSchedule, StopsAtTheFirstPeriodThatTheDeviceRefuses)
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

TEST_F(SetWifiSleepSchedule, AnElementFillsTheTextsOfARecord)
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

// Scans, and the channels that may be used. The address sanitizer detects entries that are not
// freed.
namespace wifi_scan_test {

class GetScanWifiSsidlist : public HandlerTest {};
class GetScanChannelPower : public HandlerTest {};
class GetWifiChannelList : public HandlerTest {};

// ---- GET_SCAN_WIFI_SSIDLIST --------------------------------------------------------------------

ScanEntry *found(const std::string &name)
{
    auto *entry = static_cast<ScanEntry *>(malloc(sizeof(ScanEntry)));
    *entry = {"", "-50", "WPA2", "TKIP", "AES", "5G", "0"};
    strcpy(entry->SSID, name.c_str());
    return entry;
}

std::string network(const std::string &name)
{
    return R"({"SSID":")" + name +
           R"(","PowerLevel":"-50","ENCRYPT":"WPA2","WPACypher":"TKIP","WPA2Cypher":"AES",)"
           R"("Band":"5G","Connected":"0"})";
}

// A scan that finds a network for each of the slots; its name is the slot's number.
void scan_finds(const std::vector<size_t> &slots, int32_t result = 0)
{
    when<devapi_get_scan_ssid>([=](ScanResult *scan) {
        scan->reserved0 = -1;
        for (const size_t slot : slots) {
            scan->entries[slot] = found(std::to_string(slot));
        }
        return result;
    });
}

std::vector<size_t> slots_up_to(size_t end)
{
    std::vector<size_t> slots;
    for (size_t slot = 0; slot < end; ++slot) {
        slots.push_back(slot);
    }
    return slots;
}

std::string scan_reply(const std::vector<size_t> &slots)
{
    std::string networks;
    for (const size_t slot : slots) {
        networks += (networks.empty() ? "" : ",") + network(std::to_string(slot));
    }
    return R"({"SSIDList":[)" + networks + R"(],"Status":"0"})";
}

TEST_F(GetScanWifiSsidlist, ScansOnce)
{
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST", R"({"SSIDList":"kept"})"),
              R"({"SSIDList":"kept","SSIDList":[],"Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_scan_ssid", {std::string(sizeof(ScanResult), '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetScanWifiSsidlist, ReportsTheFirstTwentySlots)
{
    for (const size_t count : {1u, 19u, 20u, 21u, 25u, 60u}) {
        scan_finds(slots_up_to(count));
        EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"),
                  scan_reply(slots_up_to(std::min<size_t>(count, 20))))
            << count;
    }
}

TEST_F(GetScanWifiSsidlist, SkipsEmptySlots)
{
    scan_finds({1, 3, 18, 19});
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), scan_reply({1, 3, 18, 19}));
    scan_finds({20, 59});
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), scan_reply({}));
}

TEST_F(GetScanWifiSsidlist, FreesTheEntriesOfAFailedScan)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        for (const size_t count : {0u, 3u, 60u}) {
            scan_finds(slots_up_to(count), result);
            EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), "{" + failure("get scan rssi failed") + "}");
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- GET_SCAN_CHANNEL_POWER --------------------------------------------------------------------

// A scan that returns this many entries and reports count.
void powers_are(size_t entries, int32_t count, int32_t result = 0)
{
    when<devapi_scan_channel_power>([=](ChannelPowerResult *power) {
        power->count = count;
        power->entries = static_cast<ChannelPower *>(calloc(entries, sizeof(ChannelPower)));
        for (size_t at = 0; at < entries; ++at) {
            snprintf(power->entries[at].name, sizeof power->entries[at].name, "n%zu", at);
            snprintf(power->entries[at].dbpower, sizeof power->entries[at].dbpower, "-%zu", at);
        }
        return result;
    });
}

TEST_F(GetScanChannelPower, ReportsAnyNumberOfPowers)
{
    powers_are(1000, 1000);
    const Json object = parse(run("GET_SCAN_CHANNEL_POWER"));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 1000);
}

TEST_F(GetScanChannelPower, IsEmptyWithoutPowers)
{
    for (const int32_t count : {0, -1, INT32_MIN}) {
        powers_are(2, count);
        EXPECT_EQ(run("GET_SCAN_CHANNEL_POWER"), R"({"SSIDList":[],"Status":"0"})") << count;
    }
    when<devapi_scan_channel_power>([](ChannelPowerResult *power) {
        power->count = 5;
        return 0;
    });
    EXPECT_EQ(run("GET_SCAN_CHANNEL_POWER"), R"({"SSIDList":[],"Status":"0"})");
}

// ---- GET_WIFI_CHANNEL_LIST ---------------------------------------------------------------------

// A device with the channels 1, 2, 3 … at 2.4 GHz and 100, 101, 102 … at 5 GHz.
void channels_are(int32_t count_24g, int32_t count_5g, int32_t result = 0)
{
    when<devapi_get_all_wifi_channel_list>([=](WifiChannelList *list) {
        list->count_24g = count_24g;
        list->count_5g = count_5g;
        for (int16_t at = 0; at < 64; ++at) {
            list->channels_24g[at] = static_cast<int16_t>(1 + at);
            list->channels_5g[at] = static_cast<int16_t>(100 + at);
        }
        return result;
    });
}

std::string channel_reply(int count_24g, int count_5g)
{
    const auto names = [](int first, int count) {
        std::string text;
        for (int at = 0; at < count; ++at) {
            text += (at > 0 ? "," : "") + (R"({"Name":")" + std::to_string(first + at) + "\"}");
        }
        return text;
    };
    return R"({"List24g":[)" + names(1, count_24g) + R"(],"List58g":[)" + names(100, count_5g) +
           R"(],"Status":"0"})";
}

TEST_F(GetWifiChannelList, ReportsNoMoreChannelsThanTheArraysHaveRoomFor)
{
    const std::pair<int32_t, int> counts[] = {{0, 0},   {-1, 0},  {INT32_MIN, 0}, {1, 1},
                                              {64, 64}, {65, 64}, {1000, 64},     {INT32_MAX, 64}};
    for (const auto &[count, reported] : counts) {
        channels_are(count, 0);
        EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST"), channel_reply(reported, 0)) << count;
        channels_are(0, count);
        EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST"), channel_reply(0, reported)) << count;
    }
}

TEST_F(GetWifiChannelList, ReportsAnyNumberAsAChannel)
{
    when<devapi_get_all_wifi_channel_list>([](WifiChannelList *list) {
        list->count_24g = 2;
        list->channels_24g[0] = INT16_MIN;
        list->channels_24g[1] = INT16_MAX;
        return 0;
    });
    EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST", R"({"List58g":1})"),
              R"({"List58g":1,"List24g":[{"Name":"-32768"},{"Name":"32767"}],"List58g":[],)"
              R"("Status":"0"})");
}

} // namespace wifi_scan_test
