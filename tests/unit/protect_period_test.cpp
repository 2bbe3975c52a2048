#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace protect_period_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using Names = std::vector<std::string>;

constexpr char kCommand[] = "GET_GREENNET_PROTECT_PERIOD_LIST";

class ProtectPeriodTest : public HandlerTest {};

void index_is(int32_t index, int32_t result = 1)
{
    when<devapi_get_greennet_index_by_mac>([=](const char *, int32_t *out) {
        *out = index;
        return result;
    });
}

// The device with index 7 has so many periods, whose texts end in their number; those from failing
// on cannot be read.
void periods_are(int32_t count, int32_t failing = INT32_MAX, int32_t failure = -1)
{
    index_is(7);
    when<devapi_get_duration_num_by_index>([=](int32_t, int32_t *out) {
        *out = count;
        return 0;
    });
    when<devapi_get_protect_period_info>([=](ProtectPeriodInfo *info) {
        const std::string number = std::to_string(info->PeriodNum);
        const int32_t result = info->PeriodNum >= failing ? failure : 0;
        memset(info, '?', sizeof *info);
        strcpy(info->StartTime, ("s" + number).c_str());
        strcpy(info->EndTime, ("t" + number).c_str());
        strcpy(info->Enable, ("e" + number).c_str());
        strcpy(info->DaysOfWeek, ("d" + number).c_str());
        return result;
    });
}

std::string period(int32_t number)
{
    const std::string text = std::to_string(number);
    return R"({"StartTime":"s)" + text + R"(","EndTime":"t)" + text + R"(","Enable":"e)" + text +
           R"(","DaysOfWeek":"d)" + text + "\"}";
}

TEST_F(ProtectPeriodTest, ListsThePeriodsOfADevice)
{
    periods_are(2);
    EXPECT_EQ(run(kCommand, R"({"Mac":"AA:BB","sleep":7})"),
              R"({"Mac":"AA:BB","sleep":7,"Status":"0","Sleep":[)" + period(1) + "," + period(2) +
                  "]}");
    const int32_t none = 0;
    const ProtectPeriodInfo first = {7, 1, "", "", "", ""};
    const ProtectPeriodInfo second = {7, 2, "", "", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                                 {"devapi_get_duration_num_by_index", {"7", contents(&none)}},
                                 {"devapi_get_protect_period_info", {contents(&first)}},
                                 {"devapi_get_protect_period_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ProtectPeriodTest, AListNeedsADeviceOfTheTable)
{
    for (const int32_t result : {0, -1, 2, -2, 1000, INT32_MIN}) {
        recording_device::reset();
        index_is(7, result);
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"),
                  R"({"Mac":"x",)" + failure("xml mac index not found") + "}");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ProtectPeriodTest, TheResultOfTheCountIsNotLookedAt)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        periods_are(0);
        when<devapi_get_duration_num_by_index>([result](int32_t, int32_t *) { return result; });
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"), R"({"Mac":"x","Status":"0","Sleep":[]})");
        when<devapi_get_duration_num_by_index>([result](int32_t, int32_t *count) {
            *count = 1;
            return result;
        });
        EXPECT_EQ(run(kCommand, R"({"Mac":"x"})"),
                  R"({"Mac":"x","Status":"0","Sleep":[)" + period(1) + "]}");
    }
}

TEST_F(ProtectPeriodTest, ThereMayBeNoPeriodsOrMany)
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
