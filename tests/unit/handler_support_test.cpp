#include "handler_support.h"

#include "failing_memory.h"
#include "handler_test.h"

#include <climits>
#include <cstring>

namespace handler_support_test {

using namespace smart_router;

// A record and device functions of the test's own.
struct Lamp {
    int32_t number;
    char Colour[8];
    char Level[4];
};

constexpr auto kLampFields = Fields{
    FIELD(Lamp, Colour),
    FIELD(Lamp, Level),
};

static_assert(sizeof kLampFields == 4 + (4 + sizeof "Colour") + (4 + sizeof "Level"));
constexpr Field kLevel = *++FieldList(kLampFields).begin();
static_assert(kLevel.offset == 12 && kLevel.width == 4);
static_assert(FieldList(kLampFields).count() == 2 && FieldList(kLampFields).required() == 2);
static_assert(FieldList(kLampFields).record_size() == sizeof(Lamp));
constexpr auto kColourRequired = kLampFields.requiring(1);
static_assert(FieldList(kColourRequired).count() == 2 &&
              FieldList(kColourRequired).required() == 1);

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

class HandlerSupportTest : public HandlerTest {
  protected:
    HandlerSupportTest()
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

// ---- Texts -------------------------------------------------------------------------------------

TEST_F(HandlerSupportTest, OnlyATextItemHasAText)
{
    const Json object = parse(R"({"a":"x","b":"","c":7,"d":null,"e":true,"f":["x"],"g":{}})");
    EXPECT_STREQ(text_of(cJSON_GetObjectItem(object.get(), "a")), "x");
    EXPECT_STREQ(text_of(cJSON_GetObjectItem(object.get(), "b")), "");
    for (const char *key : {"c", "d", "e", "f", "g", "missing"}) {
        EXPECT_EQ(text_of(cJSON_GetObjectItem(object.get(), key)), nullptr) << key;
    }
    const Json raw(cJSON_CreateRaw("x"));
    EXPECT_EQ(text_of(raw.get()), nullptr);
}

TEST_F(HandlerSupportTest, ACopyIsCutAtTheWidthLessOneAndAlwaysEnds)
{
    struct {
        char field[8];
        char guard[4];
    } place;
    for (const size_t length : {0u, 1u, 6u, 7u, 8u, 9u, 100000u}) {
        memset(&place, '#', sizeof place);
        copy_text(place.field, text_of_length(length).c_str());
        EXPECT_EQ(std::string(place.field, strnlen(place.field, 8)),
                  text_of_length(std::min<size_t>(length, 7)));
        EXPECT_EQ(std::string(place.guard, 4), "####");
    }
}

TEST_F(HandlerSupportTest, ATextIsAddedUpToItsNulOrItsWidth)
{
    const Json object = parse("{}");
    const char field[4] = {'a', 'b', 'c', 'd'};
    EXPECT_TRUE(add_text(object.get(), "full", field, sizeof field));
    EXPECT_TRUE(add_text(object.get(), "short", "ab\0cd", 5));
    EXPECT_TRUE(add_text(object.get(), "none", field, 0));
    EXPECT_TRUE(add_text(object.get(), "plain", "text"));
    EXPECT_EQ(print(object.get()), R"({"full":"abcd","short":"ab","none":"","plain":"text"})");
    const cJSON *item = cJSON_GetObjectItem(object.get(), "full");
    EXPECT_EQ(item->type & 0xff, cJSON_String);
    EXPECT_EQ(item->type & cJSON_IsReference, 0);
}

// ---- Replies -----------------------------------------------------------------------------------

TEST_F(HandlerSupportTest, AReplyIsJoinedBehindWhatIsThere)
{
    const Json object = parse(R"({"x":1})");
    Reply reply;
    reply.success();
    reply.text("a", "1");
    EXPECT_EQ(print(object.get()), R"({"x":1})");
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), R"({"x":1,"Status":"0","a":"1"})");
    EXPECT_STREQ(cJSON_GetObjectItem(object.get(), "a")->string, "a");
}

TEST_F(HandlerSupportTest, AnEmptyReplyAddsNothing)
{
    for (const char *text : {"{}", R"({"x":1})"}) {
        const Json object = parse(text);
        Reply reply;
        EXPECT_TRUE(reply.join(object.get()));
        EXPECT_EQ(print(object.get()), text);
    }
}

TEST_F(HandlerSupportTest, AReplyJoinsOnlyAnObject)
{
    for (const char *other : {"[]", "[1]", "\"text\"", "1", "null"}) {
        const Json json = parse(other);
        Reply reply;
        reply.success();
        EXPECT_FALSE(reply.join(json.get()));
        EXPECT_EQ(print(json.get()), other);
    }
    Reply reply;
    reply.success();
    EXPECT_FALSE(reply.join(nullptr));
}

TEST_F(HandlerSupportTest, AReplyThatLacksAnItemJoinsNothing)
{
    const Json object = parse("{}");
    Reply reply;
    reply.success();
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.text("a", "1");
    }
    EXPECT_FALSE(reply.complete());
    reply.text("b", "2");
    EXPECT_FALSE(reply.complete());
    EXPECT_FALSE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), "{}");
}

TEST_F(HandlerSupportTest, AFailureHasItsStatusFirst)
{
    const auto failure = [](const char *reason) {
        return after([reason](cJSON *obj) { fail(obj, reason); }, "{}");
    };
    EXPECT_EQ(failure("why"), R"({"Status":"1","FailReason":"why"})");
    EXPECT_EQ(failure(""), R"({"Status":"1","FailReason":""})");
    EXPECT_EQ(failure(nullptr), R"({"Status":"1"})");
    EXPECT_EQ(after([](cJSON *obj) { fail(obj, "abcdef", 3); }, "{}"),
              R"({"Status":"1","FailReason":"abc"})");
}

// Its text is a constant, which the address sanitizer would see freed.
TEST_F(HandlerSupportTest, AStatusCanBeCopiedReplacedAndDeleted)
{
    const Json object = parse("{}");
    fail(object.get(), "why");
    const Json copy(cJSON_Duplicate(object.get(), 1));
    EXPECT_TRUE(cJSON_ReplaceItemInObject(object.get(), "Status", cJSON_CreateString("2")));
    EXPECT_EQ(print(object.get()), R"({"Status":"2","FailReason":"why"})");
    EXPECT_EQ(cJSON_SetValuestring(cJSON_GetObjectItem(copy.get(), "Status"), "3"),
              std::string("3"));
    EXPECT_EQ(print(copy.get()), R"({"Status":"3","FailReason":"why"})");
    cJSON_DeleteItemFromObject(copy.get(), "Status");
    EXPECT_EQ(print(copy.get()), R"({"FailReason":"why"})");
}

TEST_F(HandlerSupportTest, AFailureWithoutMemoryAddsNothing)
{
    for (size_t first = 0; first < 3; ++first) {
        const FailingMemory memory(first, FailingMemory::Fail::kLastingly);
        cJSON object = {};
        object.type = cJSON_Object;
        fail(&object, "why");
        EXPECT_EQ(object.child, nullptr) << "allocation " << first;
    }
}

TEST_F(HandlerSupportTest, AnAnswerThatCouldNotBeBuiltFails)
{
    const Json object = parse("{}");
    Reply reply;
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.success();
    }
    answer(object.get(), reply, "no memory");
    EXPECT_EQ(print(object.get()), R"({"Status":"1","FailReason":"no memory"})");
}

// ---- Queries -----------------------------------------------------------------------------------

TEST_F(HandlerSupportTest, AQueryPutsItsStatusFirstOrLast)
{
    strcpy(lamp.Colour, "green");
    strcpy(lamp.Level, "7");
    EXPECT_EQ(after(query<get_lamp>(kLampFields, "dark"), "{}"),
              R"({"Status":"0","Colour":"green","Level":"7"})");
    EXPECT_EQ(after(query<get_lamp, StatusAt::kLast>(kLampFields, "dark"), "{}"),
              R"({"Colour":"green","Level":"7","Status":"0"})");
}

TEST_F(HandlerSupportTest, AQueryFailsByItsRule)
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

// ---- Actions -----------------------------------------------------------------------------------

TEST_F(HandlerSupportTest, AReportingActionReportsWhatTheDeviceLeft)
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

constexpr auto kNumber = Fields{FIELD_AS(Lamp, number, "Number")};

TEST_F(HandlerSupportTest, ANumberTravelsAsText)
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

TEST_F(HandlerSupportTest, AnOptionalFieldThatIsNotGivenSaysSo)
{
    const Json object = parse(R"({"Level":7,"Colour":"blue","Number":null})");
    copy_optional(object.get(), kLampFields, &lamp, Found::kIsConsumed);
    copy_optional(object.get(), kNumber, &lamp, Found::kIsConsumed);
    EXPECT_STREQ(lamp.Colour, "blue");
    EXPECT_STREQ(lamp.Level, "-1");
    EXPECT_EQ(lamp.number, -1);
    EXPECT_EQ(print(object.get()), R"({"Level":7,"Number":null})");
}

// ---- Settings ----------------------------------------------------------------------------------

const std::string kLampRequest = R"({"Colour":"blue","Other":1,"Level":"3"})";

TEST_F(HandlerSupportTest, ASettingFillsTheRecordAndTakesTheKeysOut)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"), kLampRequest),
              R"({"Other":1,"Status":"0"})");
    EXPECT_STREQ(lamp.Colour, "blue");
    EXPECT_STREQ(lamp.Level, "3");
    EXPECT_EQ(lamp.number, 0);
}

TEST_F(HandlerSupportTest, ASettingCutsWhatIsTooLong)
{
    after(setting<set_lamp>(kLampFields, "stuck"),
          R"({"Colour":")" + text_of_length(100000) + R"(","Level":"12345"})");
    EXPECT_EQ(std::string(lamp.Colour), text_of_length(7));
    EXPECT_STREQ(lamp.Level, "123");
}

TEST_F(HandlerSupportTest, ASettingTellsAbsentFromWithoutText)
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

TEST_F(HandlerSupportTest, AnEmptyTextIsAText)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"), R"({"Colour":"","Level":""})"),
              R"({"Status":"0"})");
}

TEST_F(HandlerSupportTest, OfRepeatedKeysTheFirstIsReadAndTakenOut)
{
    EXPECT_EQ(after(setting<set_lamp>(kLampFields, "stuck"),
                    R"({"colour":"one","Level":"1","Colour":"two","LEVEL":"2"})"),
              R"({"Colour":"two","LEVEL":"2","Status":"0"})");
    EXPECT_STREQ(lamp.Colour, "one");
    EXPECT_STREQ(lamp.Level, "1");
}

TEST_F(HandlerSupportTest, WhenKeysAreTakenOut)
{
    const auto after_call = setting<set_lamp>(kLampFields, "stuck");
    const auto on_success = setting<set_lamp, Consume::kOnSuccess>(kLampFields, "stuck");
    const auto always = setting<set_lamp, Consume::kAlways>(kLampFields, "stuck");
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

TEST_F(HandlerSupportTest, ASettingFailsByItsRule)
{
    const auto only_minus_one =
        setting<set_lamp, Consume::kAfterCall, minus_one>(kLampFields, "stuck");
    for (const int32_t value : {0, 1, -2, 1000, INT_MIN}) {
        result = value;
        EXPECT_EQ(after(only_minus_one, kLampRequest), R"({"Other":1,"Status":"0"})") << value;
    }
    result = -1;
    EXPECT_EQ(after(only_minus_one, kLampRequest),
              R"({"Other":1,"Status":"1","FailReason":"stuck"})");
}

TEST_F(HandlerSupportTest, ASettingReturnsTheDevicesResult)
{
    const Json object = parse(kLampRequest);
    result = 42;
    EXPECT_EQ(setting<set_lamp>(kLampFields, "stuck")(object.get()), 42);
    EXPECT_EQ(setting<set_lamp>(kLampFields, "stuck")(object.get()), -1);
}

// A device that was changed has to be reported as changed: without memory for that it is not asked.
TEST_F(HandlerSupportTest, ASettingWithoutMemoryDoesNotReachTheDevice)
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

TEST_F(HandlerSupportTest, ARequestThatIsNoObjectHasNoKeys)
{
    const auto handler = setting<set_lamp>(kLampFields, "stuck");
    EXPECT_EQ(after(handler, R"([{"Colour":"x"},"Level"])"), R"([{"Colour":"x"},"Level"])");
    EXPECT_EQ(handler(nullptr), -1);
    EXPECT_EQ(lamp_calls, 0);
}

} // namespace handler_support_test
