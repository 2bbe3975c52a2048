// SPDX-License-Identifier: MIT
// Conversion and escaping of texts for output.
#include "io/text.h"

#include <gtest/gtest.h>

using agent::in_quotes;
using agent::one_line;
using agent::to_utf8;

TEST(ToUtf8, KeepsWhatIsUtf8)
{
    const std::string text = "plain, \u00e4\u4e2d\U0001f600 \n\t\"";
    EXPECT_EQ(to_utf8(text), text);
    EXPECT_EQ(to_utf8(""), "");
}

TEST(ToUtf8, TreatsAnythingElseAsGbk)
{
    EXPECT_EQ(to_utf8("\xc4\xe3\xba\xc3"), "\u4f60\u597d");
    EXPECT_EQ(to_utf8("a\xd6\xd0"
                      "b"),
              "a\u4e2db");
    // The second byte of a GBK character may be a backslash or an ASCII letter.
    EXPECT_EQ(to_utf8("\x81\\\x81"
                      "A\\"),
              "\u4e57\u4e04\\");
}

TEST(ToUtf8, ReplacesWhatIsNotGbkEither)
{
    EXPECT_EQ(to_utf8("a\xff"
                      "b"),
              "a\ufffdb");
    EXPECT_EQ(to_utf8("\xff\xff\xd6\"\xd6\xd0"), "\ufffd\ufffd\ufffd\"\u4e2d");
    EXPECT_EQ(to_utf8("cut \xc4\xe3\xba"), "cut \u4f60\ufffd");
    EXPECT_EQ(to_utf8("\xd6"), "\ufffd");
    EXPECT_EQ(to_utf8(std::string(100000, '\xff')).size(), 300000U);
}

TEST(ToUtf8, KeepsTruncatedUtf8)
{
    EXPECT_EQ(to_utf8("\u4e2d\u6587 \xe4\xb8"), "\u4e2d\u6587 \ufffd");
    EXPECT_EQ(to_utf8("\U0001f600\xf0\x9f\x98"), "\U0001f600\ufffd");
    EXPECT_EQ(to_utf8("\u00e4\xc3"), "\u00e4\ufffd");
}

TEST(OneLine, EscapesControlCharacters)
{
    EXPECT_EQ(one_line("a\nb\r\tc\x01\x7f\x1b[31m"), "a\\nb\\r\\tc\\x01\\x7f\\x1b[31m");
    EXPECT_EQ(one_line(std::string_view("nul\0!", 5)), "nul\\x00!");
    EXPECT_EQ(one_line("\u009bm \u00a0\xff"), "\\x9bm \u00a0\ufffd");
    EXPECT_EQ(one_line("\u4e2d \xd6\xd0"), "\u4e2d \ufffd\ufffd");
}

TEST(OneLine, EscapesDirectionControls)
{
    EXPECT_EQ(one_line("a\u202eb\u2066c\u200fd\u2028e\u061c"),
              "a\\x202eb\\x2066c\\x200fd\\x2028e\\x61c");
    EXPECT_EQ(one_line("\u05d0 \u2010\u2027\u202f\u205f\u2070"),
              "\u05d0 \u2010\u2027\u202f\u205f\u2070");
}

TEST(OneLine, EscapesCharactersWithoutWidth)
{
    EXPECT_EQ(one_line("a\u200bb\u200d\u2060\ufeff\u00ad\u034f\u180e\ufff9\U000e0041"),
              "a\\x200bb\\x200d\\x2060\\xfeff\\xad\\x34f\\x180e\\xfff9\\xe0041");
    EXPECT_EQ(one_line("\u00ae\u0350\u200a\ufefe\U000e0080"), "\u00ae\u0350\u200a\ufefe\U000e0080");
}

TEST(JsonForTerminal, EscapesAsJsonDoes)
{
    EXPECT_EQ(agent::json_for_terminal("{\n\t\"a\": \"\u4e2d\u009b\u202e\u200b\x7f\U000e0041\"\n}"),
              "{\n\t\"a\": \"\u4e2d\\u009b\\u202e\\u200b\\u007f\\udb40\\udc41\"\n}");
}

TEST(OneLine, CutsLongTextsBetweenCharacters)
{
    EXPECT_EQ(one_line("12345", 5), "12345");
    EXPECT_EQ(one_line("123456", 5), "12345 [1 more bytes]");
    EXPECT_EQ(one_line("12\u4e2d6", 4), "12 [4 more bytes]");
    EXPECT_EQ(one_line("\x80\x80\x80", 2), " [3 more bytes]");
}

TEST(InQuotes, IsUnambiguousForEveryByte)
{
    EXPECT_EQ(in_quotes(""), "\"\"");
    EXPECT_EQ(in_quotes("Ger\u00e4t \"a\\b\""), "\"Ger\u00e4t \\\"a\\\\b\\\"\"");
    EXPECT_EQ(in_quotes("a\n\x1b\xff\xe4\xbd"), "\"a\\n\\x1b\\xff\\xe4\\xbd\"");
    EXPECT_EQ(in_quotes(std::string(9000, 'x')).size(), 9002u);
}
