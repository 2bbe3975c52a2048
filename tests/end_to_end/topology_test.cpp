// SPDX-License-Identifier: MIT
// hgagent topology: the drawing of the mesh.
#include "agent_commands.h"
#include "golden.h"
#include "standing_clock.h"

#include <gmock/gmock.h>

#include <cstdlib>

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace topology_test {

// Guard: sets the locale of agents that are started.
class Locale {
  public:
    explicit Locale(const char *name) { setenv("LC_ALL", name, 1); }
    ~Locale() { unsetenv("LC_ALL"); }
    Locale(const Locale &) = delete;
    Locale &operator=(const Locale &) = delete;
};

class Topology : public testing::TestWithParam<const char *> {
    const StandingClock clock_;
    const Locale locale_{"C.UTF-8"};
};

std::string drawing(const std::string &home, const std::vector<std::string> &form = {})
{
    std::vector<std::string> words = {"--scenario", home, "topology"};
    words.insert(words.end(), form.begin(), form.end());
    const AgentResult result = run_agent(words);
    EXPECT_EQ(result.exit_status, 0);
    return result.output;
}

std::string name_of(const testing::TestParamInfo<const char *> &home)
{
    return home.param;
}

TEST_P(Topology, IsDrawnAsATree)
{
    const std::string home = GetParam();
    expect_golden(home + ".txt", drawing(home));
}

TEST_P(Topology, IsDrawnInAscii)
{
    const std::string home = GetParam();
    const std::string ascii = drawing(home, {"--ascii"});
    expect_golden(home + ".ascii.txt", ascii);
    const Locale locale("C");
    EXPECT_EQ(drawing(home), ascii);
}

TEST_P(Topology, IsAGraph)
{
    const std::string home = GetParam();
    expect_golden(home + ".dot", drawing(home, {"--dot"}));
}

INSTANTIATE_TEST_SUITE_P(Homes, Topology,
                         testing::Values("three_storey_house", "single_router", "operator_variant",
                                         "short_report"),
                         name_of);

TEST(TopologyDrawing, MarksWhereTheReportIsTruncated)
{
    const StandingClock clock;
    const std::vector<std::string> lines = lines_of(drawing("crowded_mesh", {"--ascii"}));
    const auto count = [&](const std::string &mark) {
        return std::ranges::count_if(
            lines, [&](const std::string &line) { return line.find(mark) != std::string::npos; });
    };
    EXPECT_EQ(lines.size(), 1U + 32 + 1 + 8 + 8 * 64);
    EXPECT_EQ(count("= "), 8);
    EXPECT_THAT(lines[33], "|- ...");
    EXPECT_EQ(count("..."), 1);
}

TEST(TopologyDrawing, AttachesAllToTheMainRouterWithoutATree)
{
    const AgentResult result =
        run_agent({"--fault", "devapi_topo_xml_getinfo=-1", "topology", "--ascii"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(lines_of(result.output),
                AllOf(Contains(StartsWith("|= First floor ")), Contains(StartsWith("`= Attic "))));
}

TEST(TopologyDrawing, CannotBeMadeWhenTheDeviceFails)
{
    EXPECT_THAT(
        error_of({"--fault", "devapi_get_hg_base_info=-1", "topology"}, 1),
        HasSubstr("hgagent: the gateway does not report its topology: get base info error!"));
    EXPECT_THAT(error_of({"--fault", "devapi_get_ad_base_info=-1", "topology"}, 1),
                HasSubstr("report its topology: get main base info error!"));
}

} // namespace topology_test
