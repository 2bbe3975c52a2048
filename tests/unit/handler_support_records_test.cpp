// What the handlers make of the device's records, and who owns what they build. That nothing is
// lost is for the address sanitizer to see.
#include "failing_memory.h"
#include "handler_support.h"
#include "handler_test.h"

#include <climits>
#include <cstring>

namespace handler_support_records_test {

using namespace smart_router;

class HandlerSupportRecordsTest : public HandlerTest {};

// A field without room for a NUL, with something behind it that must not be read.
struct Brim {
    char field[4];
    char behind[4];
};
constexpr Brim kBrim = {{'4', '2', 'b', 'C'}, {'D', '7', '7', '\0'}};

// ---- Texts in fields ---------------------------------------------------------------------------

TEST_F(HandlerSupportRecordsTest, AFieldsTextEndsWithTheField)
{
    EXPECT_STREQ(Ended(kBrim.field).text(), "42bC");
    const char brief[4] = {'a', '\0', 'b', '\0'};
    EXPECT_STREQ(Ended(brief).text(), "a");
    const char none[4] = "";
    EXPECT_STREQ(Ended(none).text(), "");
}

TEST_F(HandlerSupportRecordsTest, AFieldHoldsATextInAnyCaseOnlyAsAWhole)
{
    const char field[8] = "Up";
    for (const char *text : {"up", "UP", "Up", "uP"}) {
        EXPECT_TRUE(holds_any_case(field, text)) << text;
    }
    for (const char *text : {"", "u", "ups", "up "}) {
        EXPECT_FALSE(holds_any_case(field, text)) << text;
    }
    EXPECT_TRUE(holds_any_case(kBrim.field, "42Bc"));
    EXPECT_FALSE(holds_any_case(kBrim.field, "42bCD"));
    const char none[4] = "";
    EXPECT_TRUE(holds_any_case(none, ""));
    EXPECT_FALSE(holds_any_case(none, "NULL"));
}

TEST_F(HandlerSupportRecordsTest, AFieldContainsATextAnywhereInIt)
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
    EXPECT_TRUE(contains(kBrim.field, "bC"));
    EXPECT_FALSE(contains(kBrim.field, "CD"));
    EXPECT_FALSE(contains(kBrim.field, "D7"));
    EXPECT_FALSE(contains(kBrim.field, "42bCD"));
    const char ended[8] = {'a', '\0', 'b', 'c', '\0'};
    EXPECT_FALSE(contains(ended, "bc"));
    const char none[4] = "";
    EXPECT_FALSE(contains(none, "a"));
}

TEST_F(HandlerSupportRecordsTest, AFieldsNumberEndsWithTheField)
{
    const char digits[4] = {'1', '2', '3', '4'};
    const Brim brim = {{'1', '2', '3', '4'}, {'5', '6', '7', '\0'}};
    EXPECT_EQ(number_in(digits), 1234);
    EXPECT_EQ(number_in(brim.field), 1234);
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
        char field[32] = "";
        strcpy(field, text);
        EXPECT_EQ(number_in(field), number) << text;
    }
}

// ---- Records -----------------------------------------------------------------------------------

int32_t answer;

int32_t read(Brim *brim)
{
    EXPECT_EQ(std::string(brim->field, sizeof *brim), std::string(8, '\0'));
    *brim = kBrim;
    return answer;
}

TEST_F(HandlerSupportRecordsTest, ARecordWhoseReadFailedIsEmpty)
{
    Brim brim;
    memset(&brim, '?', sizeof brim);
    answer = 0;
    EXPECT_TRUE(read_or_empty<read>(brim));
    EXPECT_EQ(memcmp(&brim, &kBrim, sizeof brim), 0);
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        answer = failure;
        memset(&brim, '?', sizeof brim);
        EXPECT_FALSE(read_or_empty<read>(brim));
        EXPECT_EQ(std::string(brim.field, sizeof brim), std::string(8, '\0'));
    }
}

// ---- Owners ------------------------------------------------------------------------------------

TEST_F(HandlerSupportRecordsTest, AnItemHasOneOwner)
{
    const Json array = parse("[]");
    {
        JsonItem item(cJSON_CreateString("kept"));
        const JsonItem deleted(cJSON_CreateString("deleted"));
        const JsonItem none(nullptr);
        EXPECT_STREQ(item.get()->valuestring, "kept");
        EXPECT_STREQ(deleted.get()->valuestring, "deleted");
        EXPECT_EQ(none.get(), nullptr);
        cJSON_AddItemToArray(array.get(), item.release());
        EXPECT_EQ(item.get(), nullptr);
        EXPECT_EQ(item.release(), nullptr);
    }
    EXPECT_EQ(print(array.get()), R"(["kept"])");
}

TEST_F(HandlerSupportRecordsTest, AllocatedMemoryIsZeroed)
{
    const Allocated<Brim> brim;
    ASSERT_NE(brim.get(), nullptr);
    EXPECT_EQ(std::string(brim->field, sizeof(Brim)), std::string(8, '\0'));
}

// ---- Replies -----------------------------------------------------------------------------------

constexpr auto kFields = Fields{
    FIELD(Brim, field),
    FIELD(Brim, behind),
};

TEST_F(HandlerSupportRecordsTest, AReplyHoldsItemsListsAndElements)
{
    const Json object = parse(R"({"x":1})");
    Reply reply;
    reply.add("item", cJSON_CreateTrue());
    cJSON *list = reply.list("list");
    reply.append(list, cJSON_CreateNumber(7));
    reply.append(list, kFields, &kBrim);
    reply.list("empty");
    EXPECT_TRUE(reply.complete());
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()),
              R"({"x":1,"item":true,"list":[7,{"field":"42bC","behind":"D77"}],"empty":[]})");
}

TEST_F(HandlerSupportRecordsTest, ToAJoinedReplyMoreCanBeJoined)
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

// Not everything that builds objects keeps where they end.
TEST_F(HandlerSupportRecordsTest, AReplyFindsTheEndByItself)
{
    const Json object = parse(R"({"x":1,"y":2})");
    object->child->prev = nullptr;
    Reply reply;
    reply.add("a", cJSON_CreateTrue());
    EXPECT_TRUE(reply.join(object.get()));
    EXPECT_EQ(print(object.get()), R"({"x":1,"y":2,"a":true})");
}

TEST_F(HandlerSupportRecordsTest, AReplyThatGotNothingIsIncomplete)
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
    no_element.append(list, cJSON_CreateTrue()); // deleted, as the reply is lost anyhow
    no_element.append(list, kFields, &kBrim);
    EXPECT_EQ(cJSON_GetArraySize(list), 0);
    EXPECT_FALSE(no_element.join(object.get()));
    EXPECT_EQ(print(object.get()), "{}");
}

TEST_F(HandlerSupportRecordsTest, AReplyWithoutMemoryForAListOrAnElementIsIncomplete)
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
        reply.append(list, kFields, &kBrim);
        EXPECT_FALSE(reply.complete()) << first;
        EXPECT_EQ(cJSON_GetArraySize(list), 0);
    }
}

} // namespace handler_support_records_test
