// SPDX-License-Identifier: MIT
// The periods of parental control.
#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace protect_period_test {

constexpr char kCommand[] = "GET_GREENNET_PROTECT_PERIOD_LIST";

class GetGreennetProtectPeriodList : public HandlerTest {};

// The device with index 7 has this many periods, whose texts end in their number.
void periods_are(int32_t count)
{
    writes<devapi_get_greennet_index_by_mac>(7, 1);
    writes<devapi_get_duration_num_by_index>(count);
    when<devapi_get_protect_period_info>([=](ProtectPeriodInfo *info) {
        const std::string number = std::to_string(info->PeriodNum);
        memset(info, '?', sizeof *info);
        strcpy(info->StartTime, ("s" + number).c_str());
        strcpy(info->EndTime, ("t" + number).c_str());
        strcpy(info->Enable, ("e" + number).c_str());
        strcpy(info->DaysOfWeek, ("d" + number).c_str());
        return 0;
    });
}

std::string period(int32_t number)
{
    const std::string text = std::to_string(number);
    return R"({"StartTime":"s)" + text + R"(","EndTime":"t)" + text + R"(","Enable":"e)" + text +
           R"(","DaysOfWeek":"d)" + text + "\"}";
}

TEST_F(GetGreennetProtectPeriodList, ListsThePeriodsOfADevice)
{
    periods_are(2);
    EXPECT_EQ(run(kCommand, R"({"Mac":"AA:BB","sleep":7})"),
              R"({"Mac":"AA:BB","sleep":7,"Status":"0","Sleep":[)" + period(1) + "," + period(2) +
                  "]}");
    const int32_t none = 0;
    const ProtectPeriodInfo first = {7, 1, "", "", "", ""};
    const ProtectPeriodInfo second = {7, 2, "", "", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                     {"devapi_get_duration_num_by_index", {"7", contents(&none)}},
                     {"devapi_get_protect_period_info", {contents(&first)}},
                     {"devapi_get_protect_period_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetGreennetProtectPeriodList, NeedsADeviceOfTheTable)
{
    for (const int32_t result : {0, -1, 2, -2, 1000, INT32_MIN}) {
        recording_device::reset();
        writes<devapi_get_greennet_index_by_mac>(7, result);
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"),
                  R"({"Mac":"x",)" + failure("xml mac index not found") + "}");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetGreennetProtectPeriodList, IgnoresTheResultOfTheCount)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        periods_are(0);
        when<devapi_get_duration_num_by_index>([result](int32_t, int32_t *) { return result; });
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"), R"({"Mac":"x","Status":"0","Sleep":[]})");
        writes<devapi_get_duration_num_by_index>(1, result);
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"),
                  R"({"Mac":"x","Status":"0","Sleep":[)" + period(1) + "]}");
    }
}

TEST_F(GetGreennetProtectPeriodList, ListsNoPeriodsOrMany)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        periods_are(count);
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"), R"({"Mac":"x","Status":"0","Sleep":[]})")
            << count;
    }
    periods_are(1000);
    const Json object = parse(run(kCommand, R"({"Mac":"x"})"));
    EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(object.get(), "Sleep")), 1000);
}

} // namespace protect_period_test

namespace protect_period_setting_test {

constexpr char kCommand[] = "SET_GREENNET_PROTECT_PERIOD_LIST";

const Request kPeriod({{"StartTime", R"("21:00")"},
                       {"EndTime", R"("06:30")"},
                       {"Enable", R"("1")"},
                       {"DaysOfWeek", R"("12345")"}});

const LogLine kIndex = {7, "mac_index = 7\n"};
const LogLine kNoText = {3, "string is null.\n"};

std::string list_of(const std::string &elements)
{
    return R"({"Mac":"AA:BB","Sleep":[)" + elements + R"(],"Last":2})";
}

std::string reply(const std::string &members)
{
    return R"({"Mac":"AA:BB","Last":2,)" + members + "}";
}

class SetGreennetProtectPeriodList : public HandlerTest {
  protected:
    SetGreennetProtectPeriodList() { forget(); }

    static void forget()
    {
        HandlerTest::forget();
        writes<devapi_get_greennet_index_by_mac>(7, 1);
    }
};

TEST_F(SetGreennetProtectPeriodList, ReplacesThePeriodsOfADevice)
{
    when<devapi_add_greennet_duration>([number = 40](int32_t, int32_t *out) mutable {
        EXPECT_EQ(*out, 0);
        *out = ++number;
        return 0;
    });
    const std::string off = kPeriod.with("Enable", R"("0")").json();
    EXPECT_EQ(run(kCommand, list_of(off + "," + kPeriod.json())), reply(R"("Status":"0")"));
    const int32_t none = 0;
    const ProtectPeriodInfo first = {7, 41, "21:00", "06:30", "0", "12345"};
    const ProtectPeriodInfo second = {7, 42, "21:00", "06:30", "1", "12345"};
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                     {"devapi_del_all_duration", {"7"}},
                     {"devapi_add_greennet_duration", {"7", contents(&none)}},
                     {"devapi_set_protect_period_info", {contents(&first)}},
                     {"devapi_add_greennet_duration", {"7", contents(&none)}},
                     {"devapi_set_protect_period_info", {contents(&second)}},
                     {"devapi_set_protect_enable", {"1", "7"}}}));
    EXPECT_EQ(recording_host::log_lines(), LogLines{kIndex});
}

TEST_F(SetGreennetProtectPeriodList, AnEmptyListRemovesAllPeriodsAndSwitchesProtectionOff)
{
    EXPECT_EQ(run(kCommand, list_of("")), reply(R"("Status":"0")"));
    const int32_t none = 0;
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                     {"devapi_del_all_duration", {"7"}},
                     {"devapi_set_protect_enable", {"0", "7"}}}));
}

TEST_F(SetGreennetProtectPeriodList, ProtectionIsOnWhenOnePeriodIs)
{
    const std::pair<std::vector<const char *>, const char *> switches[] = {
        {{"0"}, "0"},
        {{"1"}, "1"},
        {{"0", "0", "0"}, "0"},
        {{"1", "0", "0"}, "1"},
        {{"0", "1"}, "1"},
        {{"1", "1"}, "1"},
        {{""}, "0"},
        {{"01"}, "0"},
        {{"1 "}, "0"},
        {{"11"}, "0"},
        {{"2", "on"}, "0"},
        {{"10000000"}, "0"},
    };
    for (const auto &[enables, enabled] : switches) {
        std::string elements;
        for (const char *enable : enables) {
            elements +=
                (elements.empty() ? "" : ",") + kPeriod.with("Enable", quoted(enable)).json();
        }
        EXPECT_EQ(run(kCommand, list_of(elements)), reply(R"("Status":"0")"));
        EXPECT_EQ(recording_device::calls().back(),
                  (Call{"devapi_set_protect_enable", {enabled, "7"}}))
            << elements;
    }
}

TEST_F(SetGreennetProtectPeriodList, NeedsADeviceOfTheTable)
{
    const std::string members = R"({"Mac":"AA:BB","Sleep":[],)";
    for (const int32_t result : {0, -1, 2, -2, 1000, INT32_MIN}) {
        forget();
        writes<devapi_get_greennet_index_by_mac>(7, result);
        EXPECT_EQ(run(kCommand, R"({"Mac":"AA:BB","Sleep":[]})"),
                  members + failure("json node: mac index not found") + "}");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
        EXPECT_TRUE(recording_host::log_lines().empty());
    }
}

TEST_F(SetGreennetProtectPeriodList, RemovesNothingForAValueThatIsNotAList)
{
    const Request mac = Request({}).with("Mac", R"("AA:BB")");
    std::vector<Request> requests = {mac, mac.with("Sleeps", "[]")};
    for (const std::string json :
         {"7", "true", "false", "null", R"("")", R"("[]")", "{}", R"({"Sleep":[]})"}) {
        requests.push_back(mac.with("Sleep", json));
    }
    for (const Request &request : requests) {
        forget();
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(failure("json node: list not found")));
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
        EXPECT_EQ(recording_host::log_lines(), LogLines{kIndex});
    }
}

TEST_F(SetGreennetProtectPeriodList, StopsIfTheOldPeriodsAreNotRemoved)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        when<devapi_del_all_duration>([result](int32_t) { return result; });
        EXPECT_EQ(run(kCommand, list_of(kPeriod.json())), reply(failure("del duration failed!")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_get_greennet_index_by_mac", "devapi_del_all_duration"}));
        EXPECT_EQ(recording_host::log_lines(), LogLines{kIndex});
    }
}

// What was stored before the element stays stored; protection is not switched.
TEST_F(SetGreennetProtectPeriodList, StopsAtTheFirstElementWithoutOneOfItsKeys)
{
    for (const std::string &bad : not_like(kPeriod)) {
        forget();
        EXPECT_EQ(run(kCommand, list_of(kPeriod.json() + "," + bad + "," + kPeriod.json())),
                  reply(failure("parse protect period info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_get_greennet_index_by_mac", "devapi_del_all_duration",
                         "devapi_add_greennet_duration", "devapi_set_protect_period_info"}))
            << bad;
        EXPECT_EQ(recording_host::log_lines(), (LogLines{kIndex, kNoText}));
    }
}

TEST_F(SetGreennetProtectPeriodList, StopsAtTheFirstPeriodThatTheDeviceRefuses)
{
    const std::string three = kPeriod.json() + "," + kPeriod.json() + "," + kPeriod.json();
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        int countdown = 2;
        when<devapi_set_protect_period_info>(
            [&](const ProtectPeriodInfo *) { return --countdown == 0 ? result : 0; });
        EXPECT_EQ(run(kCommand, list_of(three)), reply(failure("set protect period info failed")));
        EXPECT_EQ(recording_device::calls().size(), 2u + 2 * 2);

        forget();
        countdown = 2;
        when<devapi_add_greennet_duration>(
            [&](int32_t, int32_t *) { return --countdown == 0 ? result : 0; });
        EXPECT_EQ(run(kCommand, list_of(three)), reply(failure("add protect period info failed")));
        EXPECT_EQ(recording_device::calls().size(), 2u + 2 + 1);
    }
}

TEST_F(SetGreennetProtectPeriodList, CutsItsTexts)
{
    for (const size_t length : {0u, 6u, 7u, 8u, 63u, 64u, 10000u}) {
        forget();
        writes<devapi_get_greennet_index_by_mac>(INT32_MIN, 1);
        const std::string text = text_of_length(length);
        Request request({});
        for (const auto &[key, json] : kPeriod.keys()) {
            request = request.with(key, quoted(text));
        }
        const Request mac = Request({}).with("Mac", quoted(text));
        EXPECT_EQ(run(kCommand, mac.with("Sleep", "[" + request.json() + "]").json()),
                  mac.followed_by(R"("Status":"0")"));
        ProtectPeriodInfo expected = {INT32_MIN, 0, "", "", "", ""};
        for (char *field :
             {expected.StartTime, expected.EndTime, expected.Enable, expected.DaysOfWeek}) {
            text.copy(field, 7);
        }
        EXPECT_EQ(recording_device::calls().at(0).arguments[0], text.substr(0, 63));
        EXPECT_EQ(recording_device::calls().at(3).arguments[0], contents(&expected));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "mac_index = -2147483648\n"}}));
    }
}

TEST_F(SetGreennetProtectPeriodList, TakesHundredsOfPeriods)
{
    std::string elements = kPeriod.json();
    for (int at = 1; at < 300; ++at) {
        elements += "," + kPeriod.json();
    }
    EXPECT_EQ(run(kCommand, list_of(elements)), reply(R"("Status":"0")"));
    EXPECT_EQ(recording_device::calls().size(), 2u + 2 * 300 + 1);
}

} // namespace protect_period_setting_test
