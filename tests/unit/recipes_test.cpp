// SPDX-License-Identifier: MIT
#include "recipes.h"

#include "failing_memory.h"
#include "handler_test.h"
#include "test_records.h"

#include <climits>
#include <cstring>

namespace recipes_test {

using namespace smart_router;

constexpr auto kNumber = Fields{FIELD_AS(Lamp, number, "Number")};

// Device functions for these tests.
int32_t result;
Lamp lamp;
int lamp_calls;

int32_t get_lamp(Lamp *out)
{
    *out = lamp;
    return result;
}

int32_t set_lamp(Lamp *in)
{
    ++lamp_calls;
    lamp = *in;
    return result;
}

class RecipesTest : public HandlerTest {
  protected:
    RecipesTest()
    {
        result = 0;
        lamp = {};
        lamp_calls = 0;
    }
};

template <class Handler> std::string after(Handler handler, const std::string &request)
{
    const Json object = parse(request);
    handler(object.get());
    return print(object.get());
}

// ---- Queries -----------------------------------------------------------------------------------

TEST_F(RecipesTest, AQueryPutsItsStatusFirstOrLast)
{
    strcpy(lamp.Colour, "green");
    strcpy(lamp.Level, "7");
    EXPECT_EQ(after(query<get_lamp>(kLampFields, "dark"), "{}"),
              R"({"Status":"0","Colour":"green","Level":"7"})");
    EXPECT_EQ(after(query<get_lamp, StatusAt::kLast>(kLampFields, "dark"), "{}"),
              R"({"Colour":"green","Level":"7","Status":"0"})");
}

TEST_F(RecipesTest, AQueryFailsByItsRule)
{
    const auto any = query<get_lamp>(kLampFields, "dark");
    const auto only_minus_one = query<get_lamp, StatusAt::kFirst, minus_one>(kLampFields, "dark");
    for (const int32_t failing : {-1, 1, -2, 1000, INT_MIN}) {
        result = failing;
        EXPECT_EQ(after(any, "{}"), R"({"Status":"1","FailReason":"dark"})") << failing;
        EXPECT_EQ(after(only_minus_one, "{}"), failing == -1
                                                   ? R"({"Status":"1","FailReason":"dark"})"
                                                   : R"({"Status":"0","Colour":"","Level":""})")
            << failing;
    }
    EXPECT_EQ(after(query<get_lamp>(kLampFields, nullptr), "{}"), R"({"Status":"1"})");
}

int32_t answer;

int32_t read(FullField *record)
{
    EXPECT_EQ(std::string(record->field, sizeof *record), std::string(8, '\0'));
    *record = kFullField;
    return answer;
}

TEST_F(RecipesTest, ARecordWhoseReadFailedIsEmpty)
{
    FullField record;
    memset(&record, '?', sizeof record);
    answer = 0;
    EXPECT_TRUE(read_or_empty<read>(record));
    EXPECT_EQ(memcmp(&record, &kFullField, sizeof record), 0);
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        answer = failure;
        memset(&record, '?', sizeof record);
        EXPECT_FALSE(read_or_empty<read>(record));
        EXPECT_EQ(std::string(record.field, sizeof record), std::string(8, '\0'));
    }
}

// ---- Actions -----------------------------------------------------------------------------------

TEST_F(RecipesTest, AReportingActionReportsWhatTheDeviceLeft)
{
    strcpy(lamp.Colour, "green");
    memcpy(lamp.Level, "full", 4);
    const auto handler = reporting_action<get_lamp>(kLampFields, "dark");
    EXPECT_EQ(after(handler, R"({"Colour":"x"})"),
              R"({"Colour":"x","Status":"0","Colour":"green","Level":"full"})");
    result = 1;
    EXPECT_EQ(after(handler, "{}"), R"({"Status":"1","FailReason":"dark"})");
}

// ---- Numbers -----------------------------------------------------------------------------------

TEST_F(RecipesTest, ANumberIsSentAsText)
{
    for (const auto &[text, number] : {std::pair("7", 7),
                                       {"-3", -3},
                                       {" 12x", 12},
                                       {"x", 0},
                                       {"", 0},
                                       {"2147483647", INT_MAX},
                                       {"2147483648", INT_MAX},
                                       {"-2147483649", INT_MIN},
                                       {"99999999999999999999", INT_MAX}}) {
        const std::string request = std::string(R"({"Number":")") + text + R"("})";
        EXPECT_EQ(after(setting<set_lamp>(kNumber, "stuck"), request), R"({"Status":"0"})");
        EXPECT_EQ(lamp.number, number) << text;
        EXPECT_EQ(after(query<get_lamp>(kNumber, "dark"), "{}"),
                  R"({"Status":"0","Number":")" + std::to_string(number) + R"("})");
        EXPECT_EQ(after(reporting_action<get_lamp>(kNumber, "dark"), "{}"),
                  R"({"Status":"0","Number":")" + std::to_string(number) + R"("})");
    }
}

TEST_F(RecipesTest, AnOptionalFieldThatIsNotGivenIsMinusOne)
{
    const Json object = parse(R"({"Level":7,"Colour":"blue","Number":null})");
    copy_optional(object.get(), kLampFields, &lamp, Found::kIsRemoved);
    copy_optional(object.get(), kNumber, &lamp, Found::kIsRemoved);
    EXPECT_STREQ(lamp.Colour, "blue");
    EXPECT_STREQ(lamp.Level, "-1");
    EXPECT_EQ(lamp.number, -1);
    EXPECT_EQ(print(object.get()), R"({"Level":7,"Number":null})");
}

// ---- Settings ----------------------------------------------------------------------------------

const std::string kLampRequest = R"({"Colour":"blue","Other":1,"Level":"3"})";

TEST_F(RecipesTest, ASettingFillsTheRecordAndRemovesTheKeys)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"), kLampRequest),
              R"({"Other":1,"Status":"0"})");
    EXPECT_STREQ(lamp.Colour, "blue");
    EXPECT_STREQ(lamp.Level, "3");
    EXPECT_EQ(lamp.number, 0);
}

TEST_F(RecipesTest, ASettingCutsWhatIsTooLong)
{
    after(setting<set_lamp>(kLampFields, "stuck"),
          R"({"Colour":")" + text_of_length(100000) + R"(","Level":"12345"})");
    EXPECT_EQ(std::string(lamp.Colour), text_of_length(7));
    EXPECT_STREQ(lamp.Level, "123");
}

TEST_F(RecipesTest, ASettingDistinguishesAbsentFromWithoutText)
{
    const auto two = setting<set_lamp>(kLampFields, "stuck");
    const auto one = setting<set_lamp>(kLampFields, "stuck", "missing");
    const auto reply = [](const std::string &request, const char *reason) {
        return request.substr(0, request.size() - 1) + (request == "{}" ? "" : ",") +
               R"("Status":"1","FailReason":")" + reason + "\"}";
    };
    for (const std::string absent : {R"({})", R"({"Colour":"x"})", R"({"Level":"x"})",
                                     R"({"Colour":7})", R"({"Level":null})"}) {
        EXPECT_EQ(after(two, absent), reply(absent, "json node null"));
        EXPECT_EQ(after(one, absent), reply(absent, "missing"));
    }
    for (const std::string no_text :
         {R"({"Colour":"x","Level":7})", R"({"Colour":null,"Level":"x"})",
          R"({"Colour":["x"],"Level":{}})", R"({"Colour":true,"Level":"x","Level":"x"})"}) {
        EXPECT_EQ(after(two, no_text), reply(no_text, "value string null"));
        EXPECT_EQ(after(one, no_text), reply(no_text, "missing"));
    }
    EXPECT_EQ(lamp_calls, 0);
}

TEST_F(RecipesTest, AnEmptyTextIsAText)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"), R"({"Colour":"","Level":""})"),
              R"({"Status":"0"})");
}

TEST_F(RecipesTest, OfRepeatedKeysTheFirstIsReadAndRemoved)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"),
                    R"({"colour":"one","Level":"1","Colour":"two","LEVEL":"2"})"),
              R"({"Colour":"two","LEVEL":"2","Status":"0"})");
    EXPECT_STREQ(lamp.Colour, "one");
    EXPECT_STREQ(lamp.Level, "1");
}

TEST_F(RecipesTest, KeysAreRemovedByTheRuleForThem)
{
    const auto after_call = setting<set_lamp>(kLampFields, "stuck");
    const auto on_success = setting<set_lamp, RemoveKeys::kOnSuccess>(kLampFields, "stuck");
    const auto always = setting<set_lamp, RemoveKeys::kAlways>(kLampFields, "stuck");
    const std::string failure = R"("Status":"1","FailReason":"stuck"})";

    EXPECT_EQ(after(on_success, kLampRequest), R"({"Other":1,"Status":"0"})");
    EXPECT_EQ(after(always, kLampRequest), R"({"Other":1,"Status":"0"})");
    result = -1;
    EXPECT_EQ(after(after_call, kLampRequest), R"({"Other":1,)" + failure);
    EXPECT_EQ(after(on_success, kLampRequest),
              R"({"Colour":"blue","Other":1,"Level":"3",)" + failure);
    EXPECT_EQ(after(always, kLampRequest), R"({"Other":1,)" + failure);
    EXPECT_EQ(after(always, R"({"Level":"3","Other":1})"),
              R"({"Other":1,"Status":"1","FailReason":"json node null"})");
}

TEST_F(RecipesTest, ASettingFailsByItsRule)
{
    const auto only_minus_one =
        setting<set_lamp, RemoveKeys::kAfterCall, minus_one>(kLampFields, "stuck");
    for (const int32_t value : {0, 1, -2, 1000, INT_MIN}) {
        result = value;
        EXPECT_EQ(after(only_minus_one, kLampRequest), R"({"Other":1,"Status":"0"})") << value;
    }
    result = -1;
    EXPECT_EQ(after(only_minus_one, kLampRequest),
              R"({"Other":1,"Status":"1","FailReason":"stuck"})");
}

TEST_F(RecipesTest, ASettingReturnsTheDevicesResult)
{
    const Json object = parse(kLampRequest);
    result = 42;
    EXPECT_EQ(setting<set_lamp>(kLampFields, "stuck")(object.get()), 42);
    EXPECT_EQ(setting<set_lamp>(kLampFields, "stuck")(object.get()), -1);
}

// A change has to be reported: without memory for the reply the device is not called.
TEST_F(RecipesTest, ASettingWithoutMemoryDoesNotReachTheDevice)
{
    const auto handler = setting<set_lamp>(kLampFields, "stuck");
    for (size_t first = 0;; ++first) {
        const Json object = parse(kLampRequest);
        lamp_calls = 0;
        bool failed;
        {
            const FailingMemory memory(first, FailingMemory::Fail::kOnce);
            handler(object.get());
            failed = memory.has_failed();
        }
        EXPECT_EQ(lamp_calls, failed ? 0 : 1);
        if (!failed) {
            EXPECT_EQ(first, 1u);
            EXPECT_EQ(print(object.get()), R"({"Other":1,"Status":"0"})");
            break;
        }
        EXPECT_EQ(print(object.get()), R"({"Other":1,"Status":"1","FailReason":"stuck"})");
    }
}

TEST_F(RecipesTest, ARequestThatIsNotAnObjectHasNoKeys)
{
    const auto handler = setting<set_lamp>(kLampFields, "stuck");
    EXPECT_EQ(after(handler, R"([{"Colour":"x"},"Level"])"), R"([{"Colour":"x"},"Level"])");
    EXPECT_EQ(handler(nullptr), -1);
    EXPECT_EQ(lamp_calls, 0);
}

} // namespace recipes_test
