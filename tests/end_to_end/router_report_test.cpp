// SPDX-License-Identifier: MIT
// The reports on the routers of the mesh. Each built-in home has golden files, except the crowded
// one, whose entries are only counted.
#include "gateway_test.h"
#include "golden.h"
#include "standing_clock.h"

#include <cjson/cJSON.h>
#include <gmock/gmock.h>

#include <memory>
#include <tuple>

using testing::HasSubstr;

namespace router_report_test {

using Json = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

Json parse(const std::string &text)
{
    return {cJSON_Parse(text.c_str()), cJSON_Delete};
}

// Indented, so that differences are readable; repeated keys are kept.
std::string indented(const std::string &text)
{
    const std::unique_ptr<char, decltype(&cJSON_free)> printed(cJSON_Print(parse(text).get()),
                                                               cJSON_free);
    return std::string(printed.get()) + "\n";
}

// The number of items in each list with the key; the key may itself be in each item of a list.
std::vector<int> sizes(const cJSON *item, const char *key)
{
    std::vector<int> found;
    const cJSON *list = cJSON_GetObjectItem(item, key);
    if (list != nullptr) {
        found.push_back(cJSON_GetArraySize(list));
    }
    const cJSON *below = nullptr;
    cJSON_ArrayForEach(below, item)
    {
        const std::vector<int> more = sizes(below, key);
        found.insert(found.end(), more.begin(), more.end());
    }
    return found;
}

Json crowded(const std::vector<std::string> &words)
{
    std::vector<std::string> all = {"--scenario", "crowded_mesh", "report"};
    all.insert(all.end(), words.begin(), words.end());
    return parse(run_agent(all).output);
}

class RouterReports : public testing::TestWithParam<std::tuple<const char *, const char *>> {
    const StandingClock clock_;
};

class Elapsed : public GatewayTest {
    const StandingClock clock_;
};

std::string name_of(const testing::TestParamInfo<RouterReports::ParamType> &test)
{
    std::string name =
        std::string(std::get<0>(test.param)) + "_" + std::string(std::get<1>(test.param));
    std::ranges::replace(name, '-', '_');
    return name;
}

TEST_P(RouterReports, MatchTheGoldenFiles)
{
    const auto [home, report] = GetParam();
    const AgentResult result = run_agent({"--scenario", home, "report", report});
    EXPECT_EQ(result.exit_status, 0);
    expect_golden(std::string(home) + "." + report + ".json", indented(result.output));
}

INSTANTIATE_TEST_SUITE_P(Homes, RouterReports,
                         testing::Combine(testing::Values("three_storey_house", "single_router",
                                                          "operator_variant", "short_report"),
                                          testing::Values("main-router", "main-base", "topology",
                                                          "agent-topology", "stations")),
                         name_of);

TEST(RouterReport, DescribesTheRouterAtThePath)
{
    const std::string tree = "InternetGatewayDevice.WiFi.MultiAP.APDevice.";
    const auto stations = [](const std::string &path) {
        return run_agent({"report", "stations", "--path", path}).output;
    };
    EXPECT_THAT(stations(tree + "1."), HasSubstr("workshop-pc"));
    EXPECT_THAT(stations(tree + "2."), HasSubstr("office-nas"));
    EXPECT_THAT(stations(tree + "3."), HasSubstr("game-console"));
    EXPECT_EQ(stations(tree + "4."), "{\"MainBaseInfo\":[]}\n");
    EXPECT_EQ(stations(""), "{\"MainBaseInfo\":[]}\n");
}

TEST(RouterReport, FailsWhereOnlyItsResultSaysSo)
{
    const AgentResult result =
        run_agent({"--fault", "devapi_topo_xml_getinfo=-1", "report", "agent-topology"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "{}\n");
    EXPECT_THAT(result.error, HasSubstr("get dev active fail ret=-1"));
}

TEST_F(Elapsed, TimeIsThatOfBothClocks)
{
    set_time(kStart);
    run("GET_SN_INFO");
    set_time(kStart + 1000);
    for (const char *report : {"topology", "agent-topology", "stations"}) {
        EXPECT_THAT(run_agent({"--state", state_, "report", report}).output,
                    HasSubstr(R"("AccessTime":"1000")"))
            << report;
    }
    EXPECT_THAT(reply("GET_TSLINK_TOPOLOGY_INFO"), HasSubstr(R"("AccessTime":"1000")"));
}

TEST(RouterReport, HasRoomForACrowd)
{
    const StandingClock clock;
    using Sizes = std::vector<int>;
    const Json topology = crowded({"topology"});
    EXPECT_EQ(sizes(topology.get(), "ChildRouter"), Sizes{8});
    EXPECT_EQ(sizes(topology.get(), "ChildBaseInfo"), Sizes(8, 64));
    const Json tree = crowded({"agent-topology"});
    EXPECT_EQ(sizes(tree.get(), "ChildRouter"), Sizes{8});
    EXPECT_EQ(sizes(tree.get(), "ChildBaseInfo"), Sizes(8, 32));
    EXPECT_EQ(sizes(crowded({"stations"}).get(), "MainBaseInfo"), Sizes{32});
}

} // namespace router_report_test
