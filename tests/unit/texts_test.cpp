// SPDX-License-Identifier: MIT
#include "texts.h"

#include "handler_test.h"
#include "test_records.h"

#include <climits>
#include <cstring>

namespace texts_test {

using namespace smart_router;

class TextsTest : public HandlerTest {};

TEST_F(TextsTest, ACopyIsCutAtTheWidthMinusOneAndAlwaysEnds)
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

TEST_F(TextsTest, AFieldHoldsATextWhenTheyAreTheSame)
{
    char field[6] = "door";
    EXPECT_TRUE(holds(field, "door"));
    for (const char *other : {"", "d", "doo", "doors", "Door", "door ", "xoor", "doox"}) {
        EXPECT_FALSE(holds(field, other)) << other;
    }
    memcpy(field, "\0door", 6); // bytes after the NUL are not part of the text
    EXPECT_TRUE(holds(field, ""));
    EXPECT_FALSE(holds(field, "door"));
}

TEST_F(TextsTest, AFieldWithoutANulHoldsATextOfItsWidth)
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

TEST_F(TextsTest, AFieldHoldsATextInAnyCaseOnlyAsAWhole)
{
    const char field[8] = "Up";
    for (const char *text : {"up", "UP", "Up", "uP"}) {
        EXPECT_TRUE(holds_any_case(field, text)) << text;
    }
    for (const char *text : {"", "u", "ups", "up "}) {
        EXPECT_FALSE(holds_any_case(field, text)) << text;
    }
    EXPECT_TRUE(holds_any_case(kFullField.field, "42Bc"));
    EXPECT_FALSE(holds_any_case(kFullField.field, "42bCD"));
    const char none[4] = "";
    EXPECT_TRUE(holds_any_case(none, ""));
    EXPECT_FALSE(holds_any_case(none, "NULL"));
}

TEST_F(TextsTest, AFieldContainsATextAnywhereInIt)
{
    const char field[8] = "abcabd";
    for (const char *text : {"", "a", "abc", "abd", "cab", "d", "abcabd"}) {
        EXPECT_TRUE(contains(field, text)) << text;
    }
    for (const char *text : {"ABD", "ac", "abcabdx", "dx"}) {
        EXPECT_FALSE(contains(field, text)) << text;
    }
    EXPECT_TRUE(contains(field, "ABD", Case::kIsIgnored));
    EXPECT_FALSE(contains(field, "ABE", Case::kIsIgnored));
    EXPECT_TRUE(contains(kFullField.field, "bC"));
    EXPECT_FALSE(contains(kFullField.field, "CD"));
    EXPECT_FALSE(contains(kFullField.field, "D7"));
    EXPECT_FALSE(contains(kFullField.field, "42bCD"));
    const char ended[8] = {'a', '\0', 'b', 'c', '\0'};
    EXPECT_FALSE(contains(ended, "bc"));
    const char none[4] = "";
    EXPECT_FALSE(contains(none, "a"));
}

TEST_F(TextsTest, AFieldsTextEndsWithTheField)
{
    EXPECT_STREQ(Ended(kFullField.field).text(), "42bC");
    const char brief[4] = {'a', '\0', 'b', '\0'};
    EXPECT_STREQ(Ended(brief).text(), "a");
    const char none[4] = "";
    EXPECT_STREQ(Ended(none).text(), "");
}

TEST_F(TextsTest, AFieldsNumberEndsWithTheField)
{
    const char digits[4] = {'1', '2', '3', '4'};
    const FullField record = {{'1', '2', '3', '4'}, {'5', '6', '7', '\0'}};
    EXPECT_EQ(number_in(digits), 1234);
    EXPECT_EQ(number_in(record.field), 1234);
    const std::pair<const char *, int32_t> numbers[] = {{"", 0},
                                                        {"NULL", 0},
                                                        {" -7x", -7},
                                                        {"+3", 3},
                                                        {"0x10", 0},
                                                        {"1.9", 1},
                                                        {"2147483647", INT_MAX},
                                                        {"2147483648", INT_MAX},
                                                        {"-2147483649", INT_MIN},
                                                        {"99999999999999999999", INT_MAX}};
    for (const auto &[text, number] : numbers) {
        char field[32];
        put(field, text);
        EXPECT_EQ(number_in(field), number) << text;
    }
}

TEST_F(TextsTest, ANumberIsWrittenAsItsText)
{
    for (const int32_t number : {0, 7, -7, 10, 4096, -100, INT32_MAX, INT32_MIN}) {
        char field[16];
        put_number(field, number);
        EXPECT_EQ(field, std::to_string(number));
    }
}

TEST_F(TextsTest, ANumberIsCutWithItsField)
{
    const std::string texts[] = {"", "-", "-1", "-12", "-123", "-123"};
    for (size_t width = 1; width <= 6; ++width) {
        char field[] = "########";
        put_number(field, width, -123);
        EXPECT_EQ(field, texts[width - 1]);
        EXPECT_EQ(std::string(field + width), std::string(8 - width, '#'));
    }
}

} // namespace texts_test
