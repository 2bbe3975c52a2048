// SPDX-License-Identifier: MIT
#include "core/fields.h"
#include "system/error.h"
#include "system/text.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::StartsWith;
using testing::ThrowsMessage;

namespace {

TEST(FieldsTest, ATextIsTruncatedAfterACompleteCharacter)
{
    char field[6];
    std::fill(std::begin(field), std::end(field), 'x');
    put(field, "ab");
    EXPECT_EQ(std::string(field, sizeof(field)), std::string("ab\0\0\0\0", 6));
    put(field, "abcdefgh");
    EXPECT_STREQ(field, "abcde");
    put(field, "abcdü");
    EXPECT_STREQ(field, "abcd");
    put(field, "");
    EXPECT_STREQ(field, "NULL");
    put(field, true);
    EXPECT_STREQ(field, "1");
    put(field, -5);
    EXPECT_STREQ(field, "-5");
}

TEST(FieldsTest, AFieldIsNotReadBeyondItsEnd)
{
    const char full[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(taken(full), "abcd");
    const char cut[4] = {'a', 'b', 'c', '\xc3'};
    EXPECT_EQ(taken(cut), "abc");
    const char none[8] = "NULL";
    EXPECT_EQ(taken(none), "");
}

TEST(FieldsTest, AValueThatIsNoneIsNamed)
{
    EXPECT_TRUE(flag_of("Enable", "1"));
    EXPECT_FALSE(flag_of("Enable", "0"));
    EXPECT_EQ(number_of("Limit", "-12"), -12);
    EXPECT_EQ(to_text(required_mac("Mac", "a4-bb-6d-31-07-5e")), "A4:BB:6D:31:07:5E");
    for (const char *wrong : {"", "2", "10", "yes", " 1"}) {
        EXPECT_THAT([&] { flag_of("Enable", wrong); },
                    ThrowsMessage<Error>(StartsWith("Enable: ")));
    }
    for (const char *wrong : {"", "1x", "99999999999999999999", "0x1", " 1", "+1"}) {
        EXPECT_THAT([&] { number_of("Limit", wrong); },
                    ThrowsMessage<Error>(StartsWith("Limit: ")));
    }
    for (const char *wrong : {"", "A4:BB:6D:31:07", "A4:BB:6D:31:07:5G", "A4:BB:6D:31:07:5E:11",
                              "A4:BB-6D:31:07:5E", "A4BB6D31075", "A4 BB 6D 31 07 5E"}) {
        EXPECT_THAT([&] { required_mac("Mac", wrong); }, ThrowsMessage<Error>(StartsWith("Mac: ")));
    }
}

TEST(FieldsTest, APrintableTextIsOneLineOfUtf8)
{
    EXPECT_EQ(printable("Küche 🏠"), "Küche 🏠");
    EXPECT_EQ(printable("a\n\x1b\u009b\x7f\u202e\u2066\u061c"
                        "b\ufeff"),
              "ab");
    EXPECT_EQ(printable("\xff\xc3("), "\ufffd\ufffd(");
}

} // namespace
