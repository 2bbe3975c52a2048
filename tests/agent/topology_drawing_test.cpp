// SPDX-License-Identifier: MIT
// The drawing of the mesh, with any device names.
#include "commands/topology_drawing.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

using agent::graph_of;
using agent::Router;
using agent::tree_of;

namespace topology_drawing_test {

const std::vector<Router> kChain = {
    {{"main", "", "", ""}, {{"tv", "cable", "", ""}}, false, {1, 2}},
    {{"floor", "cable", "", ""}, {{"pad", "5GHz", "-50", "blocked"}}, false, {3}},
    {{"shed", "5GHz", "", "offline"}, {}, true, {}},
    {{"attic", "5GHz", "-61", ""}, {}, false, {}},
};

std::vector<Router> named(const std::string &name)
{
    return {{{name, "", "", ""}, {{name, name, name, name}}, false, {}}};
}

// Whether every line is a valid statement of the graph, with each text in one pair of quotes.
void expect_syntax(const std::string &graph)
{
    static const std::string text = R"re("([^"\\]|\\["\\])*")re";
    static const std::string style = "(, style=dashed)?";
    static const std::regex statement("graph mesh \\{|    rankdir=LR;|\\}|"
                                      "    (router|device)[0-9]+ \\[label=" +
                                      text + style + "(, shape=box)?\\];|" +
                                      "    router[0-9]+ -- (router|device)[0-9]+ \\[label=" + text +
                                      style + "\\];");
    std::istringstream lines(graph);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_TRUE(std::regex_match(line, statement)) << line;
    }
    EXPECT_EQ(graph.back(), '}');
}

TEST(TopologyTree, HasALineForEachLink)
{
    EXPECT_EQ(tree_of(kChain, false), "main\n"
                                      "├─ tv        cable\n"
                                      "╞═ floor     cable\n"
                                      "│  ├─ pad    5GHz   -50 dBm  blocked\n"
                                      "│  ╘═ attic  5GHz   -61 dBm\n"
                                      "╘═ shed      5GHz            offline\n"
                                      "   └─ …");
    EXPECT_EQ(tree_of(kChain, true), "main\n"
                                     "|- tv        cable\n"
                                     "|= floor     cable\n"
                                     "|  |- pad    5GHz   -50 dBm  blocked\n"
                                     "|  `= attic  5GHz   -61 dBm\n"
                                     "`= shed      5GHz            offline\n"
                                     "   `- ...");
}

TEST(TopologyTree, AlignsItsColumnsWithWideCharacters)
{
    EXPECT_EQ(tree_of({{{"家", "", "", ""},
                        {{"客厅电视", "cable", "", ""}, {"pc", "cable", "", ""}},
                        false,
                        {}}},
                      true),
              "家\n|- 客厅电视  cable\n`- pc        cable");
}

TEST(TopologyGraph, HasAStatementForEachNodeAndLink)
{
    const std::string graph = graph_of(kChain);
    expect_syntax(graph);
    EXPECT_EQ(graph, "graph mesh {\n"
                     "    rankdir=LR;\n"
                     "    router0 [label=\"main\", shape=box];\n"
                     "    device0 [label=\"tv\"];\n"
                     "    router0 -- device0 [label=\"cable\"];\n"
                     "    router1 [label=\"floor\", shape=box];\n"
                     "    device1 [label=\"pad (blocked)\", style=dashed];\n"
                     "    router1 -- device1 [label=\"5GHz -50 dBm\", style=dashed];\n"
                     "    router2 [label=\"shed (offline)\", style=dashed, shape=box];\n"
                     "    device2 [label=\"…\"];\n"
                     "    router2 -- device2 [label=\"\"];\n"
                     "    router3 [label=\"attic\", shape=box];\n"
                     "    router0 -- router1 [label=\"cable\"];\n"
                     "    router0 -- router2 [label=\"5GHz\", style=dashed];\n"
                     "    router1 -- router3 [label=\"5GHz -61 dBm\"];\n"
                     "}");
}

TEST(TopologyGraph, QuotesNames)
{
    for (const char *name :
         {"\"", "\\", "a\\\"", "\"];}", "\\N", "trailing\\", "<b>", "-- x ;", ""}) {
        expect_syntax(graph_of(named(name)));
    }
    EXPECT_NE(graph_of(named("a\"b\\N&lt;")).find("label=\"a\\\"b\\\\N&amp;lt;\""),
              std::string::npos);
}

} // namespace topology_drawing_test
