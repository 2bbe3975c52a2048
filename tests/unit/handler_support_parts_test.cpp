// The parts of handler_support.h that handlers use one by one, outside the recipes.
#include "failing_memory.h"
#include "handler_support.h"
#include "handler_test.h"

#include <algorithm>
#include <cstring>

namespace handler_support_parts_test {

using namespace smart_router;

// A record of the test's own.
struct Door {
    char Name[6];
    char Code[2];
    int32_t width;
};

constexpr auto kDoorFields = Fields{
    FIELD(Door, Name),
    FIELD_AS(Door, width, "Width"),
    FIELD(Door, Code),
};

// Not inlined: GCC 12 would take the place of a key for an array of its own, without an end.
[[gnu::noinline]] Field door_field(size_t position)
{
    auto field = FieldList(kDoorFields).begin();
    for (; position > 0; --position) {
        ++field;
    }
    return *field;
}

class HandlerPartsTest : public HandlerTest {};

TEST_F(HandlerPartsTest, AFieldHoldsATextWhenTheyAreTheSame)
{
    char field[6] = "door";
    EXPECT_TRUE(holds(field, "door"));
    for (const char *other : {"", "d", "doo", "doors", "Door", "door ", "xoor", "doox"}) {
        EXPECT_FALSE(holds(field, other)) << other;
    }
    memcpy(field, "\0door", 6); // what stands behind the NUL is not the field's text
    EXPECT_TRUE(holds(field, ""));
    EXPECT_FALSE(holds(field, "door"));
}

TEST_F(HandlerPartsTest, AFieldWithoutANulHoldsATextOfItsWidth)
{
    struct {
        char field[6];
        char behind[6];
    } place;
    memcpy(&place, "abcdefghijk", sizeof place);
    EXPECT_TRUE(holds(place.field, "abcdef"));
    for (const char *other : {"abcde", "abcdefg", "abcdefghijk", ""}) {
        EXPECT_FALSE(holds(place.field, other)) << other;
    }
}

TEST_F(HandlerPartsTest, ATextIsStoredInItsFieldAndNowhereElse)
{
    Door door;
    memset(&door, '#', sizeof door);
    store(door_field(0), &door, "garden gate");
    EXPECT_EQ(std::string(door.Name, 6), std::string("garde\0", 6));
    EXPECT_EQ(std::string(door.Code, 2), "##");
    store(door_field(2), &door, "");
    EXPECT_EQ(std::string(door.Code, 2), std::string("\0#", 2));
    EXPECT_EQ(door.width, 0x23232323);
}

TEST_F(HandlerPartsTest, ANumberIsStoredFromItsText)
{
    const struct {
        const char *text;
        int32_t number;
    } numbers[] = {
        {"80", 80},     {"-7", -7},
        {"", 0},        {"wide", 0},
        {" 12 cm", 12}, {"2147483648", INT32_MAX},
        {"-1e9", -1},   {"-99999999999999999999", INT32_MIN},
        {"0x10", 0},    {"007", 7},
        {"/", 0},       {":", 0}, // beside the digits
        {"\xD5", 0},
    };
    Door door = {"gate", "1", 5};
    for (const auto &one : numbers) {
        store(door_field(1), &door, one.text);
        EXPECT_EQ(door.width, one.number) << one.text;
    }
    EXPECT_STREQ(door.Name, "gate");
    EXPECT_STREQ(door.Code, "1");
}

TEST_F(HandlerPartsTest, ANumberIsWrittenAsItsText)
{
    for (const int32_t number : {0, 7, -7, 10, 4096, -100, INT32_MAX, INT32_MIN}) {
        char field[16];
        put_number(field, number);
        EXPECT_EQ(field, std::to_string(number));
    }
}

TEST_F(HandlerPartsTest, ANumberIsCutWithItsField)
{
    const std::string texts[] = {"", "-", "-1", "-12", "-123", "-123"};
    for (size_t width = 1; width <= 6; ++width) {
        char field[] = "########";
        put_number(field, width, -123);
        EXPECT_EQ(field, texts[width - 1]);
        EXPECT_EQ(std::string(field + width), std::string(8 - width, '#'));
    }
}

TEST_F(HandlerPartsTest, KeysAreFoundAsCjsonFindsThem)
{
    const FieldList fields = kDoorFields;
    for (const char *request :
         {"{}", R"({"Name":"a","Width":"b","Code":"c"})", R"({"Code":"c","Width":"b","Name":"a"})",
          R"({"name":"a","WIDTH":"b","cODE":"c"})", R"({"Name":1,"Nam":2,"Names":3,"":4,"Code":5})",
          R"({"Width":"b","width":"c","NAME":1,"Name":"a","Name":2})",
          R"({"x":1,"Code":"c","y":2})", R"(["Name",{"Name":"a"}])", "7"}) {
        const Json object = parse(request);
        cJSON *items[3];
        find_items(object.get(), fields, items);
        for (size_t at = 0; at < 3; ++at) {
            EXPECT_EQ(items[at], cJSON_GetObjectItem(object.get(), door_field(at).key))
                << request << " " << door_field(at).key;
        }
    }
    cJSON untouched;
    cJSON *items[] = {&untouched, &untouched, &untouched};
    find_items(nullptr, fields, items);
    EXPECT_EQ(std::count(items, items + 3, nullptr), 3);
}

// No parser makes such an object, but an agent may.
TEST_F(HandlerPartsTest, KeysAreFoundBehindAnItemWithoutOne)
{
    const Json object = parse("{}");
    cJSON_AddItemToArray(object.get(), cJSON_CreateNumber(1));
    const cJSON *name = cJSON_AddStringToObject(object.get(), "Name", "gate");
    cJSON *items[3];
    find_items(object.get(), kDoorFields, items);
    EXPECT_EQ(items[0], name);
}

TEST_F(HandlerPartsTest, ARecordBecomesAnObject)
{
    Door door = {"gate", "1", -80};
    door.Code[1] = '2'; // no NUL
    EXPECT_EQ(print(Json(object_of(kDoorFields, &door)).get()),
              R"({"Name":"gate","Width":"-80","Code":"12"})");
}

TEST_F(HandlerPartsTest, ARecordBecomesNoHalfObject)
{
    const Door door = {"gate", "1", 80};
    for (size_t first = 0; first < 7; ++first) {
        const FailingMemory memory(first, FailingMemory::Fail::kOnce);
        EXPECT_EQ(object_of(kDoorFields, &door), nullptr) << "allocation " << first;
        EXPECT_TRUE(memory.has_failed());
    }
    const FailingMemory memory(7, FailingMemory::Fail::kOnce);
    EXPECT_NE(Json(object_of(kDoorFields, &door)), nullptr);
}

TEST_F(HandlerPartsTest, AReplyMayBePrinted)
{
    Reply reply;
    EXPECT_STREQ(PrintedJson(reply.print()).text(), "{\n}");
    reply.success();
    reply.text("a", "\"");
    for (int round = 0; round < 2; ++round) { // printing takes nothing out of it
        EXPECT_STREQ(PrintedJson(reply.print()).text(),
                     "{\n\t\"Status\":\t\"0\",\n\t\"a\":\t\"\\\"\"\n}");
    }
}

TEST_F(HandlerPartsTest, AReplyThatLacksAnItemIsNotPrinted)
{
    Reply reply;
    reply.success();
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        EXPECT_EQ(reply.print(), nullptr);
    }
    EXPECT_TRUE(reply.complete()) << "memory for the text is none of the reply's";
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.text("a", "1");
    }
    EXPECT_EQ(reply.print(), nullptr);
}

} // namespace handler_support_parts_test
