// SPDX-License-Identifier: MIT
// Child routers from the gateway's tree of parameters.
#include "router_tree_fixture.h"

namespace router_tree_test {

class RouterTreeTest : public RouterTree {};

const std::string kNone = R"({"ChildRouter":[]})";

TEST_F(RouterTreeTest, HasEachChildRouterKeyByKey)
{
    entries_are("2");
    entry_is(2);
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]") + "," + reported("ChildInfo", "[]")));
    EXPECT_EQ(result, 0);
    const Names each = {"devapi_topo_xml_getinfo",
                        "devapi_topo_xml_getinfo",
                        "devapi_topo_xml_getinfo",
                        "devapi_get_node_dev_info_by_newmetod",
                        "devapi_get_devicemodel",
                        "devapi_get_basic_area_code",
                        "devapi_get_child_mesh_info_bynewmethod",
                        "devapi_get_node_sta_info_by_newmetod"};
    Names all = {"ts_sys_mgr_get_brmac", "devapi_topo_xml_getinfo"};
    all.insert(all.end(), each.begin(), each.end());
    all.insert(all.end(), each.begin(), each.end());
    EXPECT_EQ(recording_device::called_functions(), all);
    EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0),
              (Names{kTree + "NumberOfEntries", parameter(1, "X_TS_ParentMACAddress"),
                     parameter(1, "X_TS_Active"), parameter(1, "MACAddress"),
                     parameter(2, "X_TS_ParentMACAddress"), parameter(2, "X_TS_Active"),
                     parameter(2, "MACAddress")}));
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 0),
              (Names{parameter(1, ""), parameter(2, "")}));
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 1),
              Names(2, std::string(1100, '\0')));
    EXPECT_EQ(given_to("devapi_get_devicemodel", 1), Names(2, "31"));
    EXPECT_EQ(given_to("devapi_get_basic_area_code", 1), Names(2, "32"));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info_bynewmethod", 0), Names(2, "Mac"));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info_bynewmethod", 1),
              Names(2, std::string(6404, '\0')));
    EXPECT_EQ(given_to("devapi_get_node_sta_info_by_newmetod", 1),
              (Names{parameter(1, ""), parameter(2, "")}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(RouterTreeTest, HasNoneForACountBelowOne)
{
    for (const char *count : {"0", "-1", "", "NULL", "many", "-99999999999"}) {
        entries_are(count);
        EXPECT_EQ(routers(), kNone) << count;
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0), Names(6, kTree + "NumberOfEntries"));
}

TEST_F(RouterTreeTest, ReadsTheCountAsFarAsItGoes)
{
    entries_are(std::string(31, '0') + "1"); // ends without a NUL
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]")));
    failing = parameter(1, "X_TS_Active");
    failure_code = 3;
    for (const char *count : {"2147483647", "99999999999999999999", " 1x"}) {
        entries_are(count);
        EXPECT_EQ(routers(), "{}") << count;
    }
}

TEST_F(RouterTreeTest, SkipsWhatIsNoChildRouterThatIsUp)
{
    for (const char *nobody : {"", "NULL", "null", "Null"}) {
        entry_is(1, nobody);
        EXPECT_EQ(routers(), kNone) << nobody;
        EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0).back(),
                  parameter(1, "X_TS_ParentMACAddress"));
    }
    for (const char *down : {"0", "2", "", "true", "-1", "NULL", "11"}) {
        entry_is(1, "parent", down);
        EXPECT_EQ(routers(), kNone) << down;
        EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0).back(), parameter(1, "X_TS_Active"));
    }
    for (const char *main : {"bridge", "BRIDGE", "Bridge"}) {
        entry_is(1, "parent", "1", main);
        EXPECT_EQ(routers(), kNone) << main;
        EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0).back(), parameter(1, "MACAddress"));
    }
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 0), Names());
    const std::vector<Names> children = {{"NULLs", "1", "mac"},
                                         {"p", " 1x", "mac"},
                                         {"p", "01", "bridges"},
                                         {"p", "1", "bridg"},
                                         {"p", "1", ""}};
    for (const Names &child : children) {
        entry_is(1, child[0], child[1], child[2]);
        EXPECT_EQ(routers(), list(reported("ChildInfo", "[]"))) << child[0] << child[1] << child[2];
    }
}

TEST_F(RouterTreeTest, HasTheOneThatIsUpAmongThree)
{
    entries_are("3");
    entry_is(1, "NULL");
    entry_is(2);
    entry_is(3, "parent", "0");
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]")));
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 0), Names{parameter(2, "")});
}

TEST_F(RouterTreeTest, IsNoneAtAllWhenAParameterCannotBeRead)
{
    entries_are("3");
    entry_is(2);
    entry_is(3);
    const Names parameters = {kTree + "NumberOfEntries",
                              parameter(1, "X_TS_ParentMACAddress"),
                              parameter(1, "X_TS_Active"),
                              parameter(1, "MACAddress"),
                              parameter(3, "X_TS_ParentMACAddress"),
                              parameter(3, "X_TS_Active"),
                              parameter(3, "MACAddress")};
    for (const std::string &name : parameters) {
        for (const int32_t code : {-1, 1, 1000}) {
            recording_host::reset();
            failing = name;
            failure_code = code;
            EXPECT_EQ(routers(), "{}") << name;
            EXPECT_EQ(result, -1);
            EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0).back(), name);
            const LogLines lines = recording_host::log_lines();
            ASSERT_EQ(lines.size(), 1u);
            EXPECT_EQ(lines[0].level, 3);
            EXPECT_TRUE(is_line_of("smart_router_service/router_tree.cpp",
                                   "get dev active fail ret=" + std::to_string(code) + "\n",
                                   lines[0].text))
                << lines[0].text;
        }
    }
}

} // namespace router_tree_test
