// SPDX-License-Identifier: MIT
// The topology as a tree of parameters.
#include "mesh_fixture.h"

namespace {

class MeshTreeTest : public MeshTest {};

TEST_F(MeshTreeTest, TheTreeHasAnEntryForEachRouter)
{
    EXPECT_EQ(parameter("InternetGatewayDevice.WiFi.MultiAP.APDeviceNumberOfEntries"), "3");
    EXPECT_EQ(parameter(entry(1, "MACAddress")), kMain);
    EXPECT_EQ(parameter(entry(1, "X_TS_ParentMACAddress")), "NULL");
    EXPECT_EQ(parameter(entry(3, "MACAddress")), kAttic);
    EXPECT_EQ(parameter(entry(3, "X_TS_ParentMACAddress")), kFirstFloor);
    EXPECT_EQ(parameter(entry(3, "X_TS_Active")), "1");
}

TEST_F(MeshTreeTest, ARouterThatIsOfflineStaysInTheTree)
{
    ASSERT_EQ(open_home(house({{"/mesh/child_routers/1/offline", true}})), "");
    EXPECT_EQ(parameter(entry(3, "MACAddress")), kAttic);
    EXPECT_EQ(parameter(entry(3, "X_TS_Active")), "0");
    EXPECT_EQ(parameter(entry(2, "X_TS_Active")), "1");
}

TEST_F(MeshTreeTest, WithoutAMeshTheTreeHasTheMainRouter)
{
    ASSERT_EQ(open_when(kTime, "single_router"), "");
    EXPECT_EQ(parameter("InternetGatewayDevice.WiFi.MultiAP.APDeviceNumberOfEntries"), "1");
    EXPECT_EQ(parameter(entry(1, "X_TS_Active")), "1");
    EXPECT_EQ(parameter(entry(2, "X_TS_Active")), "fails");
    EXPECT_EQ(tree_stations(1).size(), 4u);
}

TEST_F(MeshTreeTest, AnUnknownPathIsRefused)
{
    const std::string tree = "InternetGatewayDevice.WiFi.MultiAP.APDevice";
    for (const std::string &path : {std::string(),
                                    std::string("InternetGatewayDevice."),
                                    tree,
                                    tree + ".",
                                    tree + ".1",
                                    tree + ".1.",
                                    tree + ".1.Name",
                                    tree + ".1.MACAddress.",
                                    tree + ".1.macaddress",
                                    tree + ".0.MACAddress",
                                    tree + ".-1.MACAddress",
                                    tree + ".4.MACAddress",
                                    tree + ".+1.MACAddress",
                                    tree + ". 1.MACAddress",
                                    tree + ".1 .MACAddress",
                                    tree + ".99999999999999999999.MACAddress",
                                    tree + "1.MACAddress",
                                    tree + "NumberOfEntries.",
                                    "x" + tree + "NumberOfEntries",
                                    tree + "." + std::string(100'000, '1')}) {
        EXPECT_EQ(parameter(path), "fails") << path.substr(0, 200);
        EXPECT_EQ(reason().substr(0, 200), ("there is no " + path).substr(0, 200));
        if (path != tree + ".1.") {
            ChildRouterInfo info = {};
            EXPECT_EQ(devapi_get_node_dev_info_by_newmetod(path.c_str(), &info), -1);
            StationList list = {};
            EXPECT_EQ(devapi_get_node_sta_info_by_newmetod(&list, path.c_str()), -1);
            EXPECT_EQ(list.count, 0);
        }
    }
}

TEST_F(MeshTreeTest, ThePathOfARouterHasEveryParameter)
{
    EXPECT_STREQ(tree_router(3).Mac, kAttic);
    EXPECT_STREQ(tree_router(3).LinkSpeed, "866");
    const ChildRouterInfo main = tree_router(1);
    EXPECT_STREQ(main.Mac, kMain);
    EXPECT_STREQ(main.Name, "Lindenhof");
    EXPECT_STREQ(main.NetStatus, "1");
    EXPECT_STREQ(main.ip, "192.168.1.1");
    EXPECT_STREQ(main.FWVersion, "V2.4.1");
    EXPECT_STREQ(main.Wlan0Mac, "3C:6A:D2:10:4F:21");
    EXPECT_STREQ(main.Wlan1Mac, "3C:6A:D2:10:4F:25");
    EXPECT_STREQ(main.ParentMac, "NULL");
    EXPECT_STREQ(main.LinkSpeed, "NULL");
    ASSERT_EQ(main.link_count, 1);
    EXPECT_STREQ(main.links[0].nexthopMAC, kFirstFloor);
    EXPECT_STREQ(main.UpSpeed, base().UpSpeed);
    EXPECT_STREQ(main.DownSpeed, base().DownSpeed);
}

TEST_F(MeshTreeTest, TheRoutersAttachedToARouterAreListed)
{
    EXPECT_EQ(tree_children(kFirstFloor), Macs{kAttic});
    EXPECT_EQ(tree_children(kAttic), Macs{});
    ChildMeshList list = {};
    EXPECT_EQ(reason(devapi_get_child_mesh_info_bynewmethod("nonsense", &list)),
              "there is no child router \"nonsense\"");
}

} // namespace
