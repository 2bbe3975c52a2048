// The page for those who write scenarios has to name every field of the model.
#include "model.h"

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

TEST(DocumentationTest, NamesEveryFieldOfAScenario)
{
    std::ostringstream page;
    page << std::ifstream(DOCUMENTATION).rdbuf();
    FieldNames fields;
    const simulated_gateway::Home home;
    simulated_gateway::Home::describe(home, fields);
    ASSERT_GT(fields.names.size(), 50u);
    for (const std::string &name : fields.names) {
        EXPECT_NE(page.str().find("`" + name + "`"), std::string::npos) << name;
    }
}

} // namespace
