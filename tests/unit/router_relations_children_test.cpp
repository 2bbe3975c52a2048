// SPDX-License-Identifier: MIT
// What is attached to a child router in the topology's list of relations: further child routers,
// and devices.
#include "failing_memory.h"
#include "router_relations_fixture.h"

namespace router_relations_children_test {

// ---- Child routers of a child router -----------------------------------------------------------

class RouterRelationsChildrenTest : public RelationsTest {
  protected:
    RouterRelationsChildrenTest()
    {
        mesh_type_is(2);
        attached_are({});
        child_routers_are({4, -2});
        child = {};
        put(child.Mac, "mesh mac");
        put(child.ChildMac, "child mac");
        put(child.ParentMac, "node Mac");
        when<devapi_get_child_mesh_info>([this](ChildMeshInfo *info, int32_t) {
            *info = child;
            return 0;
        });
    }

    // The report's "ChildInfo"; empty when it has none.
    std::string children()
    {
        const Json object = parse(report(
            [](cJSON *array) {
                const TopoNode node = {};
                return json_get_child_router_info(&node, array);
            },
            "[]"));
        const cJSON *list = cJSON_GetObjectItem(object->child, "ChildInfo");
        if (list == nullptr) {
            return "";
        }
        EXPECT_STREQ(list->prev->string, "ParentMacAddress");
        EXPECT_STREQ(list->next->string, "ChildBaseInfo");
        return print(list);
    }

    ChildMeshInfo child;
};

TEST_F(RouterRelationsChildrenTest, AreListedInMeshesOfTypeTwoOnly)
{
    EXPECT_EQ(children(), R"([{"childMac":"child mac"},{"childMac":"child mac"}])");
    EXPECT_EQ(given_to("devapi_get_childrouter_list", 0), Names{std::string(36, '\0')});
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 0), Names(2, std::string(200, '\0')));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 1), (Names{"4", "-2"}));
    recording_device::reset();
    prepare();
    for (const int32_t type : {0, 1, 3, -1}) {
        mesh_type_is(type);
        EXPECT_EQ(children(), "") << type;
    }
    EXPECT_EQ(given_to("devapi_get_childrouter_list", 0), Names());
}

TEST_F(RouterRelationsChildrenTest, AreThoseOfThisRouter)
{
    for (const char *parent :
         {"", "node mac", "NODE MAC", "node Ma", "node Macs", "view of node Mac", "ParentMac"}) {
        put(child.ParentMac, parent);
        EXPECT_EQ(children(), "[]") << parent;
    }
    NodeDevInfo node = {};
    fill(node.Mac); // longer than a parent can be
    node_is(node);
    fill(child.ParentMac);
    EXPECT_EQ(children(), "[]");
    put(node.Mac, text_of_length(32));
    node_is(node);
    EXPECT_EQ(children(), R"([{"childMac":"child mac"},{"childMac":"child mac"}])");
}

TEST_F(RouterRelationsChildrenTest, HaveTheMeshMacWithoutAnother)
{
    for (const char *unknown : {"", "NULL", "null", "Null"}) {
        put(child.ChildMac, unknown);
        EXPECT_EQ(children(), R"([{"childMac":"mesh mac"},{"childMac":"mesh mac"}])") << unknown;
    }
    for (const char *known : {"NULLs", "NUL", "0"}) {
        put(child.ChildMac, known);
        child_routers_are({1});
        EXPECT_EQ(children(), R"([{"childMac":)" + quoted(known) + "}]");
    }
    fill(child.ChildMac);
    EXPECT_EQ(children(), R"([{"childMac":)" + quoted(text_of_length(32)) + "}]");
    put(child.ChildMac, "");
    fill(child.Mac);
    EXPECT_EQ(children(), R"([{"childMac":)" + quoted(text_of_length(32)) + "}]");
}

TEST_F(RouterRelationsChildrenTest, AreLeftOutWhenTheyCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_child_mesh_info>([=, this](ChildMeshInfo *info, int32_t identifier) {
            *info = child;
            return identifier == 4 ? failure : 0;
        });
        EXPECT_EQ(children(), R"([{"childMac":"child mac"}])");
    }
    when<devapi_get_childrouter_list>([](ChildRouterList *) { return -1; });
    EXPECT_EQ(children(), "[]");
    for (const int32_t count : {0, -1, INT_MIN}) {
        child_routers_are({4}, count);
        EXPECT_EQ(children(), "[]");
    }
}

TEST_F(RouterRelationsChildrenTest, AreThoseThatAFailedCallLeftInTheList)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_childrouter_list>(
            [=](ChildRouterList *list) { return spoil(list, failure); });
        const Json list = parse(children());
        EXPECT_EQ(cJSON_GetArraySize(list.get()), 8);
    }
}

TEST_F(RouterRelationsChildrenTest, AreEightAtMost)
{
    child_routers_are({1, 2, 3, 4, 5, 6, 7, 8}, INT_MAX);
    const Json list = parse(children());
    EXPECT_EQ(cJSON_GetArraySize(list.get()), 8);
}

// ---- json_get_child_router_baseinfo ------------------------------------------------------------

class RouterRelationsDevicesTest : public RelationsTest {
  protected:
    std::string devices()
    {
        return report([](cJSON *object) {
            const TopoNode node = {3, {8, 9}, nullptr};
            return json_get_child_router_baseinfo(&node, object);
        });
    }
    static std::string list(const std::string &devices)
    {
        return R"({"ChildBaseInfo":)" + devices + "}";
    }
};

TEST_F(RouterRelationsDevicesTest, AreListedKeyByKey)
{
    EXPECT_EQ(devices(), list(both_devices()));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_basic_area_code", "devapi_get_node_baseinfo",
                     "devapi_get_hostindex_by_mac", "devapi_get_childsta_base_info",
                     "devapi_get_local_timezone", "devapi_get_hostindex_by_mac",
                     "devapi_get_childsta_base_info", "devapi_get_local_timezone"}));
    EXPECT_EQ(recording_device::record<TopoNode>(recording_device::calls()[1]).level, 3);
    EXPECT_EQ(given_to("devapi_get_hostindex_by_mac", 0), (Names{"first", "second"}));
    AdBaseInfo asked = {};
    asked.HostIndex = 7;
    EXPECT_EQ(given_to("devapi_get_childsta_base_info", 0), Names(2, contents(&asked)));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(RouterRelationsDevicesTest, AreNotAddedWhenTheListCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        for (const size_t back_to : {SIZE_MAX, size_t{0}, size_t{2}}) {
            attached_are({"first", "second"}, failure, back_to);
            EXPECT_EQ(devices(), "{}");
            EXPECT_EQ(result, 0);
        }
    }
    EXPECT_EQ(given_to("devapi_get_hostindex_by_mac", 0), Names());
}

TEST_F(RouterRelationsDevicesTest, AreTheNodesThatAreNotHeads)
{
    attached_are({"first", "second"}, 0, SIZE_MAX, 1);
    EXPECT_EQ(devices(), list("[]"));
    for (const int32_t kind : {0, 2, -1, INT_MIN}) {
        attached_are({"first", "second"}, 0, SIZE_MAX, kind);
        EXPECT_EQ(devices(), list(both_devices())) << kind;
    }
    when<devapi_get_node_baseinfo>([](const TopoNode *, NodeBaseInfo *first) {
        first->Kind = 2; // the plug-in's own node is treated like any other
        put(first->Mac, "first");
        return 0;
    });
    EXPECT_EQ(devices(), list("[" + attached("first").json() + "]"));
}

TEST_F(RouterRelationsDevicesTest, AreListedOnceIfTheListIsCircular)
{
    const Names macs = {"a", "b", "c", "d", "e"};
    for (size_t nodes = 0; nodes <= macs.size(); ++nodes) {
        std::string all;
        for (size_t at = 0; at < nodes; ++at) {
            all += (all.empty() ? "" : ",") + attached(macs[at]).json();
        }
        for (size_t back_to = 0; back_to <= nodes; ++back_to) {
            attached_are(Names(macs.begin(), macs.begin() + static_cast<int>(nodes)), 0, back_to);
            EXPECT_EQ(devices(), list("[" + all + "]")) << nodes << " nodes, back to " << back_to;
        }
    }
}

TEST_F(RouterRelationsDevicesTest, AreEmptyWhenTheyCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        int calls = 0;
        when<devapi_get_childsta_base_info>([&](AdBaseInfo *info) {
            *info = attached_device();
            return ++calls == 1 ? failure : 0;
        });
        EXPECT_EQ(devices(), list("[{}," + attached("second").json() + "]"));
        EXPECT_EQ(result, 0);
    }
}

TEST_F(RouterRelationsDevicesTest, AreReadByTheIndexThatAnyCallLeft)
{
    for (const int32_t answer : {0, -1, 2, 1000}) {
        for (const int32_t index : {0, 7, INT_MIN, INT_MAX}) {
            recording_device::reset();
            prepare();
            index_is(index, answer);
            EXPECT_EQ(devices(), list(both_devices()));
            AdBaseInfo asked = {};
            asked.HostIndex = index;
            EXPECT_EQ(given_to("devapi_get_childsta_base_info", 0), Names(2, contents(&asked)));
        }
    }
}

TEST_F(RouterRelationsDevicesTest, AreReportedNoFurtherThanTheirFields)
{
    attached_are({text_of_length(96)});
    AdBaseInfo device = {};
    fill_places(&device, kAttachedDevice, full_text_of);
    when<devapi_get_childsta_base_info>([&](AdBaseInfo *info) {
        *info = device;
        return 0;
    });
    EXPECT_EQ(devices(), list("[" +
                              attached(text_of_length(96), full_text_of)
                                  .with("AccessTime", quoted(std::to_string(kNow)))
                                  .json() +
                              "]"));
    EXPECT_EQ(given_to("devapi_get_hostindex_by_mac", 0), Names{text_of_length(96)});
}

TEST_F(RouterRelationsDevicesTest, AreListedWithoutAMac)
{
    attached_are({""});
    EXPECT_EQ(devices(), list("[" + attached("").json() + "]"));
}

TEST_F(RouterRelationsDevicesTest, HaveTheirHostNameWithoutAnotherName)
{
    attached_are({"first"});
    AdBaseInfo device = attached_device();
    when<devapi_get_childsta_base_info>([&](AdBaseInfo *info) {
        *info = device;
        return 0;
    });
    for (const char *unknown : {"", "NULL", "null", "nULL"}) {
        put(device.ByName, unknown);
        EXPECT_EQ(devices(),
                  list("[" + attached("first").with("ByName", R"("Name")").json() + "]"));
    }
    put(device.ByName, "NULLs");
    EXPECT_EQ(devices(), list("[" + attached("first").with("ByName", R"("NULLs")").json() + "]"));
    put(device.ByName, "NULL");
    put(device.Name, "NULL");
    EXPECT_EQ(devices(),
              list("[" +
                   attached("first").with("ByName", R"("NULL")").with("Name", R"("NULL")").json() +
                   "]"));
}

TEST_F(RouterRelationsDevicesTest, HaveAHostNameWithoutANulInBothPlaces)
{
    attached_are({"first"});
    when<devapi_get_childsta_base_info>([](AdBaseInfo *info) {
        *info = attached_device();
        put(info->ByName, "");
        fill(info->Name);
        return 0;
    });
    const std::string name = quoted(text_of_length(32));
    EXPECT_EQ(devices(),
              list("[" + attached("first").with("ByName", name).with("Name", name).json() + "]"));
}

TEST_F(RouterRelationsDevicesTest, AreReportedInBriefInOneArea)
{
    for (const char *code : {"TH_OLV", "th_olv", "xTh_OlVx"}) {
        recording_device::reset();
        prepare();
        area_code_is(code);
        EXPECT_EQ(devices(),
                  list("[" + in_brief("first").json() + "," + in_brief("second").json() + "]"));
        EXPECT_EQ(given_to("devapi_get_local_timezone", 0), Names());
    }
    for (const char *code : {"OLV", "TH_OL", "", "NULL"}) {
        area_code_is(code);
        EXPECT_EQ(devices(), list(both_devices())) << code;
    }
}

TEST_F(RouterRelationsDevicesTest, AreReportedInBriefNoFurtherThanTheirFields)
{
    area_code_is("TH_OLV");
    attached_are({"first"});
    when<devapi_get_childsta_base_info>([](AdBaseInfo *info) {
        *info = attached_device();
        fill(info->AccessTime);
        return 0;
    });
    const std::string time = quoted(text_of_length(sizeof(AdBaseInfo::AccessTime)));
    EXPECT_EQ(devices(), list("[" + in_brief("first").with("AccessTime", time).json() + "]"));
}

TEST_F(RouterRelationsDevicesTest, CorrectTheTimeByTheZoneInAnyTimeType)
{
    attached_are({"first"});
    for (const int32_t type : {0, 1, 2}) {
        zone_is(-5);
        time_type_is(type);
        EXPECT_EQ(devices(),
                  list("[" + attached("first").with("AccessTime", R"("18100")").json() + "]"));
    }
}

TEST_F(RouterRelationsDevicesTest, AddNothingWithoutAnObject)
{
    const TopoNode node = {};
    EXPECT_EQ(json_get_child_router_baseinfo(&node, nullptr), -1);
    EXPECT_EQ(report([](cJSON *object) { return json_get_child_router_baseinfo(nullptr, object); }),
              "{}");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(
        report([&](cJSON *array) { return json_get_child_router_baseinfo(&node, array); }, "[]"),
        "[]");
    EXPECT_EQ(result, -1);
}

TEST_F(RouterRelationsDevicesTest, AreNotQueriedWithoutMemoryForTheFirst)
{
    const TopoNode node = {};
    report([&](cJSON *object) {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        return json_get_child_router_baseinfo(&node, object);
    });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_basic_area_code"});
}

} // namespace router_relations_children_test
