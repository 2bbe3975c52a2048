// SPDX-License-Identifier: MIT
#include "request_keys.h"

#include "handler_test.h"
#include "test_records.h"

#include <algorithm>
#include <cstring>

namespace request_keys_test {

using namespace smart_router;

// Not inlined: GCC 12 would take the key's storage for a separate, unterminated array.
[[gnu::noinline]] Field door_field(size_t position)
{
    auto field = FieldList(kDoorFields).begin();
    for (; position > 0; --position) {
        ++field;
    }
    return *field;
}

class RequestKeysTest : public HandlerTest {};

TEST_F(RequestKeysTest, OnlyATextItemHasAText)
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

TEST_F(RequestKeysTest, ATextIsStoredInItsFieldAndNowhereElse)
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

TEST_F(RequestKeysTest, ANumberIsStoredFromItsText)
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
        {"/", 0},       {":", 0}, // next to the digits
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

TEST_F(RequestKeysTest, KeysAreFoundAsCjsonFindsThem)
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
TEST_F(RequestKeysTest, KeysAreFoundBehindAnItemWithoutOne)
{
    const Json object = parse("{}");
    cJSON_AddItemToArray(object.get(), cJSON_CreateNumber(1));
    const cJSON *name = cJSON_AddStringToObject(object.get(), "Name", "gate");
    cJSON *items[3];
    find_items(object.get(), kDoorFields, items);
    EXPECT_EQ(items[0], name);
}

} // namespace request_keys_test
