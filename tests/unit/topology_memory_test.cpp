// The topology report with every allocation failing in turn: what it leaves out is left out as a
// whole, and said so in the log or by the absence of a key that is always there.
#include "memory_sweep.h"
#include "mesh_fixture.h"
#include "topology_report.h"
#include "traffic.h"

#include <set>

namespace topology_memory_test {

using recording_device::when;

// What a run leaves behind: the object, and the errors in the log.
using Outcomes = std::set<std::pair<std::string, Names>>;

class TopologyMemoryTest : public MeshTest {
  protected:
    // A mesh of two child routers with a link and two stations each, and two devices attached to
    // the main router. Its records are all but empty: what is in them is tested elsewhere.
    static void prepare()
    {
        mesh_type_is(2);
        child_routers_are({1, 2});
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t) {
            put(info->ChildMac, "child");
            return 0;
        });
        when<devapi_get_hg_base_info>([](HgBaseInfo *info) {
            put(info->AreaCode, "KOLM");
            return 0;
        });
        when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t) {
            put(link->nexthopMAC, "hop");
            return 0;
        });
        when<devapi_get_childrouter_info>([](ChildRouterInfo *info, int32_t) {
            info->link_count = 1;
            return 0;
        });
        when<devapi_get_childsta_list>([](ChildStationList *list, const char *) {
            list->count = 2;
            return 0;
        });
        when<devapi_get_dev_tol_num>([](int32_t *count, intptr_t) {
            *count = 2;
            return 0;
        });
    }
    static void prepare_operators_model()
    {
        prepare();
        model_is("QX2040B");
    }

    static Names errors()
    {
        Names texts;
        for (const auto &line : recording_host::log_lines()) {
            if (line.level == 3) {
                texts.push_back(line.text);
            }
        }
        return texts;
    }

    // Runs the sweep. Each of the outcomes of memory that fails once has to be seen, and no other;
    // memory that fails lastingly leads to nothing but the others. Result: the allocations of a run
    // that is whole.
    static size_t sweep(const std::function<void(cJSON *)> &act, const std::string &request,
                        const std::function<void()> &prepare, const Outcomes &once,
                        const Outcomes &lastingly)
    {
        Outcomes seen[2];
        const size_t allocations =
            sweep_memory(act, request, prepare, [&](const std::string &object, auto how) {
                seen[how == FailingMemory::Fail::kLastingly].insert({object, errors()});
            });
        EXPECT_EQ(seen[0], once);
        EXPECT_EQ(seen[1], lastingly);
        return allocations;
    }

    // What the builder makes when memory suffices, with something changed.
    using Change = std::function<void(cJSON *)>;
    std::string made(const Change &act, const std::string &into, const Change &change)
    {
        const Json json = parse(into);
        act(json.get());
        change(json.get());
        recording_host::reset();
        return print(json.get());
    }

    // What comes of the main router.
    std::string router(const Change &change) { return made(kRouter, "{}", change); }
    Outcomes routers(const char *mesh_key, const std::string &mesh_error)
    {
        const auto with_reason = [this](const char *reason) {
            return router([=](cJSON *object) {
                cJSON_DeleteItemFromObject(object, "MainBaseInfo");
                cJSON_AddStringToObject(object, "FailReason", reason);
            });
        };
        return {{"{}", {}},
                {without_mesh(mesh_key), {mesh_error}},
                {with_reason("cJSON create array failed!"), {}},
                {with_reason("get main base info error!"), {}}};
    }
    std::string without_mesh(const char *mesh_key)
    {
        return router([=](cJSON *object) {
            cJSON_DeleteItemFromObject(object, mesh_key);
            cJSON_DeleteItemFromObject(object, "MainBaseInfo");
        });
    }

    // What comes of the child routers, changed one by one from the last on; those from the count on
    // are left out.
    std::string child_routers(
        int count, const Change &first = [](cJSON *) {}, const Change &second = [](cJSON *) {})
    {
        return made(kChildRouters, "[]", [&](cJSON *array) {
            second(cJSON_GetArrayItem(array, 1));
            first(cJSON_GetArrayItem(array, 0));
            for (int at = 2; at > count; --at) {
                cJSON_DeleteItemFromArray(array, at - 1);
            }
        });
    }
    static void cut_mesh(cJSON *router) { cJSON_DeleteItemFromObject(router, "MeshInfo"); }
    static void cut_stations(cJSON *router, int left)
    {
        cJSON *stations = cJSON_GetObjectItem(router, "ChildBaseInfo");
        while (cJSON_GetArraySize(stations) > left) {
            cJSON_DeleteItemFromArray(stations, left);
        }
    }
    static void no_station(cJSON *router) { cut_stations(router, 0); }
    static void one_station(cJSON *router) { cut_stations(router, 1); }
    static void nothing(cJSON *) {}

    Outcomes child_routers_once()
    {
        return {{child_routers(0), {kNoRouter}},
                {child_routers(1), {kNoRouter}},
                {child_routers(2, cut_mesh), {kNoMesh}},
                {child_routers(2, nothing, cut_mesh), {kNoMesh}},
                {child_routers(2, cut_mesh), {}},
                {child_routers(2, nothing, cut_mesh), {}},
                {child_routers(1), {kNoStations}},
                {child_routers(2, no_station), {kNoStation}},
                {child_routers(2, one_station), {kNoStation}},
                {child_routers(2, nothing, no_station), {kNoStation}},
                {child_routers(2, nothing, one_station), {kNoStation}}};
    }

    static constexpr void (*kRouter)(cJSON *) = [](cJSON *object) {
        json_get_hg_base_info_copy(object);
    };
    static constexpr void (*kChildRouters)(cJSON *) = [](cJSON *array) {
        json_get_child_router_topo_info(array);
    };
    const std::string kNoRouter = "create child_router_itme err\n";
    const std::string kNoMesh = "create mesh_json err";
    const std::string kNoStations = "create child_array err!\n";
    const std::string kNoStation = "create child_sta_itme err\n";
};

// ---- The pieces --------------------------------------------------------------------------------

constexpr size_t kRouterAllocations = 2 * 30;
constexpr size_t kDeviceAllocations = 1 + 2 * 23;
constexpr size_t kStationAllocations = 1 + 2 * 23;
constexpr size_t kChildRouterAllocations =
    1 + 2 * 17 + (1 + (1 + 2 * 3)) + 1 + 2 * kStationAllocations;

TEST_F(TopologyMemoryTest, OfTheMainRouterWithItsChildren)
{
    prepare();
    EXPECT_EQ(sweep(kRouter, "{}", prepare, routers("ChildInfo", "create childinfo_json err"),
                    {{"{}", {}},
                     {"{}", {"create childinfo_json err"}},
                     {without_mesh("ChildInfo"), {"create childinfo_json err"}}}),
              kRouterAllocations + 1 + 2 * 3 + 1 + 2 * kDeviceAllocations);
}

TEST_F(TopologyMemoryTest, OfAChildRouterEndsTheListAsAFailure)
{
    prepare();
    const Json array = parse("[]");
    const Json object = parse("{}");
    const ChildRouterInfo router = {};
    for (const size_t first : {0, 1}) { // the router's object, and the first that it holds
        const FailingMemory memory(first, FailingMemory::Fail::kOnce);
        EXPECT_EQ(json_get_child_router_topo_info(array.get()), -1);
    }
    const FailingMemory memory(0, FailingMemory::Fail::kOnce);
    EXPECT_EQ(json_insert_childrouter_info(object.get(), &router), -1);
    EXPECT_EQ(print(array.get()), "[]");
}

TEST_F(TopologyMemoryTest, OfTheReasonAlone)
{
    const auto no_router = [] {
        when<devapi_get_hg_base_info>([](HgBaseInfo *) { return -1; });
    };
    const auto act = [](cJSON *object) {
        const int32_t answer = json_get_hg_base_info_copy(object);
        EXPECT_EQ(answer, object->child == nullptr ? -1 : 0);
    };
    EXPECT_EQ(sweep(act, "{}", no_router, {{"{}", {}}}, {{"{}", {}}}), 2u);
}

TEST_F(TopologyMemoryTest, OfTheMainRouterWithItsLinks)
{
    prepare_operators_model();
    EXPECT_EQ(sweep(kRouter, "{}", prepare_operators_model, routers("MeshInfo", kNoMesh),
                    {{"{}", {}}, {"{}", {kNoMesh}}, {without_mesh("MeshInfo"), {kNoMesh}}}),
              kRouterAllocations + 1 + 2 * 5 + 1 + 2 * kDeviceAllocations);
}

TEST_F(TopologyMemoryTest, OfTheDevices)
{
    const auto act = [](cJSON *array) {
        g_dev_num = 0;
        g_active_num = 0;
        put_to_json(&array, 0, 1);
    };
    prepare();
    const std::string one =
        made(act, "[]", [](cJSON *array) { cJSON_DeleteItemFromArray(array, 1); });
    EXPECT_EQ(sweep(act, "[]", prepare, {{"[]", {}}, {one, {}}}, {{"[]", {}}, {one, {}}}),
              2 * kDeviceAllocations);
    const FailingMemory memory(0, FailingMemory::Fail::kLastingly);
    cJSON array = {};
    array.type = cJSON_Array;
    cJSON *list = &array;
    EXPECT_EQ(put_to_json(&list, 0, 1), -1);
}

TEST_F(TopologyMemoryTest, OfTheChildRouters)
{
    prepare_operators_model();
    const Outcomes lastingly = {
        {child_routers(0), {kNoRouter}},
        {child_routers(1), {kNoRouter}},
        {child_routers(0), {kNoMesh, kNoRouter}},
        {child_routers(1), {kNoMesh, kNoRouter}},
        {child_routers(0), {kNoMesh, kNoStations, kNoRouter}},
        {child_routers(1), {kNoMesh, kNoStations}},
        {child_routers(0), {kNoStations, kNoRouter}},
        {child_routers(1), {kNoStations}},
        {child_routers(1, no_station), {kNoStation, kNoRouter}},
        {child_routers(1, one_station), {kNoStation, kNoRouter}},
        {child_routers(2, nothing, no_station), {kNoStation}},
        {child_routers(2, nothing, one_station), {kNoStation}},
    };
    EXPECT_EQ(sweep(kChildRouters, "[]", prepare_operators_model, child_routers_once(), lastingly),
              2 * kChildRouterAllocations);
}

TEST_F(TopologyMemoryTest, OfAStationLeavesNothingBehind)
{
    AdBaseInfo record = {};
    EXPECT_EQ(sweep([&](cJSON *object) { json_insert_childsta_info(object, &record); }, "{}",
                    prepare, {{"{}", {}}}, {{"{}", {}}}),
              kStationAllocations - 1);
    const Json object = parse("{}");
    const FailingMemory memory(5, FailingMemory::Fail::kOnce);
    EXPECT_EQ(json_insert_childsta_info(object.get(), &record), -1);
}

// ---- The report --------------------------------------------------------------------------------

TEST_F(TopologyMemoryTest, OfTheWholeReport)
{
    prepare_operators_model();
    const auto reply = [](const std::string &router, const std::string &children) {
        return R"({"MainRouter":)" + router + R"(,"ChildRouter":)" + children + R"(,"Status":"0"})";
    };
    const std::string failed = "{" + failure("Create mainrouter json error") + "}";
    Outcomes once = {{failed, {}}, {failed, {kNoRouter}}};
    for (const auto &[router, errors] : routers("MeshInfo", kNoMesh)) {
        if (router != "{}") {
            once.insert({reply(router, child_routers(2)), errors});
        }
    }
    for (const auto &[children, errors] : child_routers_once()) {
        if (errors != Names{kNoRouter}) {
            once.insert({reply(router(nothing), children), errors});
        }
    }
    once.insert({R"({"MainRouter":)" + router(nothing) + R"(,"Status":"0"})", {}});
    Outcomes seen;
    EXPECT_EQ(sweep_memory("GET_TSLINK_TOPOLOGY_INFO", "{}", prepare_operators_model,
                           [&](const std::string &object, auto how) {
                               if (how == FailingMemory::Fail::kOnce) {
                                   seen.insert({object, errors()});
                                   record_traffic("GET_TSLINK_TOPOLOGY_INFO", "{}", object);
                               } else {
                                   EXPECT_EQ(object, "{}"); // no success that is not whole
                               }
                           }),
              1 + kRouterAllocations + 1 + 2 * 5 + 1 + 2 * kDeviceAllocations + 1 +
                  2 * kChildRouterAllocations + 1);
    EXPECT_EQ(seen, once);
}

} // namespace topology_memory_test
