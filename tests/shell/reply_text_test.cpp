// SPDX-License-Identifier: MIT
#include "protocol/json.h"
#include "shell/reply_text.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace agent {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string shown(const char *json, bool coloured = false)
{
    const Json item(cJSON_Parse(json));
    return text_for_terminal(item.get(), coloured);
}

TEST(ReplyText, StandsOverSeveralLines)
{
    EXPECT_EQ(
        shown(R"({"Status":"0","L":[1,{"a":null},[]],"E":{}})"),
        "{\n  \"Status\": \"0\",\n  \"L\": [\n    1,\n    {\n      \"a\": null\n    },\n    []\n"
        "  ],\n  \"E\": {}\n}");
}

TEST(ReplyText, HasColoursWhereTheyAreWanted)
{
    EXPECT_EQ(shown(R"({"Status":"0"})", true),
              "{\n  \x1b[34m\"Status\"\x1b[0m: \x1b[32m\"0\"\x1b[0m\n}");
    EXPECT_THAT(shown(R"({"Status":"1"})", true), HasSubstr("\x1b[1;31m\"1\""));
    EXPECT_THAT(shown(R"({"Status":"1"})"), Not(HasSubstr("\x1b")));
}

TEST(ReplyText, NothingInItSteersTheTerminal)
{
    const char *hostile =
        "{\"\\u001b[31m\u009b\": \"\\u001b]0;title\\u0007\\r\\n\u202e\u200b\x7f\", "
        "\"b\": \"\xff\xfe\"}";
    for (const bool coloured : {false, true}) {
        std::string text = shown(hostile, coloured);
        for (const char *colour : {"\x1b[34m", "\x1b[32m", "\x1b[0m"}) {
            for (size_t at = text.find(colour); at != std::string::npos; at = text.find(colour)) {
                text.erase(at, strlen(colour));
            }
        }
        EXPECT_TRUE(std::none_of(text.begin(), text.end(), [](unsigned char byte) {
            return (byte < ' ' && byte != '\n') || byte == 0x7f;
        })) << text;
        EXPECT_THAT(text, HasSubstr("\\u009b"));
        EXPECT_THAT(text, HasSubstr("\\u202e\\u200b\\u007f"));
        EXPECT_THAT(text, Not(HasSubstr("\xff")));
    }
}

TEST(ReplyText, DoesNotGrowWithoutBounds)
{
    std::string deep;
    for (int at = 0; at < 900; ++at) {
        deep += "[";
    }
    for (int at = 0; at < 200000; ++at) {
        deep += "[],";
    }
    deep += "[]" + std::string(900, ']');
    const std::string text = shown(deep.c_str());
    EXPECT_LT(text.size(), 4UL * 1024 * 1024);
    EXPECT_THAT(text, HasSubstr("the rest is not shown"));
}

TEST(ReplyText, EventsStandOnOneLine)
{
    const Json data(cJSON_Parse("{\"a\": \"\\u001b[2J\\n\u009b\"}"));
    EXPECT_EQ(event_for_terminal("update.progress", data.get(), false),
              R"(* update.progress {"a":"\u001b[2J\n\u009b"})");
    EXPECT_EQ(event_for_terminal("a\x1b[2J\n", nullptr, true), "\x1b[1;36m* a\\x1b[2J\\n\x1b[0m");
}

} // namespace
} // namespace agent
