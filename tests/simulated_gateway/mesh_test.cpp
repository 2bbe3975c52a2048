// SPDX-License-Identifier: MIT
// The individual routers of the mesh, and the main router in the topology report.
#include "mesh_fixture.h"

namespace {

TEST_F(MeshTest, AChildRouterHasItsLinksAndStations)
{
    EXPECT_EQ(identifiers(), (std::vector{kFirstFloorIndex, kAtticIndex}));
    const ChildRouterInfo attic = router(kAtticIndex);
    EXPECT_STREQ(attic.ParentMac, kFirstFloor);
    EXPECT_STREQ(attic.LinkSpeed, "");
    ASSERT_EQ(attic.link_count, 1);
    EXPECT_STREQ(attic.links[0].nexthopMAC, kFirstFloor);
    EXPECT_STREQ(attic.links[0].interface, "wlan1");

    const ChildRouterInfo floor = router(kFirstFloorIndex);
    EXPECT_STREQ(floor.ParentMac, kMain);
    ASSERT_EQ(floor.link_count, 2);
    EXPECT_STREQ(floor.links[0].nexthopMAC, kMain);
    EXPECT_STREQ(floor.links[0].interface, "eth0");
    EXPECT_STREQ(floor.links[0].dbm, "NULL");
    EXPECT_STREQ(floor.links[1].nexthopMAC, kAttic);
    EXPECT_EQ(stations(kFirstFloor),
              (Macs{"00:11:32:C8:55:E1", "F4:D4:88:5B:3F:72", "30:05:5C:8D:41:F8"}));
    EXPECT_EQ(stations("3c-6a-d2-22-81-80"), (Macs{"72:9B:E0:46:D8:15", "70:F0:88:2C:A6:93"}));
}

TEST_F(MeshTest, AMissingAddressOrTextIsNull)
{
    nlohmann::json home = house();
    home["mesh"]["child_routers"][0].erase("mac_24ghz");
    home["mesh"]["child_routers"][0].erase("firmware_date");
    home["identity"].erase("model");
    home["identity"].erase("area_code");
    ASSERT_EQ(open_home(home), "");
    EXPECT_STREQ(router(kFirstFloorIndex).Wlan0Mac, "NULL");
    EXPECT_STREQ(router(kFirstFloorIndex).FWDATA, "NULL");
    EXPECT_STREQ(router(kFirstFloorIndex).AreaCode, "NULL");
    char text[32] = "";
    EXPECT_EQ(devapi_get_devicemodel(text, sizeof(text) - 1), 0);
    EXPECT_STREQ(text, "NULL");
    EXPECT_EQ(devapi_get_basic_area_code(text, sizeof(text) - 1), 0);
    EXPECT_STREQ(text, "NULL");
}

TEST_F(MeshTest, ChildRoutersRestartWithTheMainRouter)
{
    const Options options = {.state_file = path("state")};
    ASSERT_EQ(open_at(kTime, options), "");
    ASSERT_EQ(open_at(kTime + 500, options), "");
    EXPECT_STREQ(router(kAtticIndex).UpTime, "500");
    simulated_gateway_power_cycle();
    EXPECT_STREQ(router(kAtticIndex).UpTime, "0");
}

// ---- What is down ------------------------------------------------------------------------------

TEST_F(MeshTest, ARouterThatIsOffDisconnectsThoseBelow)
{
    ASSERT_EQ(open_home(house({{"/mesh/child_routers/0/offline", true}})), "");
    for (const int32_t identifier : {kFirstFloorIndex, kAtticIndex}) {
        const ChildRouterInfo info = router(identifier);
        EXPECT_STREQ(info.NetStatus, "0");
        EXPECT_STREQ(info.UpTime, "NULL");
        EXPECT_STREQ(info.dbm, "NULL");
        EXPECT_STREQ(info.UpSpeed, "0");
        EXPECT_EQ(info.link_count, 0);
    }
    EXPECT_EQ(relations(), "");
    EXPECT_STREQ(device("00:11:32:C8:55:E1").NetStatus, "0"); // the NAS, by cable
    EXPECT_STREQ(device("70:F0:88:2C:A6:93").NetStatus, "0"); // the console, by radio
    EXPECT_STREQ(device("72:9B:E0:46:D8:15").NetStatus, "1"); // the tablet finds the main router
    EXPECT_EQ(router_of("72:9B:E0:46:D8:15"), "main");
    EXPECT_LT(std::stoi(device("72:9B:E0:46:D8:15").Dbm), -49 - 6);
}

TEST_F(MeshTest, AWirelessLinkNeedsTheRadio)
{
    ASSERT_EQ(open_home(house({{"/mesh/child_routers/1/link/kind", "2.4GHz"}})), "");
    EXPECT_STREQ(router(kAtticIndex).links[0].interface, "wlan0");
    for (const int32_t index : {1, 2, 3, 4}) {
        EXPECT_EQ(switch_ssid(index, "0"), 0);
    }
    EXPECT_STREQ(router(kFirstFloorIndex).NetStatus, "1");
    EXPECT_STREQ(router(kAtticIndex).NetStatus, "0");
    EXPECT_STREQ(device("70:F0:88:2C:A6:93").NetStatus, "0"); // on the other band, and cut off
}

TEST_F(MeshTest, WithoutTheLinkLayerNobodyIsReached)
{
    ASSERT_EQ(open_home(house({{"/mesh/link_layer_up", false}})), "");
    EXPECT_EQ(identifiers().size(), 2u);
    EXPECT_STREQ(router(kFirstFloorIndex).NetStatus, "0");
    EXPECT_EQ(reason(devapi_call_tslink_set_topo_speed()), "the link layer of the mesh is down");
}

TEST_F(MeshTest, AMeshThatIsOffHasNoChildRouters)
{
    ASSERT_EQ(open_home(house({{"/mesh/enabled", false}, {"/mesh/link_layer_up", false}})), "");
    EXPECT_TRUE(identifiers().empty());
    EXPECT_EQ(place_count(), 12);
    EXPECT_EQ(devapi_get_mesh_type(), 0);
    EXPECT_EQ(devices(1).size(), 12u);
    EXPECT_STREQ(device("00:11:32:C8:55:E1").NetStatus, "0");
    ChildRouterInfo info = {};
    EXPECT_EQ(reason(devapi_get_childrouter_info(&info, kFirstFloorIndex)),
              "there is no child router 13");
}

TEST_F(MeshTest, RestrictionToAStarIsConfiguredInTheHome)
{
    EXPECT_EQ(devapi_get_mesh_type(), 2);
    EXPECT_EQ(open_home(house({{"/mesh/type", 1}})),
              path("home.json") + ": /mesh/child_routers/1/parent: is not the main router, and "
                                  "the mesh is a star");
    ASSERT_EQ(open_home(house({{"/mesh/type", 1}, {"/mesh/child_routers/1/parent", kMain}})), "");
    EXPECT_EQ(devapi_get_mesh_type(), 1);
}

// ---- The main router ---------------------------------------------------------------------------

TEST_F(MeshTest, ModelAndAreaCodeAreCutToTheirBuffers)
{
    char text[32];
    std::ranges::fill(text, '#');
    EXPECT_EQ(devapi_get_devicemodel(text, sizeof(text) - 1), 0);
    EXPECT_STREQ(text, "HGU-AX3000");
    EXPECT_EQ(devapi_get_basic_area_code(text, 5), 0);
    EXPECT_STREQ(text, "NORT");
    EXPECT_EQ(devapi_get_basic_area_code(text, 0), -1);
    EXPECT_EQ(reason(devapi_get_devicemodel(text, -1)), "there is no room for the text");
}

TEST_F(MeshTest, TheLoadIsThatOfTheBaseInformation)
{
    const DevStatusInfo status = reported_by(devapi_get_dev_status_info);
    EXPECT_STREQ(status.Cpu, base().Cpu);
    EXPECT_STREQ(status.Memory, base().Memory);
}

TEST_F(MeshTest, LocalTimeIsBehindUtcByTheHoursOfTheHome)
{
    constexpr char nas[] = "00:11:32:C8:55:E1";
    EXPECT_EQ(reported_by(devapi_get_local_timezone), 0);
    EXPECT_EQ(devapi_get_systerm_timetype(), 0);
    for (const bool local_times : {false, true}) {
        ASSERT_EQ(open_home(house({{"/hours_behind_utc", -2}, {"/local_times", local_times}})), "");
        EXPECT_EQ(reported_by(devapi_get_local_timezone), -2);
        EXPECT_EQ(devapi_get_systerm_timetype(), local_times ? 1 : 0);
        const std::string local = std::to_string(kTime + 2 * kHour);
        EXPECT_EQ(device(nas).AccessTime, local_times ? local : std::to_string(kTime));
        EXPECT_EQ(station(index_of(nas)).AccessTime, local);
        EXPECT_EQ(tree_stations(2).front().AccessTime, local);
    }
}

TEST_F(MeshTest, TheBridgesAddressIsThatByWhichChildRoutersKnowTheMainRouter)
{
    EXPECT_EQ(bridge_mac(), router(kFirstFloorIndex).ParentMac);
    char mac[18] = "";
    EXPECT_EQ(simulated_gateway_bridge_mac(mac, sizeof(mac)), 0);
    EXPECT_STREQ(mac, kMain);
    EXPECT_EQ(simulated_gateway_bridge_mac(mac, sizeof(mac) - 1), -1);
    EXPECT_STREQ(mac, "");
    EXPECT_EQ(simulated_gateway_bridge_mac(mac, 0), -1);
    EXPECT_EQ(simulated_gateway_bridge_mac(nullptr, 32), -1);
    close();
    setenv("SIMULATED_GATEWAY_SCENARIO", "castle", 1);
    EXPECT_EQ(simulated_gateway_bridge_mac(mac, sizeof(mac)), -1);
    EXPECT_STREQ(mac, "");
}

// ---- Refusals ----------------------------------------------------------------------------------

TEST_F(MeshTest, AnIdentifierOrAnAddressOfNoChildRouterIsRefused)
{
    for (const int32_t identifier : {INT32_MIN, -1, 0, 1, 12, 15, INT32_MAX}) {
        const std::string why = "there is no child router " + std::to_string(identifier);
        ChildRouterInfo info = {};
        EXPECT_EQ(reason(devapi_get_childrouter_info(&info, identifier)), why);
        ChildMeshInfo mesh = {};
        EXPECT_EQ(reason(devapi_get_child_mesh_info(&mesh, identifier)), why);
        MeshLink link = {};
        EXPECT_EQ(reason(devapi_get_router_mesh_info(&link, identifier)), why);
    }
    for (const char *mac : {"", "NULL", "Attic", kMain, "3C:6A:D2:22:81:8", "\xff"}) {
        ChildStationList list = {};
        EXPECT_EQ(devapi_get_childsta_list(&list, mac), -1) << mac;
        EXPECT_EQ(reason().find("there is no child router \""), 0u) << mac;
    }
}

TEST_F(MeshTest, AnIndexOfNoStationIsRefused)
{
    for (const int32_t index : {INT32_MIN, -1, 0, 1, kFirstFloorIndex, 15, INT32_MAX}) {
        AdBaseInfo info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_childsta_base_info(&info), -1) << index;
        EXPECT_EQ(reason(), "there is no station " + std::to_string(index) + " of a child router");
    }
}

// The plug-in reports the contents of these records regardless of the result of the call.
TEST_F(MeshTest, AFailedCallLeavesItsRecordUnchanged)
{
    const auto is_left_alone = []<class Record>(auto call, std::unique_ptr<Record> record) {
        memset(record.get(), '7', sizeof(Record));
        const std::string before(reinterpret_cast<const char *>(record.get()), sizeof(Record));
        return call(record.get()) == -1 && memcmp(record.get(), before.data(), before.size()) == 0;
    };
    EXPECT_TRUE(is_left_alone([](auto *list) { return devapi_get_childsta_list(list, "nobody"); },
                              std::make_unique<ChildStationList>()));
    EXPECT_TRUE(is_left_alone(
        [](auto *list) { return devapi_get_child_mesh_info_bynewmethod("nobody", list); },
        std::make_unique<ChildMeshList>()));
    EXPECT_TRUE(is_left_alone(
        [](auto *list) { return devapi_get_node_sta_info_by_newmetod(list, "nowhere"); },
        std::make_unique<StationList>()));
    EXPECT_TRUE(is_left_alone(
        [](auto *info) { return devapi_get_node_dev_info_by_newmetod("nowhere", info); },
        std::make_unique<ChildRouterInfo>()));
    EXPECT_TRUE(is_left_alone([](auto *info) { return devapi_get_childrouter_info(info, 99); },
                              std::make_unique<ChildRouterInfo>()));
    EXPECT_TRUE(
        is_left_alone([](auto *index) { return devapi_get_hostindex_by_mac("nobody", index); },
                      std::make_unique<int32_t>()));
    EXPECT_TRUE(is_left_alone([](char *model) { return devapi_get_devicemodel(model, 0); },
                              std::make_unique<char>()));
    EXPECT_TRUE(is_left_alone([](char *code) { return devapi_get_basic_area_code(code, 0); },
                              std::make_unique<char>()));
}

} // namespace
