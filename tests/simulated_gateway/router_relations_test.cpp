// SPDX-License-Identifier: MIT
// The topology as a list of relations: the text, the list, and the functions that use it.
#include "mesh_fixture.h"

namespace {

class MeshRelationsTest : public MeshTest {
  protected:
    static constexpr char kBoth[] = "3C6AD2104F20>3C6AD2228140,3C6AD2228140>3C6AD2228180";

    // The levels and identifiers of a list, from its first node on.
    static std::string shown(Topology &list)
    {
        std::string text;
        for (const TopoNode *node : list.nodes()) {
            text += std::to_string(node->level) + ":" + std::to_string(node->Reserved[0]) + " ";
        }
        return text;
    }
    std::string refusal(const std::string &relations) const
    {
        Topology list;
        EXPECT_EQ(devapi_handle_topo_struct(relations.c_str(), list.first()), -1) << relations;
        EXPECT_EQ(shown(list), "0:0 ") << relations;
        return reason();
    }
    static std::string view(const std::string &mac)
    {
        char view[VIEW_MAC_SIZE] = "";
        return devapi_get_viewmac_by_mac(mac.c_str(), view) == 0 ? view : "fails";
    }
};

TEST_F(MeshRelationsTest, TheTextHasARelationForEachChildRouter)
{
    EXPECT_EQ(relations(), kBoth);
    EXPECT_EQ(relation_count(), 2);
}

TEST_F(MeshRelationsTest, EightChildRoutersFit)
{
    ASSERT_EQ(open_when(kTime, "crowded_mesh"), "");
    EXPECT_EQ(relations().size(), 207u);
    EXPECT_EQ(relation_count(), 8);
    Topology list;
    EXPECT_EQ(devapi_handle_topo_struct(relations().c_str(), list.first()), 0);
    EXPECT_EQ(list.nodes().size(), 9u);
}

TEST_F(MeshRelationsTest, ATextWithoutRoomIsRefused)
{
    char text[TOPO_RELATION_SIZE] = "";
    EXPECT_EQ(devapi_get_topo_relation_ship(text, sizeof(kBoth)), 0);
    EXPECT_STREQ(text, kBoth);
    for (const int32_t size : {static_cast<int32_t>(sizeof(kBoth) - 1), 0, -1, INT32_MIN}) {
        EXPECT_EQ(devapi_get_topo_relation_ship(text, size), -1) << size;
        EXPECT_EQ(reason(), "there is no room for the relations");
    }
}

TEST_F(MeshRelationsTest, TheListHasTheMainRouterFirst)
{
    Topology list;
    EXPECT_EQ(devapi_handle_topo_struct(kBoth, list.first()), 0);
    EXPECT_EQ(shown(list), "1:0 2:13 3:14 ");
    EXPECT_EQ(devapi_topo_xml_info_list(2, list.first()), 0);
    EXPECT_EQ(shown(list), "1:0 2:13 3:14 ");
    EXPECT_STREQ(node_info(*list.nodes()[2]).LinkSpeed, "866");
    EXPECT_STREQ(node_info(*list.nodes()[2]).Mac, kAttic);
    EXPECT_STREQ(node_info(*list.first()).Mac, kMain);
    EXPECT_STREQ(node_info(*list.first()).ip, "192.168.1.1");
    EXPECT_STREQ(node_info(*list.first()).AccessType, "NULL");
}

TEST_F(MeshRelationsTest, WithoutRelationsTheMainRouterIsAlone)
{
    Topology list;
    EXPECT_EQ(devapi_handle_topo_struct("", list.first()), 0);
    EXPECT_EQ(shown(list), "1:0 ");
}

TEST_F(MeshRelationsTest, AListIsCompletedWithMissingRouters)
{
    for (const char *text : {"", "3C6AD2104F20>3C6AD2228140"}) {
        Topology list;
        EXPECT_EQ(devapi_handle_topo_struct(text, list.first()), 0);
        EXPECT_EQ(devapi_topo_xml_info_list(2, list.first()), 0);
        EXPECT_EQ(shown(list), "1:0 2:13 3:14 ");
    }
}

TEST_F(MeshRelationsTest, AnotherNumberOfRelationsIsRefused)
{
    for (const int32_t count : {INT32_MIN, 0, 1, 3, INT32_MAX}) {
        Topology list;
        EXPECT_EQ(devapi_handle_topo_struct("", list.first()), 0);
        EXPECT_EQ(reason(devapi_topo_xml_info_list(count, list.first())),
                  "there are 2 relations, not " + std::to_string(count));
        EXPECT_EQ(shown(list), "1:0 ");
    }
}

TEST_F(MeshRelationsTest, AnInvalidListOfRelationsIsRefused)
{
    EXPECT_EQ(refusal("nonsense"), "\"nonsense\" is not a relation");
    EXPECT_EQ(refusal(","), "\"\" is not a relation");
    EXPECT_EQ(refusal(std::string(kBoth) + ","), "\"\" is not a relation");
    EXPECT_EQ(refusal("3C6AD2104F20>"), "there is no child router \"\"");
    EXPECT_EQ(refusal(">3C6AD2228140"), "there is no child router \"\"");
    EXPECT_EQ(refusal("3C6AD2104F20>3C6AD2104F20"), "there is no child router \"3C6AD2104F20\"");
    EXPECT_EQ(refusal("3C6AD2228140>3C6AD2228180"),
              std::string(kFirstFloor) + " is not in the list");
    EXPECT_EQ(refusal(std::string(kBoth) + "," + kBoth),
              std::string(kFirstFloor) + " is in the list twice");
    EXPECT_EQ(refusal("3C6AD2104F20>3C6AD2228140\n"),
              "there is no child router \"3C6AD2228140\\n\"");
    EXPECT_EQ(refusal(std::string(100'000, '>')).substr(0, 26), "there is no child router \"");
}

TEST_F(MeshRelationsTest, ACyclicListIsRefused)
{
    Topology list;
    EXPECT_EQ(devapi_handle_topo_struct(kBoth, list.first()), 0);
    TopoNode *last = list.nodes().back();
    last->next = list.nodes()[1];
    EXPECT_EQ(reason(devapi_topo_xml_info_list(2, list.first())),
              std::string(kFirstFloor) + " is in the list twice");
    last->next = nullptr;
}

TEST_F(MeshRelationsTest, ANodeWithoutARouterIsRefused)
{
    for (const int32_t identifier : {INT32_MIN, -1, 1, 12, 15, INT32_MAX}) {
        TopoNode node = {};
        node.level = 2;
        node.Reserved[0] = identifier;
        NodeDevInfo info = {};
        EXPECT_EQ(reason(devapi_get_node_dev_info(&node, &info)),
                  "there is no child router " + std::to_string(identifier));
        NodeBaseInfo first = {};
        EXPECT_EQ(devapi_get_node_baseinfo(&node, &first), -1);
        EXPECT_EQ(first.next, nullptr);
    }
}

TEST_F(MeshRelationsTest, ARouterThatHasGoneOfflineIsRefused)
{
    ASSERT_EQ(open_home(house({{"/mesh/child_routers/1/offline", true}})), "");
    TopoNode node = {};
    node.level = 3;
    node.Reserved[0] = kAtticIndex;
    NodeDevInfo info = {};
    EXPECT_EQ(reason(devapi_get_node_dev_info(&node, &info)), std::string(kAttic) + " is offline");
}

TEST_F(MeshRelationsTest, TheListCanBeFreedAfterTheGatewayIsClosed)
{
    Topology list;
    EXPECT_EQ(devapi_handle_topo_struct(kBoth, list.first()), 0);
    close();
    setenv("SIMULATED_GATEWAY_SCENARIO", "castle", 1); // nor can another one be opened
    devapi_free_topo_list(nullptr);
}

TEST_F(MeshRelationsTest, RoutersAreNamedToUsersWithDashes)
{
    EXPECT_EQ(view(kMain), "3C-6A-D2-10-4F-20");
    EXPECT_EQ(view("3c6ad2228180"), "3C-6A-D2-22-81-80");
    for (const char *mac : {"", "NULL", "00:11:32:C8:55:E1", "3C:6A:D2:22:81:81", "\xff"}) {
        EXPECT_EQ(view(mac), "fails") << mac;
        EXPECT_EQ(reason().find("there is no child router \""), 0u) << mac;
    }
}

TEST_F(MeshRelationsTest, HostsAndChildRoutersAreFoundByTheirAddress)
{
    EXPECT_EQ(index_of("a4-bb-6d-31-07-5e"), 1);
    EXPECT_EQ(index_of("BE2715F3640A"), 12);
    EXPECT_EQ(index_of(kFirstFloor), kFirstFloorIndex);
    for (const char *mac : {"", "NULL", kMain, "00:00:00:00:00:00"}) {
        int32_t index = 77;
        EXPECT_EQ(devapi_get_hostindex_by_mac(mac, &index), -1) << mac;
        EXPECT_EQ(index, 77);
    }
}

} // namespace
