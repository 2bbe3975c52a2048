// SPDX-License-Identifier: MIT
// The properties for which each built-in scenario exists.
#include "mesh_fixture.h"

namespace {

class BuiltInHomesTest : public MeshTest {
  protected:
    static std::string model()
    {
        char text[32] = "";
        EXPECT_EQ(devapi_get_devicemodel(text, sizeof(text) - 1), 0);
        return text;
    }
    static std::string area_code()
    {
        char text[32] = "";
        EXPECT_EQ(devapi_get_basic_area_code(text, sizeof(text) - 1), 0);
        return text;
    }
};

TEST_F(BuiltInHomesTest, TheOperatorsVariantIsAStarOfItsOwnModel)
{
    ASSERT_EQ(open_when(kTime, "operator_variant"), "");
    EXPECT_EQ(model(), "QX2040B");
    EXPECT_EQ(area_code(), "XX-ARVEN-31");
    EXPECT_EQ(devapi_get_mesh_type(), 1);
    EXPECT_EQ(devapi_get_systerm_timetype(), 1);
    EXPECT_EQ(identifiers().size(), 3u);
    for (const int32_t identifier : identifiers()) {
        EXPECT_EQ(router(identifier).ParentMac, bridge_mac());
        EXPECT_FALSE(stations(router(identifier).Mac).empty());
    }
}

TEST_F(BuiltInHomesTest, TheCrowdedMeshHasAsManyRoutersAndStationsAsAReport)
{
    ASSERT_EQ(open_when(kTime, "crowded_mesh"), "");
    EXPECT_EQ(identifiers().size(), static_cast<size_t>(MESH_MAX_CHILD_ROUTERS));
    std::set<std::string> seen;
    for (const int32_t identifier : identifiers()) {
        const Macs macs = stations(router(identifier).Mac);
        EXPECT_EQ(macs.size(), static_cast<size_t>(MESH_MAX_STATIONS));
        seen.insert(macs.begin(), macs.end());
    }
    EXPECT_EQ(seen.size(), 512u);
    EXPECT_GT(devices(1).size(), 32u); // more than a report of the main router shows
    std::set<std::string> names;
    int online = 0;
    for (const std::string &mac : devices()) {
        names.insert(device(mac).Name);
        online += device(mac).NetStatus == std::string("1") ? 1 : 0;
    }
    EXPECT_EQ(names.size(), devices().size());
    EXPECT_GT(online, 400);
    EXPECT_LT(online, 552);
}

TEST_F(BuiltInHomesTest, ARouterReportsNoMoreStationsThanItsListHolds)
{
    nlohmann::json home = json_of(SCENARIO_FOLDER "/crowded_mesh.json");
    const std::string crowd = home["mesh"]["child_routers"][2]["mac"];
    for (nlohmann::json &host : home["hosts"]) {
        host["router"] = crowd;
    }
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(stations(crowd).size(), 64u);
    EXPECT_EQ(tree_stations(4).size(), 64u);
    EXPECT_TRUE(devices(1).empty());
}

} // namespace
