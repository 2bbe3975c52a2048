// The reports that the agent asks for by itself, with every allocation failing in turn.
#include "memory_sweep.h"
#include "relations_fixture.h"

#include <algorithm>
#include <set>

namespace router_memory_test {

using recording_device::when;

class RouterMemoryTest : public RelationsTest {
  protected:
    // What memory that fails has left in the object, and in the log.
    using Outcomes = std::set<std::pair<std::string, std::string>>;

    template <class Builder>
    static Outcomes sweep(Builder builder, const std::function<void()> &prepare, size_t allocations)
    {
        Outcomes seen;
        EXPECT_EQ(sweep_memory([&](cJSON *object) { builder(object); }, "{}", prepare,
                               [&](const std::string &object, auto) {
                                   seen.insert({object, last_error()});
                               }),
                  allocations);
        return seen;
    }

    // The last error in the log, without the source file and line of it.
    static std::string last_error()
    {
        for (const auto &line : recording_host::log_lines()) {
            if (line.level == 3) {
                const size_t text = line.text.find("cjson");
                return text != std::string::npos ? line.text.substr(text) : line.text;
            }
        }
        return "";
    }

    static void nothing() {}
};

// ---- The main router ---------------------------------------------------------------------------

TEST_F(RouterMemoryTest, OfTheMainRouterFailsOrAddsNothing)
{
    for (const char *code : {"", "TH_OLV"}) {
        const size_t keys = *code == '\0' ? 26 : 13;
        EXPECT_EQ(sweep(
                      json_get_main_router_info, [=] { area_code_is(code); }, 2 * keys - 1),
                  (Outcomes{{"{" + failure("get base info error!") + "}", ""}, {"{}", ""}}));
    }
}

TEST_F(RouterMemoryTest, OfTheDevicesOfTheMainRouterAddsNothing)
{
    const auto two_devices = [] {
        when<devapi_get_host_num>([](int32_t *count) {
            *count = 2;
            return 0;
        });
        when<devapi_get_ad_base_info>([](AdBaseInfo *info) {
            put(info->LinkStatus, "1");
            return 0;
        });
    };
    EXPECT_EQ(sweep(json_get_main_router_baseinfo, two_devices, 1 + 2 * (1 + 2 * 14)),
              (Outcomes{{"{}", ""}}));
    two_devices();
    const Json object = parse("{}");
    const FailingMemory memory(3, FailingMemory::Fail::kOnce);
    EXPECT_EQ(json_get_main_router_baseinfo(object.get()), -1);
}

// The list itself comes from calloc().
TEST_F(RouterMemoryTest, OfStationsAddsNothingAndSaysSo)
{
    const auto two_stations = [] {
        when<devapi_get_node_sta_info_by_newmetod>([](StationList *list, const char *) {
            list->count = 2;
            return 0;
        });
    };
    const auto builder = [](cJSON *object) {
        const int32_t answer = json_get_router_sta_info(object, "sub", "");
        EXPECT_EQ(answer, object->child == nullptr ? -1 : 0);
    };
    EXPECT_EQ(sweep(builder, two_stations, 1 + 1 + 2 * (1 + 2 * 21)),
              (Outcomes{{"{}", "cjson create array failed\n"}}));
}

// ---- The topology's relations ------------------------------------------------------------------

TEST_F(RouterMemoryTest, OfDevicesOfAChildRouterAddsNothing)
{
    const TopoNode node = {};
    const auto builder = [&](cJSON *object) {
        const int32_t answer = json_get_child_router_baseinfo(&node, object);
        EXPECT_EQ(answer, object->child == nullptr ? -1 : 0);
    };
    EXPECT_EQ(sweep(builder, prepare, 1 + 1 + 2 * (1 + 2 * 22)), (Outcomes{{"{}", ""}}));
    const auto unknown_devices = [] {
        prepare();
        when<devapi_get_childsta_base_info>([](AdBaseInfo *) { return -1; });
    };
    EXPECT_EQ(sweep(builder, unknown_devices, 1 + 1 + 2), (Outcomes{{"{}", ""}}));
}

TEST_F(RouterMemoryTest, AfterAChildWithoutMemoryNoOtherIsAskedFor)
{
    std::set<size_t> asked;
    const auto two_children = [] {
        prepare();
        mesh_type_is(2);
        child_routers_are({1, 2});
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t) {
            put(info->ParentMac, "node Mac");
            return 0;
        });
        routers_are({2});
    };
    sweep_memory([](cJSON *object) { json_get_topo_router_info(object); }, "{}", two_children,
                 [&](const std::string &, auto) {
                     const auto calls = recording_device::called_functions();
                     asked.insert(static_cast<size_t>(
                         std::count(calls.begin(), calls.end(), "devapi_get_child_mesh_info")));
                 });
    EXPECT_EQ(asked, (std::set<size_t>{0, 1, 2}));
}

// Only a router without the list of those that hang from it is left out alone.
TEST_F(RouterMemoryTest, OfChildRoutersAddsNothingOrLeavesOneOut)
{
    const auto two_routers = [] {
        prepare();
        mesh_type_is(2);
        child_routers_are({1});
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t) {
            put(info->ParentMac, "node Mac");
            return 0;
        });
        routers_are({2, 2});
    };
    const size_t each = 1 + 2 * (6 + 13 + 1) + (1 + 1 + 2) + (1 + 1 + 2 * (1 + 2 * 22));
    two_routers();
    const Json one_router = parse("{}");
    json_get_topo_router_info(one_router.get());
    cJSON_DeleteItemFromArray(cJSON_GetObjectItem(one_router.get(), "ChildRouter"), 0);
    const auto builder = [](cJSON *object) {
        const int32_t answer = json_get_topo_router_info(object);
        EXPECT_EQ(answer, object->child == nullptr ? -1 : 0);
    };
    EXPECT_EQ(sweep(builder, two_routers, 1 + 1 + 2 * each),
              (Outcomes{{"{}", ""}, // no list, or no node for the topology
                        {"{}", "create childinfo_json err"},
                        {print(one_router.get()), "create childinfo_json err"}}));
}

TEST_F(RouterMemoryTest, OfOneChildRouterIsAFailure)
{
    const auto with_children = [] {
        prepare();
        mesh_type_is(2);
    };
    const auto builder = [](cJSON *array) {
        const TopoNode node = {};
        const int32_t answer = json_get_child_router_info(&node, array);
        EXPECT_EQ(answer, array->child == nullptr ? -1 : 0);
    };
    EXPECT_GT(sweep_memory(builder, "[]", with_children, [](auto...) {}), 0u);
}

TEST_F(RouterMemoryTest, OfTheListOfChildRoutersAsksNoDevice)
{
    const Json object = parse("{}");
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        const FailingMemory memory(0, how);
        EXPECT_EQ(json_get_topo_router_info(object.get()), -1);
    }
    EXPECT_EQ(print(object.get()), "{}");
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(RouterMemoryTest, OfWhatOnlyTheRecordKnowsAddsNothing)
{
    const auto unknown_to_the_topology = [] {
        prepare();
        node_is({});
        attached_are({});
    };
    const size_t router = 1 + 2 * (6 + 13 + 2 + 1);
    EXPECT_EQ(sweep(json_get_topo_router_info, unknown_to_the_topology, 1 + 1 + router + (1 + 1)),
              (Outcomes{{"{}", ""}, {"{}", "create childinfo_json err"}}));
}

TEST_F(RouterMemoryTest, OfChildRoutersInBriefAddsNothing)
{
    const auto in_brief = [] {
        prepare();
        area_code_is("th_olv");
    };
    EXPECT_EQ(sweep(json_get_topo_router_info, in_brief,
                    1 + 1 + (1 + 2 * 6) + (1 + 1 + 2 * (1 + 2 * 15))),
              (Outcomes{{"{}", ""}, {"{}", "create childinfo_json err"}}));
}

// ---- The tree of parameters --------------------------------------------------------------------

class TreeMemoryTest : public RouterMemoryTest {
  protected:
    static void two_entries()
    {
        when<devapi_topo_xml_getinfo>([](const char *path, char *value) {
            const bool is_count = strstr(path, "NumberOfEntries") != nullptr;
            strcpy(value, is_count ? "2" : "1");
            return 0;
        });
        when<devapi_get_node_dev_info_by_newmetod>([](const char *, ChildRouterInfo *info) {
            info->link_count = 1;
            return 0;
        });
        when<devapi_get_child_mesh_info_bynewmethod>([](const char *, ChildMeshList *list) {
            list->count = 1;
            return 0;
        });
        when<devapi_get_node_sta_info_by_newmetod>([](StationList *list, const char *) {
            list->count = 1;
            return 0;
        });
    }

    // The report of both routers, of which one is told without its stations.
    static std::string without_stations_of(int position, const std::function<void()> &prepare)
    {
        prepare();
        const Json report = parse("{}");
        json_get_topo_router_agent_info_bynewmethod(report.get());
        cJSON *routers = cJSON_GetObjectItem(report.get(), "ChildRouter");
        cJSON_DeleteItemFromObject(cJSON_GetArrayItem(routers, position), "ChildBaseInfo");
        return print(report.get());
    }
    // What comes of a list of stations without memory: a line in the log, and a report without that
    // list, or none where the next router has no memory either.
    static Outcomes with_lost_stations(Outcomes others, const std::function<void()> &prepare)
    {
        for (const std::string &object : {std::string("{}"), without_stations_of(0, prepare),
                                          without_stations_of(1, prepare)}) {
            others.insert({object, "cjson create array failed\n"});
        }
        return others;
    }

    static constexpr size_t kRouter = 1 + 2 * 21;
    static constexpr size_t kStations = 1 + 1 + (1 + 2 * 21);
};

TEST_F(TreeMemoryTest, OfChildRoutersAddsNothingOrLosesStations)
{
    EXPECT_EQ(sweep(json_get_topo_router_agent_info_bynewmethod, two_entries,
                    1 + 2 * (kRouter + (1 + 1 + (1 + 2)) + kStations)),
              with_lost_stations({{"{}", "create childinfo_json err"}}, two_entries));
}

TEST_F(TreeMemoryTest, OfTheListAsksForNoChildRouter)
{
    two_entries();
    const Json object = parse("{}");
    const FailingMemory memory(0, FailingMemory::Fail::kOnce);
    EXPECT_EQ(json_get_topo_router_agent_info_bynewmethod(object.get()), -1);
    EXPECT_EQ(last_error(), "create childinfo_json err");
    EXPECT_EQ(given_to("devapi_topo_xml_getinfo", 0).size(), 1u);
}

TEST_F(TreeMemoryTest, OfAChildRouterEndsTheWalk)
{
    two_entries();
    const Json object = parse("{}");
    {
        const FailingMemory memory(1, FailingMemory::Fail::kOnce); // the list takes the first
        EXPECT_EQ(json_get_topo_router_agent_info_bynewmethod(object.get()), -1);
    }
    EXPECT_EQ(print(object.get()), "{}");
    EXPECT_EQ(last_error(), "create childinfo_json err");
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 0).size(), 1u);
    EXPECT_EQ(recording_device::called_functions().back(), "devapi_get_node_dev_info_by_newmetod");
}

TEST_F(TreeMemoryTest, OfRoutersBelowAChildRouterAddsNothingOrLosesStations)
{
    const auto below = [] {
        two_entries();
        bridge_mac_is("bridge");
    };
    EXPECT_EQ(sweep(json_get_topo_router_agent_info_bynewmethod, below,
                    1 + 2 * (kRouter + (1 + 1 + (1 + 2)) + kStations)),
              with_lost_stations({{"{}", "create childinfo_json err"}}, below));
}

TEST_F(TreeMemoryTest, OfChildRoutersWithLinksAddsNothingOrLosesStations)
{
    const auto prepare = [] {
        two_entries();
        area_code_is("ARVEN");
    };
    EXPECT_EQ(sweep(json_get_topo_router_agent_info_bynewmethod, prepare,
                    1 + 2 * (kRouter + (1 + (1 + 2 * 3)) + kStations)),
              with_lost_stations(
                  {{"{}", "create childinfo_json err"}, {"{}", "create mesh_json err"}, {"{}", ""}},
                  prepare));
}

} // namespace router_memory_test
