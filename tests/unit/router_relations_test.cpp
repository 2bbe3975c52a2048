// SPDX-License-Identifier: MIT
// Child routers from the topology's list of relations.
#include "failing_memory.h"
#include "router_relations_fixture.h"

namespace router_relations_test {

class RouterRelationsTest : public RelationsTest {
  protected:
    std::string routers() { return report(json_get_topo_router_info); }
    static std::string list(size_t count, const std::string &object = router(both_devices()).json())
    {
        std::string text;
        for (size_t at = 0; at < count; ++at) {
            text += (text.empty() ? "" : ",") + object;
        }
        return R"({"ChildRouter":[)" + text + "]}";
    }
    static LogLines errors()
    {
        LogLines lines = recording_host::log_lines();
        std::erase_if(lines, [](const auto &line) { return line.level == 7; });
        return lines;
    }
};

const std::string kNone = R"({"ChildRouter":[]})";

// ---- json_get_topo_router_info -----------------------------------------------------------------

TEST_F(RouterRelationsTest, AreListedInTheOrderOfTheTopology)
{
    attached_are({});
    when<devapi_get_topo_relation_ship>([](char *text, int32_t) {
        EXPECT_EQ(std::string(text, 256), std::string(256, '\0'));
        strcpy(text, "the relations");
        return 0;
    });
    EXPECT_EQ(routers(), list(1, router("[]").json()));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(
        recording_device::called_functions(),
        (Names{"devapi_get_Multi_Ap_enable", "devapi_get_topo_relation_ship",
               "devapi_get_topo_relation_num", "devapi_handle_topo_struct",
               "devapi_topo_xml_info_list", "devapi_call_tslink_set_topo_speed",
               "devapi_get_node_dev_info", "devapi_get_viewmac_by_mac",
               "devapi_get_basic_area_code", "devapi_get_hostindex_by_mac",
               "devapi_get_childrouter_info", "ts_sys_mgr_get_brmac", "devapi_get_viewmac_by_mac",
               "devapi_get_mesh_type", "devapi_get_basic_area_code", "devapi_get_node_baseinfo",
               "devapi_free_topo_list"}));
    EXPECT_EQ(given_to("devapi_get_topo_relation_ship", 1), Names{"255"});
    EXPECT_EQ(given_to("devapi_handle_topo_struct", 0), Names{"the relations"});
    EXPECT_EQ(given_to("devapi_handle_topo_struct", 1), Names{std::string(sizeof(TopoNode), '\0')});
    EXPECT_EQ(given_to("devapi_topo_xml_info_list", 0), Names{"5"});
}

TEST_F(RouterRelationsTest, AreTheNodesFromTheSecondLevelOn)
{
    routers_are({1, 2, 0, 3, -1, INT_MAX, INT_MIN});
    EXPECT_EQ(routers(), list(3));
    std::vector<int32_t> levels;
    for (const Call &call : recording_device::calls()) {
        if (call.function == "devapi_get_node_dev_info") {
            levels.push_back(recording_device::record<TopoNode>(call).level);
        }
    }
    EXPECT_EQ(levels, (std::vector<int32_t>{2, 3, INT_MAX}));
    when<devapi_handle_topo_struct>([](const char *, TopoNode *first) {
        first->level = 2; // the plug-in's own node is treated like any other
        return 0;
    });
    EXPECT_EQ(routers(), list(1));
}

TEST_F(RouterRelationsTest, AreListedWithoutThoseThatCannotBeRead)
{
    routers_are({2, 3, 4, 5});
    NodeDevInfo known = {};
    fill_places(&known, kNodeRecord, node_value_of);
    when<devapi_get_node_dev_info>([=](const TopoNode *node, NodeDevInfo *info) {
        *info = known;
        if (node->level == 4) {
            put(info->Mac, "no attached device");
        }
        return node->level == 2 ? 1 : 0;
    });
    when<devapi_get_hostindex_by_mac>([](const char *mac, int32_t *) {
        return std::string(mac) == "no attached device" ? 0 : 1;
    });
    EXPECT_EQ(routers(), list(2));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(errors(), (LogLines{{3, "mac:no attached device not found in host\n"}}));
}

TEST_F(RouterRelationsTest, AreNoneWhileTheMeshIsOff)
{
    for (const int32_t state : {0, -1, 2, INT_MAX}) {
        recording_device::reset();
        writes<devapi_get_Multi_Ap_enable>(state);
        EXPECT_EQ(routers(), kNone);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_Multi_Ap_enable"});
    }
    when<devapi_get_Multi_Ap_enable>([=](int32_t *) { return -1; });
    EXPECT_EQ(routers(), kNone);
    EXPECT_EQ(given_to("devapi_get_topo_relation_ship", 0), Names());
}

TEST_F(RouterRelationsTest, AreListedIfAFailedCallLeftTheSwitchOn)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        writes<devapi_get_Multi_Ap_enable>(1, failure);
        EXPECT_EQ(routers(), list(1));
    }
}

TEST_F(RouterRelationsTest, AreNoneWithoutRelationsOrTheirNumber)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_topo_relation_num>([=](int32_t *) { return failure; });
        EXPECT_EQ(routers(), kNone);
        EXPECT_EQ(recording_device::called_functions().back(), "devapi_get_topo_relation_num");
        when<devapi_get_topo_relation_ship>([=](char *, int32_t) { return failure; });
        EXPECT_EQ(routers(), kNone);
        EXPECT_EQ(recording_device::called_functions().back(), "devapi_get_topo_relation_ship");
        recording_device::reset();
        prepare();
    }
    EXPECT_EQ(given_to("devapi_free_topo_list", 0), Names());
}

TEST_F(RouterRelationsTest, AreThoseThatAFailedCallLeftInTheList)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        recording_device::reset();
        prepare();
        routers_are({2, 2}, failure);
        EXPECT_EQ(routers(), list(2));
        EXPECT_EQ(result, 0);
        EXPECT_EQ(given_to("devapi_topo_xml_info_list", 0), Names());
        EXPECT_EQ(given_to("devapi_free_topo_list", 0).size(), 1u);
        routers_are({}, failure);
        EXPECT_EQ(routers(), kNone);
    }
    when<devapi_topo_xml_info_list>([](int32_t, TopoNode *) { return -1; });
    routers_are({2});
    EXPECT_EQ(routers(), list(1));
}

TEST_F(RouterRelationsTest, AreCompletedForAnyNumber)
{
    for (const int32_t number : {1, 0, -1, INT_MIN, INT_MAX}) {
        recording_device::reset();
        prepare();
        writes<devapi_get_topo_relation_num>(number);
        EXPECT_EQ(routers(), list(1));
        EXPECT_EQ(given_to("devapi_topo_xml_info_list", 0), Names{std::to_string(number)});
    }
}

TEST_F(RouterRelationsTest, AreListedEvenIfTheSpeedsAreNotUpdated)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        recording_host::reset();
        when<devapi_call_tslink_set_topo_speed>([=] { return failure; });
        EXPECT_EQ(routers(), list(1));
        EXPECT_EQ(errors(), (LogLines{{3, "call tslink set topo speed failed\n"}}));
    }
}

TEST_F(RouterRelationsTest, ReadTheRelationsNoFurtherThanTheirBuffer)
{
    when<devapi_get_topo_relation_ship>([](char *text, int32_t) {
        text_of_length(256).copy(text, 256);
        return 0;
    });
    routers();
    EXPECT_EQ(given_to("devapi_handle_topo_struct", 0), Names{text_of_length(256)});
}

TEST_F(RouterRelationsTest, AreListedOnceIfTheListIsCircular)
{
    for (size_t nodes = 0; nodes <= 5; ++nodes) {
        for (size_t back_to = 0; back_to <= nodes; ++back_to) {
            routers_are(std::vector<int32_t>(nodes, 2), 0, back_to);
            EXPECT_EQ(routers(), list(nodes)) << nodes << " nodes, back to " << back_to;
        }
    }
}

TEST_F(RouterRelationsTest, AddNothingWithoutAnObject)
{
    EXPECT_EQ(report(json_get_topo_router_info, "[]"), "[]");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(json_get_topo_router_info(nullptr), -1);
}

TEST_F(RouterRelationsTest, AreNotQueriedWithoutMemoryForTheList)
{
    report([](cJSON *object) {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        return json_get_topo_router_info(object);
    });
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace router_relations_test
