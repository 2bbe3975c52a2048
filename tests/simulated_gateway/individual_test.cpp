// SPDX-License-Identifier: MIT
// Many homes from one scenario.
#include "gateway_fixture.h"

#include <regex>
#include <set>

namespace {

using testing::Each;
using testing::MatchesRegex;

class IndividualTest : public GatewayTest {
  protected:
    // The content of the state file that a new home writes.
    nlohmann::json home(uint32_t number, uint64_t seed = 1,
                        const std::string &scenario = "three_storey_house")
    {
        const std::string file =
            path(scenario + std::to_string(seed) + "-" + std::to_string(number) + ".json");
        EXPECT_EQ(open({.scenario = scenario,
                        .state_file = file,
                        .home = SimulatedGatewayHome{seed, number}}),
                  "");
        close();
        return json_of(file).at("home");
    }

    static std::vector<std::string> macs(const nlohmann::json &home)
    {
        const std::string text = home.dump();
        const std::regex form("([0-9A-F]{2}:){5}[0-9A-F]{2}");
        std::set<std::string> all;
        for (std::sregex_iterator at(text.begin(), text.end(), form); at != std::sregex_iterator();
             ++at) {
            all.insert(at->str());
        }
        return {all.begin(), all.end()};
    }
};

TEST_F(IndividualTest, TheSameNumberGivesTheSameHome)
{
    const auto first = home(17);
    std::filesystem::remove(path("three_storey_house1-17.json"));
    EXPECT_EQ(home(17), first);
}

TEST_F(IndividualTest, NoTwoHomesShareAnAddressOrAName)
{
    std::set<std::string> seen;
    std::set<std::string> names;
    for (const char *scenario : {"three_storey_house", "crowded_mesh"}) {
        const uint32_t first = seen.empty() ? 1 : 1001;
        for (uint32_t number = first; number < first + 4; ++number) {
            const nlohmann::json one = home(number, 1, scenario);
            for (const std::string &mac : macs(one)) {
                EXPECT_TRUE(seen.insert(mac).second) << mac;
            }
            for (const std::string name :
                 {one["name"], one["wan"]["ip"], one["ssids"][0]["name"]}) {
                EXPECT_TRUE(names.insert(name).second) << name;
            }
        }
    }
}

TEST_F(IndividualTest, AddressesAreLocalAndKeepTheirNumber)
{
    const auto before = macs(house());
    const auto after = macs(home(99'999'999));
    EXPECT_EQ(after.size(), before.size());
    EXPECT_THAT(after, Each(MatchesRegex("[0-9A-F][26AE]:.*")));
    EXPECT_THAT(before, Each(Not(testing::AnyOfArray(after))));
}

TEST_F(IndividualTest, AnotherSeedGivesOtherHomes)
{
    EXPECT_NE(home(17)["identity"]["mac"], home(17, 2)["identity"]["mac"]);
    EXPECT_NE(home(17)["ordinary_day"], home(17, 2)["ordinary_day"]);
}

TEST_F(IndividualTest, EveryBuiltInScenarioGivesValidHomes)
{
    for (const char *scenario : {"crowded_mesh", "operator_variant", "short_report",
                                 "single_router", "three_storey_house"}) {
        for (const uint32_t number : {0U, 99'999'999U, UINT32_MAX}) {
            home(number, number, scenario);
        }
    }
}

TEST_F(IndividualTest, NamesThatAreTooLongAreCutAtACharacter)
{
    nlohmann::json scenario = house();
    scenario["ssids"][0]["name"] = "aüüüüüüüüüüüüüüü"; // 31 bytes of 32
    const auto name = home(123'456, 1, write("long.json", scenario.dump()))["ssids"][0]["name"];
    EXPECT_EQ(name, "aüüüüüüüüüüüü-123456");
}

TEST_F(IndividualTest, AKeptHomeStaysAsItIs)
{
    const auto before = home(1);
    const auto file = path("three_storey_house1-1.json");
    ASSERT_EQ(open({.state_file = file, .home = SimulatedGatewayHome{1, 2}}), "");
    close();
    EXPECT_EQ(json_of(file).at("home"), before);
}

TEST_F(IndividualTest, AnotherScenarioIsIndividualAsWell)
{
    ASSERT_EQ(open({.home = SimulatedGatewayHome{1, 5}}), "");
    char error[1024] = "";
    ASSERT_EQ(simulated_gateway_load("single_router", error, sizeof error), 0) << error;
    const std::string first = mac();
    close();
    EXPECT_EQ(first, home(5, 1, "single_router")["identity"]["mac"]);
}

TEST_F(IndividualTest, APreparedScenarioNeedsItsFileNoMore)
{
    const std::string file = write("prepared.json", house().dump());
    char error[1024] = "";
    ASSERT_EQ(simulated_gateway_prepare(file.c_str(), error, sizeof error), 0) << error;
    std::filesystem::remove(file);
    EXPECT_EQ(open({.scenario = file}), "");
    EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
}

TEST_F(IndividualTest, OnlyAValidScenarioCanBePrepared)
{
    char error[1024] = "";
    EXPECT_EQ(simulated_gateway_prepare("no_such", error, sizeof error), -1);
    EXPECT_THAT(error, testing::StartsWith("there is no scenario \"no_such\""));
    EXPECT_EQ(simulated_gateway_prepare(nullptr, nullptr, 0), -1);
}

} // namespace
