// The mesh of the main router in the topology report.
#include "topology_report_fixture.h"

namespace topology_mesh_test {

using recording_device::when;

class TopologyMeshTest : public TopologyReport {};

// ---- The mesh of the operators' model ----------------------------------------------------------

TEST_F(TopologyMeshTest, ListsTheLinksOfTheOperatorsModel)
{
    put(base.AreaCode, "KOLM");
    model_is("QX2040B");
    mesh_type_is(2);
    EXPECT_EQ(router_report(),
              without_devices(router().with("AreaCode", R"("KOLM")").with("MeshInfo", kBothLinks))
                  .json());
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_childrouter_list", "devapi_get_router_mesh_info",
                     "devapi_get_router_mesh_info", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_childrouter_list", 0), Names{std::string(36, '\0')});
    EXPECT_EQ(given_to("devapi_get_router_mesh_info", 0), Names(2, std::string(72, '\0')));
    EXPECT_EQ(given_to("devapi_get_router_mesh_info", 1), (Names{"7", "3"}));
}

TEST_F(TopologyMeshTest, ListsLinksInThreeAreasOnly)
{
    model_is("QX2040B");
    mesh_type_is(2);
    for (const char *code :
         {"ARVEN", "KOLM", "SEDRANO", "xxARVENyy", "xxKOLMyy", "xxSEDRANOyy", "KOLMARVEN"}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("MeshInfo"), kBothLinks) << code;
        EXPECT_EQ(value("ChildInfo"), "") << code;
    }
    for (const char *code : {"", "arven", "Kolm", "SEDRAN", "TH_OLV", "NULL"}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("MeshInfo"), "") << code;
        EXPECT_EQ(value("ChildInfo"), "") << code;
        EXPECT_EQ(value("MainBaseInfo"), "[]") << code;
    }
}

TEST_F(TopologyMeshTest, LeavesOutALinkThatCannotBeRead)
{
    put(base.AreaCode, "SEDRANO");
    model_is("QX2040B");
    when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t identifier) {
        fill(link->nexthopMAC);
        fill(link->dbm);
        return identifier == 7 ? 1 : 0;
    });
    EXPECT_EQ(value("MeshInfo"), R"([{"nexthopMAC":")" + text_of_length(32) + R"(","dbm":")" +
                                     text_of_length(16) + R"("}])");
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "get total limit = 0\n"}}));
}

TEST_F(TopologyMeshTest, ListsChildRoutersAsTheDeviceLeavesTheirList)
{
    put(base.AreaCode, "ARVEN");
    for (const char *model : {"QX2040B", "QX3060"}) {
        model_is(model);
        mesh_type_is(2);
        const char *key = model == std::string("QX2040B") ? "MeshInfo" : "ChildInfo";
        child_routers_are({});
        EXPECT_EQ(value(key), "[]");
        child_routers_are({7, 3}, -1);
        EXPECT_EQ(value(key), "[]");
        EXPECT_EQ(value("MainBaseInfo"), "[]");
        for (const int32_t failure : {-1, 1, 1000}) {
            when<devapi_get_childrouter_list>([=](ChildRouterList *) { return failure; });
            EXPECT_EQ(value(key), "[]");
            when<devapi_get_childrouter_list>(
                [=](ChildRouterList *list) { return spoil(list, failure); });
            const Json list = parse(value(key));
            EXPECT_EQ(cJSON_GetArraySize(list.get()), 8) << failure;
        }
        for (const int32_t count : {8, 9, INT_MAX}) {
            child_routers_are({1, 2, 3, 4, 5, 6, 7, 8}, count);
            const Json list = parse(value(key));
            EXPECT_EQ(cJSON_GetArraySize(list.get()), 8) << count;
        }
    }
}

// ---- The mesh of any other model ---------------------------------------------------------------

TEST_F(TopologyMeshTest, ListsTheChildrenOfAnyOtherModel)
{
    put(base.AreaCode, "ARVEN");
    mesh_type_is(2);
    for (const char *model : {"QX3060", "qx2040b", ""}) {
        model_is(model);
        EXPECT_EQ(value("ChildInfo"), R"([{"childMac":"child 7"},{"childMac":"child 3"}])");
        EXPECT_EQ(value("MeshInfo"), "");
    }
}

TEST_F(TopologyMeshTest, AsksForTheChildrenInOrder)
{
    mesh_type_is(2);
    router_report();
    EXPECT_EQ(
        recording_device::called_functions(),
        (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
               "devapi_get_mesh_type", "devapi_get_childrouter_list", "devapi_get_child_mesh_info",
               "devapi_get_child_mesh_info", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 0), Names(2, std::string(200, '\0')));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 1), (Names{"7", "3"}));
}

TEST_F(TopologyMeshTest, ListsChildrenInMeshesOfTypeTwoOnly)
{
    for (const int32_t type : {-2, -1, 0, 1, 3, INT_MAX}) {
        mesh_type_is(type);
        EXPECT_EQ(value("ChildInfo"), "") << type;
        EXPECT_EQ(value("MainBaseInfo"), "[]") << type;
    }
}

TEST_F(TopologyMeshTest, ListsTheChildrenThatHangFromTheMainRouter)
{
    mesh_type_is(2);
    const std::pair<std::string, std::string> bridges[] = {
        {kBridge, "[{\"childMac\":\"" + text_of_length(32) + "\"}]"},
        {"3c:6a:d2:10:4f:20", "[]"},
        {"3C:6A:D2:10:4F:2", "[]"},
        {kBridge + "0", "[]"},
        {"", "[]"},
    };
    for (const auto &[bridge, children] : bridges) {
        bridge_mac_is(bridge);
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t identifier) {
            fill(info->ChildMac);
            put(info->ParentMac, kBridge);
            return identifier == 7 ? 1 : 0;
        });
        EXPECT_EQ(value("ChildInfo"), children) << bridge;
    }
    when<ts_sys_mgr_get_brmac>([](char *mac) { text_of_length(32).copy(mac, 32); });
    when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t) {
        fill(info->ParentMac);
        return 0;
    });
    EXPECT_EQ(value("ChildInfo"), R"([{"childMac":""},{"childMac":""}])");
}

} // namespace topology_mesh_test
