// SPDX-License-Identifier: MIT
#include "fields.h"

#include "test_records.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace fields_test {

using namespace smart_router;

static_assert(sizeof kLampFields == 4 + (4 + sizeof "Colour") + (4 + sizeof "Level"));
constexpr Field kLevel = *++FieldList(kLampFields).begin();
static_assert(kLevel.offset == 12 && kLevel.width == 4);
static_assert(FieldList(kLampFields).count() == 2 && FieldList(kLampFields).required() == 2);
static_assert(FieldList(kLampFields).record_size() == sizeof(Lamp));
constexpr auto kColourRequired = kLampFields.requiring(1);
static_assert(FieldList(kColourRequired).count() == 2 &&
              FieldList(kColourRequired).required() == 1);

// The fields of a table, each with its place and width.
std::vector<std::string> listed(FieldList fields)
{
    std::vector<std::string> list;
    for (const Field field : fields) {
        list.push_back(std::string(field.key) + " " + std::to_string(field.offset) + " " +
                       std::to_string(field.width));
    }
    return list;
}

TEST(FieldsTest, AFieldHasTheNameOfItsMemberOrAnotherKey)
{
    constexpr auto kTable = Fields{
        FIELD_AS(Lamp, number, "Number"),
        FIELD(Lamp, Level),
        FIELD_IN(Lamp, origin, Maker),
        FIELD_AS(Lamp, origin.Maker, "MadeBy"),
    };
    EXPECT_EQ(listed(kTable), (std::vector<std::string>{"Number 0 0", "Level 12 4", "Maker 16 16",
                                                        "MadeBy 16 16"}));
}

TEST(FieldsTest, ATableIsBuiltFromOthers)
{
    constexpr auto kTable =
        Fields{FIELD_AS(Lamp, number, "Number"), kColourRequired, FIELD_IN(Lamp, origin, Maker)};
    EXPECT_EQ(listed(kTable),
              (std::vector<std::string>{"Number 0 0", "Colour 4 8", "Level 12 4", "Maker 16 16"}));
    EXPECT_EQ(decltype(kTable)::kCount, 4u);
    EXPECT_EQ(FieldList(kTable).count(), 4u);
    EXPECT_EQ(FieldList(kTable).required(), 4u) << "regardless of what the parts require";
    EXPECT_EQ(FieldList(kTable).record_size(), sizeof(Lamp));
    EXPECT_EQ(listed(Fields{kLampFields}), listed(kLampFields));
}

} // namespace fields_test
