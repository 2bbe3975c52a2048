// SPDX-License-Identifier: MIT
// The page on writing scenarios has to name every field of the model.
#include "model/model.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

class FieldNames {
  public:
    template <class Value, class Rule> void field(const char *name, const Value &, const Rule &)
    {
        names.push_back(name);
    }
    template <class Struct> void object(const char *name, const Struct &value)
    {
        names.push_back(name);
        Struct::describe(value, *this);
    }
    template <class Struct> void list(const char *name, const std::vector<Struct> &, size_t)
    {
        object(name, Struct());
    }

    std::vector<std::string> names;
};

template <class Struct> void expect_documented(const Struct &value, size_t least)
{
    std::ostringstream page;
    page << std::ifstream(DOCUMENTATION).rdbuf();
    FieldNames fields;
    Struct::describe(value, fields);
    ASSERT_GE(fields.names.size(), least);
    for (const std::string &name : fields.names) {
        EXPECT_NE(page.str().find("`" + name + "`"), std::string::npos)
            << "simulated_gateway.md needs a row for " << name;
    }
}

TEST(DocumentationTest, NamesEveryFieldOfAScenario)
{
    expect_documented(simulated_gateway::Home(), 50);
}

TEST(DocumentationTest, NamesEveryFieldOfTheFirmware)
{
    expect_documented(simulated_gateway::Firmware(), 10);
}

} // namespace
