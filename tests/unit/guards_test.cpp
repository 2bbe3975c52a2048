// SPDX-License-Identifier: MIT
// The address sanitizer detects leaks and double frees.
#include "guards.h"

#include "handler_test.h"

namespace guards_test {

using namespace smart_router;

struct Record {
    char text[8];
};

class GuardsTest : public HandlerTest {};

TEST_F(GuardsTest, AnItemIsDeletedUnlessItIsReleased)
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

TEST_F(GuardsTest, AllocatedMemoryIsZeroed)
{
    const Allocated<Record> record;
    ASSERT_NE(record.get(), nullptr);
    EXPECT_EQ(std::string(record->text, sizeof(Record)), std::string(8, '\0'));
}

} // namespace guards_test
