// SPDX-License-Identifier: MIT
// Human-readable tables.
#include "io/pages.h"

#include <gtest/gtest.h>

#include <sstream>

namespace pages_test {

std::string printed(const agent::Table &table, const std::string &indent = "")
{
    std::ostringstream page;
    table.print(page, indent);
    return page.str();
}

TEST(Table, AlignsItsCells)
{
    agent::Table table;
    table.row({"name", "size", "kind"});
    table.row({"a", "1000000", "x"});
    table.row({"the longest", "", "y"});
    EXPECT_EQ(printed(table, "  "), "  name         size     kind\n"
                                    "  a            1000000  x\n"
                                    "  the longest           y\n");
}

TEST(Table, CountsTheColumnsOfCharacters)
{
    agent::Table table;
    table.row({"ab", "|"});
    table.row({"\u5ba2\u5385\u7535\u89c6", "|"}); // four characters, each two columns wide
    table.row({"Z\u00fcrich", "|"});
    table.row({"Zu\u0308", "|"}); // a combining character has no column
    EXPECT_EQ(printed(table), "ab        |\n"
                              "\u5ba2\u5385\u7535\u89c6  |\n"
                              "Z\u00fcrich    |\n"
                              "Zu\u0308        |\n");
}

TEST(Table, WritesNoTrailingBlanks)
{
    agent::Table table;
    table.row({"long left", "right", ""});
    table.row({"short"});
    table.row({"none", "", ""});
    EXPECT_EQ(printed(table), "long left  right\nshort\nnone\n");
}

} // namespace pages_test
