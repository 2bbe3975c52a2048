// SPDX-License-Identifier: MIT
// The fast check whether a line is JSON, which must accept nothing that a parser refuses.
#include "protocol/plain_json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

using agent::is_plain_json;

namespace plain_json_test {

constexpr std::string_view kRequest =
    R"({"id": 1, "command": "SET", "params": {"a":"\"\\\/\b\f\n\r\t", "b":[-10.5,0,true,)"
    "false,null,[],{}]}, \"\u4e2d\":\"\U0001F600\x7f\"}\t\r\n";

// The parser's result, except for NULs: it takes one after the value as the end of the text.
bool is_json_without_nul(const std::string &text)
{
    bool has_nul = false;
    const auto look = [&](int, nlohmann::json::parse_event_t, nlohmann::json &item) {
        has_nul = has_nul || (item.is_string() &&
                              item.get_ref<std::string &>().find('\0') != std::string::npos);
        return true;
    };
    const bool is_json = !nlohmann::json::parse(text, look, false).is_discarded();
    return is_json && !has_nul && text.find('\0') == std::string::npos;
}

TEST(PlainJson, AcceptsWhatClientsSend)
{
    for (const std::string_view text :
         {kRequest, std::string_view("{}"), std::string_view(" [ ] "), std::string_view("0"),
          std::string_view("-0.5"), std::string_view(R"("")"), std::string_view("null"),
          std::string_view(R"({"id":1,"command":"GET_SN_INFO"})")}) {
        EXPECT_TRUE(is_plain_json(text)) << text;
    }
}

TEST(PlainJson, LeavesDoubtfulCasesToAParser)
{
    const std::string number(63, '1');
    EXPECT_TRUE(is_plain_json(number));
    EXPECT_FALSE(is_plain_json(number + "1"));
    EXPECT_FALSE(is_plain_json("1e5"));
    EXPECT_FALSE(is_plain_json(R"("\u0041")"));
    EXPECT_TRUE(is_plain_json(std::string(32, '[') + std::string(32, ']')));
    EXPECT_FALSE(is_plain_json(std::string(33, '[') + std::string(33, ']')));
    EXPECT_FALSE(is_plain_json(std::string(1000000, '[')));
}

TEST(PlainJson, RefusesInvalidJson)
{
    using namespace std::string_view_literals;
    for (const std::string_view text : {""sv,
                                        " "sv,
                                        "{"sv,
                                        "}"sv,
                                        "{]"sv,
                                        "[}"sv,
                                        "[1,]"sv,
                                        "[,1]"sv,
                                        "[1 2]"sv,
                                        "{\"a\"}"sv,
                                        "{\"a\":}"sv,
                                        "{\"a\":1,}"sv,
                                        "{a:1}"sv,
                                        "{1:1}"sv,
                                        "{\"a\"=1}"sv,
                                        "01"sv,
                                        "+1"sv,
                                        "-"sv,
                                        "1."sv,
                                        ".5"sv,
                                        "0x1"sv,
                                        "tru"sv,
                                        "truee"sv,
                                        "nul"sv,
                                        "NaN"sv,
                                        "'a'"sv,
                                        "\"a"sv,
                                        "\"a\\\""sv,
                                        "\"\\x\""sv,
                                        "\"\\\0\""sv,
                                        "\"\t\""sv,
                                        "\"\0\""sv,
                                        "{}\0"sv,
                                        "\0{}"sv,
                                        "{} {}"sv,
                                        "\"\xff\""sv,
                                        "\"\xc0\x80\""sv,
                                        "\"\xed\xa0\x80\""sv,
                                        "\"\xf4\x90\x80\x80\""sv,
                                        "\"\xe4\xb8\""sv,
                                        "\xc2\xa0{}"sv,
                                        "\v1"sv,
                                        "//\n1"sv}) {
        EXPECT_FALSE(is_plain_json(text)) << text;
        EXPECT_FALSE(is_json_without_nul(std::string(text))) << text;
    }
}

// Each byte of a request is removed, and replaced by every other.
TEST(PlainJson, AcceptsNothingThatAParserRefuses)
{
    const std::string request(kRequest);
    EXPECT_TRUE(is_json_without_nul(request));
    int sure = 0;
    const auto look_at = [&](const std::string &text) {
        if (is_plain_json(text)) {
            ++sure;
            EXPECT_TRUE(is_json_without_nul(text)) << text;
        }
    };
    for (size_t at = 0; at < request.size(); ++at) {
        look_at(request.substr(0, at));
        look_at(request.substr(0, at) + request.substr(at + 1));
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = request;
            changed[at] = static_cast<char>(byte);
            look_at(changed);
        }
    }
    EXPECT_GT(sure, 1000);
}

} // namespace plain_json_test
