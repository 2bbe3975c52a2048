// SPDX-License-Identifier: MIT
#include "io/text.h"

#include <gtest/gtest.h>

using simulated_gateway::is_plain;
using simulated_gateway::printable;
using simulated_gateway::whole_characters;

namespace {

TEST(TextTest, APartialCharacterAtTheEndIsDropped)
{
    const std::string letters[] = {"ü", "€", "🏠"};
    for (const std::string &letter : letters) {
        for (size_t length = 1; length < letter.size(); ++length) {
            EXPECT_EQ(whole_characters("ab" + letter.substr(0, length)), "ab") << letter << length;
            EXPECT_EQ(whole_characters(letter.substr(0, length)), "") << letter << length;
        }
        EXPECT_EQ(whole_characters("ab" + letter), "ab" + letter);
        EXPECT_EQ(whole_characters(letter + letter.substr(0, 1)), letter);
    }
}

TEST(TextTest, OtherInvalidUtf8Stays)
{
    for (const char *text : {"", "a", "\xff", "a\x80", "\x80\x80\x80", "\x80\x80\x80\x80\x80",
                             "\xc3\xbc\xbc", "\xe2\x41", "\xc3\x28"}) {
        EXPECT_EQ(whole_characters(text), text);
    }
}

TEST(TextTest, APrintableTextShowsInvisibleCharacters)
{
    EXPECT_EQ(printable("a\n\x1b\u009b\xff\u00e4"), "a\\n\\x1b\\xc2\\x9b\\xff\u00e4");
    EXPECT_EQ(printable("a\u202eb\u200bc\ufeff"),
              "a\\xe2\\x80\\xaeb\\xe2\\x80\\x8bc\\xef\\xbb\\xbf");
}

TEST(TextTest, APlainTextHasNoControls)
{
    EXPECT_TRUE(is_plain(""));
    EXPECT_TRUE(is_plain("\u00e4\u200d\u202e")); // a name may need them
    for (const char *text : {"a\n", "\x7f", "\u009b", "\xff", "a\xc3"}) {
        EXPECT_FALSE(is_plain(text));
    }
}

} // namespace
