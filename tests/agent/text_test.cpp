// Texts on their way out.
#include "text.h"

#include <gtest/gtest.h>

using agent::one_line;
using agent::to_utf8;

TEST(ToUtf8, KeepsWhatIsUtf8)
{
    const std::string text = "plain, \u00e4\u4e2d\U0001f600 \n\t\"";
    EXPECT_EQ(to_utf8(text), text);
    EXPECT_EQ(to_utf8(""), "");
}

TEST(ToUtf8, ReplacesWhatIsNot)
{
    EXPECT_EQ(to_utf8("a\xff"
                      "b"),
              "a\ufffdb");
    EXPECT_EQ(to_utf8("\xc4\xe3\xba\xc3"), "\ufffd\ufffd\ufffd");
    EXPECT_EQ(to_utf8("cut \xe4\xb8\"quoted\""), "cut \ufffd\"quoted\"");
    EXPECT_EQ(to_utf8("overlong \xc0\xaf"), "overlong \ufffd");
    EXPECT_EQ(to_utf8("surrogate \xed\xa0\x80!"), "surrogate \ufffd!");
    EXPECT_EQ(to_utf8("end \xe4\xb8"), "end \ufffd");
}

TEST(OneLine, EscapesControlCharacters)
{
    EXPECT_EQ(one_line("a\nb\r\tc\x01\x7f\x1b[31m"), "a\\nb\\r\\tc\\x01\\x7f\\x1b[31m");
    EXPECT_EQ(one_line(std::string_view("nul\0!", 5)), "nul\\x00!");
    EXPECT_EQ(one_line("\u009bm \u00a0\xff"), "\\x9bm \u00a0\ufffd");
}

TEST(OneLine, CutsLongTextsBetweenCharacters)
{
    EXPECT_EQ(one_line("12345", 5), "12345");
    EXPECT_EQ(one_line("123456", 5), "12345 [1 more bytes]");
    EXPECT_EQ(one_line("12\u4e2d6", 4), "12 [4 more bytes]");
    EXPECT_EQ(one_line("\x80\x80\x80", 2), " [3 more bytes]");
}
