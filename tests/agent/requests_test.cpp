// SPDX-License-Identifier: MIT
// Replies as JSON text.
#include "protocol/requests.h"

#include <gtest/gtest.h>

#include <new>

using agent::Json;
using agent::print;

namespace requests_test {

// A constant key and a copied one, referenced texts, and nesting.
Json reply_in_gbk()
{
    static const char *const kText = "\xd6\xd0"; // the character U+4E2D
    Json reply(cJSON_CreateObject());
    cJSON_AddItemToObjectCS(reply.get(), kText, cJSON_CreateString("\u4e2d"));
    cJSON_AddItemToObject(reply.get(), kText, cJSON_CreateStringReference(kText));
    cJSON *list = cJSON_AddArrayToObject(reply.get(), "list");
    cJSON_AddItemToArray(list, cJSON_CreateString("\xd6\\ \xff\n"));
    cJSON *inner = cJSON_CreateObject();
    cJSON_AddItemToArray(list, inner);
    cJSON_AddStringToObject(inner, "inner", kText);
    cJSON_AddNumberToObject(inner, "number", 1);
    return reply;
}

TEST(Print, ConvertsEachTextAndKeyToUtf8)
{
    const Json reply = reply_in_gbk();
    EXPECT_EQ(print(reply.get()),
              "{\"\u4e2d\":\"\u4e2d\",\"\u4e2d\":\"\u4e2d\","
              "\"list\":[\"\u8b00 \ufffd\\n\",{\"inner\":\"\u4e2d\",\"number\":1}]}");
}

TEST(Print, LeavesTheItemUnchanged)
{
    const Json reply = reply_in_gbk();
    const std::string before = print(reply.get(), {.raw_bytes = true});
    print(reply.get());
    EXPECT_EQ(print(reply.get(), {.raw_bytes = true}), before);
    EXPECT_EQ(before.find("\u8b00"), std::string::npos);
}

TEST(Print, PassesRawBytesThrough)
{
    const Json text(cJSON_CreateString("\xc4\xe3\xff \u4e2d"));
    EXPECT_EQ(print(text.get(), {.raw_bytes = true}), "\"\xc4\xe3\xff \u4e2d\"");
}

TEST(Print, IndentsWhatItConverts)
{
    const Json reply(cJSON_CreateObject());
    cJSON_AddStringToObject(reply.get(), "a", "\xd6\xd0");
    EXPECT_EQ(print(reply.get(), {.indented = true}), "{\n\t\"a\":\t\"\u4e2d\"\n}");
}

TEST(ReplyPrinter, PrintsRepliesOfAnyLengthOneAfterTheOther)
{
    agent::ReplyPrinter printer;
    for (const size_t length : {3, 5000, 0, 5001, 300000, 299999, 1}) {
        const Json reply(cJSON_CreateObject());
        cJSON_AddStringToObject(reply.get(), "text", std::string(length, 'x').c_str());
        cJSON_AddNumberToObject(reply.get(), "number", -1.2345678901234567e-300);
        EXPECT_EQ(printer.print(reply.get(), false), print(reply.get()));
        printer.forget();
    }
}

TEST(ReplyPrinter, PrintsTheSameTextAsPrint)
{
    agent::ReplyPrinter printer;
    const Json reply = reply_in_gbk();
    for (const bool raw_bytes : {true, false, true, false}) {
        EXPECT_EQ(printer.print(reply.get(), raw_bytes),
                  print(reply.get(), {.raw_bytes = raw_bytes}));
    }
}

TEST(ReplyPrinter, WipesTheTextThatItForgets)
{
    agent::ReplyPrinter printer;
    const Json secret(cJSON_CreateString("secret"));
    const std::string_view text = printer.print(secret.get(), false);
    EXPECT_EQ(text, "\"secret\"");
    printer.forget();
    EXPECT_EQ(text, std::string(text.size(), '\0'));
}

// The plug-in never builds such a tree; cJSON prints none of it, regardless of the buffer's size.
TEST(ReplyPrinter, TreatsAnUnprintableTreeAsLackOfMemory)
{
    agent::ReplyPrinter printer;
    cJSON nothing = {};
    EXPECT_THROW(printer.print(&nothing, false), std::bad_alloc);
    EXPECT_EQ(printer.print(Json(cJSON_CreateTrue()).get(), false), "true");
}

} // namespace requests_test
