// SPDX-License-Identifier: MIT
// What handlers reply. The address sanitizer detects leaks.
#include "reply.h"

#include "failing_memory.h"
#include "guards.h"
#include "handler_test.h"
#include "test_records.h"

namespace reply_test {

using namespace smart_router;

constexpr auto kFields = Fields{
    FIELD(FullField, field),
    FIELD(FullField, behind),
};

class ReplyTest : public HandlerTest {};

TEST_F(ReplyTest, ATextIsAddedUpToItsNulOrItsWidth)
{
    const Json object = parse("{}");
    const char field[4] = {'a', 'b', 'c', 'd'};
    EXPECT_TRUE(add_text(object.get(), "full", field, sizeof field));
    EXPECT_TRUE(add_text(object.get(), "short", "ab\0cd", 5));
    EXPECT_TRUE(add_text(object.get(), "none", field, 0));
    EXPECT_TRUE(add_text(object.get(), "plain", "text"));
    EXPECT_EQ(print(object.get()), R"({"full":"abcd","short":"ab","none":"","plain":"text"})");
    const cJSON *item = cJSON_GetObjectItem(object.get(), "full");
    EXPECT_EQ(item->type & 0xff, cJSON_String);
    EXPECT_EQ(item->type & cJSON_IsReference, 0);
}

TEST_F(ReplyTest, ARecordBecomesAnObject)
{
    Door door = {"gate", "1", -80};
    door.Code[1] = '2'; // no NUL
    EXPECT_EQ(print(Json(object_of(kDoorFields, &door)).get()),
              R"({"Name":"gate","Width":"-80","Code":"12"})");
}

TEST_F(ReplyTest, ARecordBecomesNoIncompleteObject)
{
    const Door door = {"gate", "1", 80};
    for (size_t first = 0; first < 7; ++first) {
        const FailingMemory memory(first, FailingMemory::Fail::kOnce);
        EXPECT_EQ(object_of(kDoorFields, &door), nullptr) << "allocation " << first;
        EXPECT_TRUE(memory.has_failed());
    }
    const FailingMemory memory(7, FailingMemory::Fail::kOnce);
    EXPECT_NE(Json(object_of(kDoorFields, &door)), nullptr);
}

TEST_F(ReplyTest, AReplyIsJoinedAfterWhatIsThere)
{
    const Json object = parse(R"({"x":1})");
    Reply reply;
    reply.success();
    reply.text("a", "1");
    EXPECT_EQ(print(object.get()), R"({"x":1})");
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), R"({"x":1,"Status":"0","a":"1"})");
    EXPECT_STREQ(cJSON_GetObjectItem(object.get(), "a")->string, "a");
}

TEST_F(ReplyTest, AnEmptyReplyAddsNothing)
{
    for (const char *text : {"{}", R"({"x":1})"}) {
        const Json object = parse(text);
        Reply reply;
        EXPECT_TRUE(reply.join(object.get()));
        EXPECT_EQ(print(object.get()), text);
    }
}

TEST_F(ReplyTest, AReplyJoinsOnlyAnObject)
{
    for (const char *other : {"[]", "[1]", "\"text\"", "1", "null"}) {
        const Json json = parse(other);
        Reply reply;
        reply.success();
        EXPECT_FALSE(reply.join(json.get()));
        EXPECT_EQ(print(json.get()), other);
    }
    Reply reply;
    reply.success();
    EXPECT_FALSE(reply.join(nullptr));
}

TEST_F(ReplyTest, AReplyWithoutOneOfItsItemsIsNotJoined)
{
    const Json object = parse("{}");
    Reply reply;
    reply.success();
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.text("a", "1");
    }
    EXPECT_FALSE(reply.complete());
    reply.text("b", "2");
    EXPECT_FALSE(reply.complete());
    EXPECT_FALSE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), "{}");
}

TEST_F(ReplyTest, AReplyHasItemsListsAndElements)
{
    const Json object = parse(R"({"x":1})");
    Reply reply;
    reply.add("item", cJSON_CreateTrue());
    cJSON *list = reply.list("list");
    reply.append(list, cJSON_CreateNumber(7));
    reply.append(list, kFields, &kFullField);
    reply.list("empty");
    EXPECT_TRUE(reply.complete());
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()),
              R"({"x":1,"item":true,"list":[7,{"field":"42bC","behind":"D77"}],"empty":[]})");
}

TEST_F(ReplyTest, MoreCanBeJoinedToAJoinedReply)
{
    for (const char *request : {"{}", R"({"x":1})", R"({"x":1,"y":2})"}) {
        const Json object = parse(request);
        const int before = cJSON_GetArraySize(object.get());
        EXPECT_TRUE(Reply().join(object.get()));
        EXPECT_EQ(print(object.get()), request);
        for (int joined = 1; joined <= 2; ++joined) {
            Reply reply;
            reply.add("a", cJSON_CreateTrue());
            reply.add("b", cJSON_CreateFalse());
            EXPECT_TRUE(reply.join(object.get()));
            EXPECT_TRUE(Reply().join(object.get()));
            EXPECT_EQ(cJSON_GetArraySize(object.get()), before + 2 * joined);
        }
        cJSON_AddItemToObject(object.get(), "last", cJSON_CreateNull());
        cJSON_DeleteItemFromObject(object.get(), "b");
        std::string keys;
        const cJSON *previous = nullptr;
        cJSON *item;
        cJSON_ArrayForEach(item, object.get())
        {
            keys += item->string;
            EXPECT_TRUE(previous == nullptr || item->prev == previous);
            previous = item;
        }
        EXPECT_EQ(keys.substr(static_cast<size_t>(before)), "aablast");
        EXPECT_EQ(object->child->prev, previous);
    }
}

// Not every builder of objects maintains the pointer to the last member.
TEST_F(ReplyTest, AReplyFindsTheEndByItself)
{
    const Json object = parse(R"({"x":1,"y":2})");
    object->child->prev = nullptr;
    Reply reply;
    reply.add("a", cJSON_CreateTrue());
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), R"({"x":1,"y":2,"a":true})");
}

TEST_F(ReplyTest, AReplyWithANullItemIsIncomplete)
{
    const Json object = parse("{}");
    Reply no_item;
    no_item.add("item", nullptr);
    EXPECT_FALSE(no_item.complete());
    no_item.add("item", cJSON_CreateTrue());
    EXPECT_FALSE(no_item.complete());
    EXPECT_FALSE(no_item.join(object.get()));

    Reply no_element;
    cJSON *list = no_element.list("list");
    no_element.append(list, nullptr);
    EXPECT_FALSE(no_element.complete());
    no_element.append(list, cJSON_CreateTrue()); // deleted, as the reply cannot be sent
    no_element.append(list, kFields, &kFullField);
    EXPECT_EQ(cJSON_GetArraySize(list), 0);
    EXPECT_FALSE(no_element.join(object.get()));
    EXPECT_EQ(print(object.get()), "{}");
}

TEST_F(ReplyTest, AReplyWithoutMemoryForAListOrAnElementIsIncomplete)
{
    {
        Reply reply;
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        EXPECT_EQ(reply.list("list"), nullptr);
        EXPECT_FALSE(reply.complete());
    }
    for (size_t first = 0; first < 1 + 2 * 2; ++first) {
        Reply reply;
        cJSON *list = reply.list("list");
        const FailingMemory memory(first, FailingMemory::Fail::kOnce);
        reply.append(list, kFields, &kFullField);
        EXPECT_FALSE(reply.complete()) << first;
        EXPECT_EQ(cJSON_GetArraySize(list), 0);
    }
}

TEST_F(ReplyTest, AReplyMayBePrinted)
{
    Reply reply;
    EXPECT_STREQ(PrintedJson(reply.print()).text(), "{\n}");
    reply.success();
    reply.text("a", "\"");
    for (int round = 0; round < 2; ++round) { // printing does not change it
        EXPECT_STREQ(PrintedJson(reply.print()).text(),
                     "{\n\t\"Status\":\t\"0\",\n\t\"a\":\t\"\\\"\"\n}");
    }
}

TEST_F(ReplyTest, AReplyWithoutOneOfItsItemsIsNotPrinted)
{
    Reply reply;
    reply.success();
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        EXPECT_EQ(reply.print(), nullptr);
    }
    EXPECT_TRUE(reply.complete()) << "the memory for the text does not belong to the reply";
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.text("a", "1");
    }
    EXPECT_EQ(reply.print(), nullptr);
}

TEST_F(ReplyTest, AFailureHasItsStatusFirst)
{
    const auto failure = [](const char *reason, size_t width = SIZE_MAX) {
        const Json object = parse("{}");
        fail(object.get(), reason, width);
        return print(object.get());
    };
    EXPECT_EQ(failure("why"), R"({"Status":"1","FailReason":"why"})");
    EXPECT_EQ(failure(""), R"({"Status":"1","FailReason":""})");
    EXPECT_EQ(failure(nullptr), R"({"Status":"1"})");
    EXPECT_EQ(failure("abcdef", 3), R"({"Status":"1","FailReason":"abc"})");
}

// Its text is a constant: the address sanitizer would detect that it is freed.
TEST_F(ReplyTest, AStatusCanBeCopiedReplacedAndDeleted)
{
    const Json object = parse("{}");
    fail(object.get(), "why");
    const Json copy(cJSON_Duplicate(object.get(), 1));
    EXPECT_TRUE(cJSON_ReplaceItemInObject(object.get(), "Status", cJSON_CreateString("2")));
    EXPECT_EQ(print(object.get()), R"({"Status":"2","FailReason":"why"})");
    EXPECT_EQ(cJSON_SetValuestring(cJSON_GetObjectItem(copy.get(), "Status"), "3"),
              std::string("3"));
    EXPECT_EQ(print(copy.get()), R"({"Status":"3","FailReason":"why"})");
    cJSON_DeleteItemFromObject(copy.get(), "Status");
    EXPECT_EQ(print(copy.get()), R"({"FailReason":"why"})");
}

TEST_F(ReplyTest, AFailureWithoutMemoryAddsNothing)
{
    for (size_t first = 0; first < 3; ++first) {
        const FailingMemory memory(first, FailingMemory::Fail::kLastingly);
        cJSON object = {};
        object.type = cJSON_Object;
        fail(&object, "why");
        EXPECT_EQ(object.child, nullptr) << "allocation " << first;
    }
}

TEST_F(ReplyTest, AnAnswerThatCouldNotBeBuiltFails)
{
    const Json object = parse("{}");
    Reply reply;
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        reply.success();
    }
    answer(object.get(), reply, "no memory");
    EXPECT_EQ(print(object.get()), R"({"Status":"1","FailReason":"no memory"})");
}

} // namespace reply_test
