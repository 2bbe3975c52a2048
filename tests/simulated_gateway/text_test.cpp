#include "text.h"

#include <gtest/gtest.h>

using simulated_gateway::whole_letters;

namespace {

TEST(TextTest, APartOfALetterAtTheEndIsDropped)
{
    const std::string letters[] = {"ü", "€", "🏠"};
    for (const std::string &letter : letters) {
        for (size_t length = 1; length < letter.size(); ++length) {
            EXPECT_EQ(whole_letters("ab" + letter.substr(0, length)), "ab") << letter << length;
            EXPECT_EQ(whole_letters(letter.substr(0, length)), "") << letter << length;
        }
        EXPECT_EQ(whole_letters("ab" + letter), "ab" + letter);
        EXPECT_EQ(whole_letters(letter + letter.substr(0, 1)), letter);
    }
}

TEST(TextTest, WhateverElseIsNoUtf8Stays)
{
    for (const char *text : {"", "a", "\xff", "a\x80", "\x80\x80\x80", "\x80\x80\x80\x80\x80",
                             "\xc3\xbc\xbc", "\xe2\x41", "\xc3\x28"}) {
        EXPECT_EQ(whole_letters(text), text);
    }
}

} // namespace
