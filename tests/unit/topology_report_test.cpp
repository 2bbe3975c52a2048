// SPDX-License-Identifier: MIT
// The main router's own information in the topology report, and the report as a whole.
#include "failing_memory.h"
#include "topology_fixture.h"

#include <optional>

namespace topology_report_test {

class GetTslinkTopologyInfo : public TopologyReport {};

// ---- The main router's own information ---------------------------------------------------------

TEST_F(GetTslinkTopologyInfo, HasTheRouterKeyByKey)
{
    EXPECT_EQ(router_report(), without_devices(router()).json());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_mesh_type", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_hg_base_info", 0), Names{std::string(856, '\0')});
    EXPECT_EQ(given_to("devapi_get_devicemodel", 1), Names{"31"});
}

TEST_F(GetTslinkTopologyInfo, ZeroesTheBuffersOfModelAndBridge)
{
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        EXPECT_EQ(std::string(model, 32), std::string(32, '\0'));
        return 0;
    });
    when<ts_sys_mgr_get_brmac>(
        [](char *mac) { EXPECT_EQ(std::string(mac, 32), std::string(32, '\0')); });
    router_report();
}

TEST_F(GetTslinkTopologyInfo, ReadsNoFurtherThanTheFieldsOfTheRouter)
{
    fill_places(&base, kMainRouterRecord, full_text_of);
    EXPECT_EQ(router_report(), without_devices(router(full_text_of)).json());
}

TEST_F(GetTslinkTopologyInfo, HasOnlyAReasonWithoutTheBaseInformation)
{
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        when<devapi_get_hg_base_info>([=](HgBaseInfo *info) { return spoil(info, failure); });
        EXPECT_EQ(report(json_get_hg_base_info_copy, R"({"First":1})"),
                  R"({"First":1,"FailReason":"get base info error!"})");
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(recording_device::called_functions(), Names(4, "devapi_get_hg_base_info"));
}

TEST_F(GetTslinkTopologyInfo, HasAReasonInPlaceOfItsDevicesWithoutMemory)
{
    std::optional<FailingMemory> memory;
    when<devapi_get_mesh_type>([&] {
        memory.emplace(0, FailingMemory::Fail::kOnce);
        return 1;
    });
    EXPECT_EQ(router_report(),
              router().with("FailReason", R"("cJSON create array failed!")").json());
}

TEST_F(GetTslinkTopologyInfo, HasTheStateOfEachRadio)
{
    const std::pair<const char *, const char *> states[] = {
        {"up", R"("1")"},   {"UP", R"("1")"}, {"uP", R"("1")"},    {"1", R"("1")"},
        {"", R"("0")"},     {"0", R"("0")"},  {"down", R"("0")"},  {"u", R"("0")"},
        {"2", R"("0")"},    {"11", R"("0")"}, {"upper", R"("0")"}, {" up", R"("0")"},
        {"NULL", R"("0")"},
    };
    for (const auto &[state, code] : states) {
        put(base.WiFiStatus1, state);
        put(base.WiFiStatus2, "off");
        EXPECT_EQ(value("WiFiStatus1"), code) << state;
        EXPECT_EQ(value("WiFiStatus2"), R"("0")") << state;
        put(base.WiFiStatus1, "off");
        put(base.WiFiStatus2, state);
        EXPECT_EQ(value("WiFiStatus1"), R"("0")") << state;
        EXPECT_EQ(value("WiFiStatus2"), code) << state;
    }
}

TEST_F(GetTslinkTopologyInfo, CutsTheAreaToTheOperatorForItsModel)
{
    put(base.AreaCode, "xxARVENyy");
    for (const char *model : {"", "qx2040b", "QX2040B ", "QX2040", "QX3060"}) {
        model_is(model);
        EXPECT_EQ(value("AreaCode"), R"("xxARVENyy")") << model;
    }
    model_is("QX2040B");
    EXPECT_EQ(router_report(),
              without_devices(router().with("AreaCode", R"("ARVEN")").with("MeshInfo", kBothLinks))
                  .json());
    for (const char *code : {"xxKOLMyy", "arven", "ARVE", ""}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("AreaCode"), quoted(code));
    }
    put(base.AreaCode, std::string(27, 'x') + "ARVEN"); // ends without a NUL
    EXPECT_EQ(value("AreaCode"), R"("ARVEN")");
    put(base.AreaCode, std::string(28, 'x') + "ARVE"); // "N" would be in the next field
    put(base.AddressType, "N");
    EXPECT_EQ(value("AreaCode"), quoted(std::string(28, 'x') + "ARVE"));
}

TEST_F(GetTslinkTopologyInfo, UsesTheModelThatAFailedCallLeft)
{
    put(base.AreaCode, "xARVEN");
    for (const int32_t failure : {-1, 1, 1000}) {
        writes<devapi_get_devicemodel>("QX2040B", failure);
        EXPECT_EQ(value("AreaCode"), R"("ARVEN")");
        EXPECT_NE(value("MeshInfo"), "");
        when<devapi_get_devicemodel>([=](char *, int32_t) { return failure; });
        EXPECT_EQ(value("AreaCode"), R"("xARVEN")");
        EXPECT_EQ(value("MeshInfo"), "");
    }
}

TEST_F(GetTslinkTopologyInfo, ReadsNoFurtherThanTheModel)
{
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        memset(model, 'Q', 32);
        return 0;
    });
    EXPECT_EQ(router_report(), without_devices(router()).json());
}

// ---- The report --------------------------------------------------------------------------------

TEST_F(GetTslinkTopologyInfo, IsRouterChildRoutersAndStatus)
{
    child_routers_are({});
    EXPECT_EQ(run("GET_TSLINK_TOPOLOGY_INFO", R"({"First":1,"Mac":"x"})"),
              R"({"First":1,"Mac":"x","MainRouter":)" + without_devices(router()).json() +
                  R"(,"ChildRouter":[],"Status":"0"})");
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_mesh_type", "devapi_get_dev_tol_num",
                     "devapi_get_childrouter_list", "devapi_call_tslink_set_topo_speed"}));
}

TEST_F(GetTslinkTopologyInfo, SucceedsWithoutTheMainRouter)
{
    child_routers_are({});
    when<devapi_get_hg_base_info>([](HgBaseInfo *info) { return spoil(info); });
    EXPECT_EQ(run("GET_TSLINK_TOPOLOGY_INFO"),
              R"({"MainRouter":{"FailReason":"get base info error!"},"ChildRouter":[],)"
              R"("Status":"0"})");
}

TEST_F(GetTslinkTopologyInfo, AddsNothingWithoutAnObject)
{
    EXPECT_EQ(json_get_hg_base_info_copy(nullptr), -1);
    EXPECT_EQ(hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", nullptr), 0);
    EXPECT_EQ(report(json_get_hg_base_info_copy, "[]"), "[]");
    EXPECT_EQ(result, -1);
    when<devapi_get_hg_base_info>([](HgBaseInfo *) { return 1; });
    EXPECT_EQ(json_get_hg_base_info_copy(nullptr), -1);
    const Json array = parse("[]");
    EXPECT_EQ(hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", array.get()), 0);
    EXPECT_EQ(print(array.get()), "[]");
}

} // namespace topology_report_test

// The mesh of the main router in the topology report.
namespace topology_mesh_test {

class GetTslinkTopologyInfoMesh : public TopologyReport {};

// ---- The mesh of the operators' model ----------------------------------------------------------

TEST_F(GetTslinkTopologyInfoMesh, ListsTheLinksOfTheOperatorsModel)
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

TEST_F(GetTslinkTopologyInfoMesh, ListsLinksInThreeAreasOnly)
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

TEST_F(GetTslinkTopologyInfoMesh, LeavesOutALinkThatCannotBeRead)
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

TEST_F(GetTslinkTopologyInfoMesh, EndsTheRouterWithoutMemoryForItsLinks)
{
    put(base.AreaCode, "KOLM");
    model_is("QX2040B");
    std::optional<FailingMemory> memory;
    when<devapi_get_childrouter_list>([&](ChildRouterList *) {
        memory.emplace(0, FailingMemory::Fail::kOnce);
        return 0;
    });
    EXPECT_EQ(router_report(), router().with("AreaCode", R"("KOLM")").json());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "create mesh_json err"}}));
}

TEST_F(GetTslinkTopologyInfoMesh, ListsTheChildRoutersThatAFailedCallLeft)
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

TEST_F(GetTslinkTopologyInfoMesh, ListsTheChildrenOfAnyOtherModel)
{
    put(base.AreaCode, "ARVEN");
    mesh_type_is(2);
    for (const char *model : {"QX3060", "qx2040b", ""}) {
        model_is(model);
        EXPECT_EQ(value("ChildInfo"), R"([{"childMac":"child 7"},{"childMac":"child 3"}])");
        EXPECT_EQ(value("MeshInfo"), "");
    }
}

TEST_F(GetTslinkTopologyInfoMesh, EndsTheRouterWithoutMemoryForItsChildren)
{
    std::optional<FailingMemory> memory;
    when<devapi_get_mesh_type>([&] {
        memory.emplace(0, FailingMemory::Fail::kOnce);
        return 2;
    });
    EXPECT_EQ(router_report(), router().json());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "create childinfo_json err"}}));
}

TEST_F(GetTslinkTopologyInfoMesh, ReadsTheChildrenInOrder)
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

TEST_F(GetTslinkTopologyInfoMesh, ListsChildrenInMeshesOfTypeTwoOnly)
{
    for (const int32_t type : {-2, -1, 0, 1, 3, INT_MAX}) {
        mesh_type_is(type);
        EXPECT_EQ(value("ChildInfo"), "") << type;
        EXPECT_EQ(value("MainBaseInfo"), "[]") << type;
    }
}

TEST_F(GetTslinkTopologyInfoMesh, ListsTheChildrenOfTheMainRouter)
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

// Which devices attached to the main router are in the topology report.
namespace topology_devices_test {

class GetTslinkTopologyInfoDevices : public TopologyDevices {};

// ---- The walk ----------------------------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoDevices, HasEachDeviceKeyByKey)
{
    devices_are(2);
    EXPECT_EQ(devices(), "[" + reported().json() + "," + reported().json() + "]");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_dev_tol_num", "dev_is_exist", "devapi_get_ad_base_info",
                     "devapi_get_local_timezone", "devapi_get_systerm_timetype", "dev_is_exist",
                     "devapi_get_ad_base_info", "devapi_get_local_timezone",
                     "devapi_get_systerm_timetype"}));
    EXPECT_EQ(given_to("devapi_get_dev_tol_num", 1), Names{"5"});
    EXPECT_EQ(given_to("dev_is_exist", 0), (Names{"1", "2"}));
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "get total limit = 2\n"}}));
}

TEST_F(GetTslinkTopologyInfoDevices, ReadsEachDeviceByKindAndIndexAlone)
{
    devices_are(2);
    for (const int32_t kind : {1, 0, 7, -1}) {
        recording_device::reset();
        devices_are(2);
        devices(kind);
        std::vector<AdBaseInfo> asked(2);
        for (int32_t at = 0; at < 2; ++at) {
            asked[static_cast<size_t>(at)].Kind = kind;
            asked[static_cast<size_t>(at)].HostIndex = at + 1;
        }
        EXPECT_EQ(given_to("devapi_get_ad_base_info", 0),
                  (Names{contents(&asked[0]), contents(&asked[1])}));
    }
}

TEST_F(GetTslinkTopologyInfoDevices, ReadsNoFurtherThanTheFieldsOfADevice)
{
    fill_places(&device, kAttachedDevice, full_text_of);
    EXPECT_EQ(devices(), "[" +
                             reported(full_text_of)
                                 .with("NetStatus", quoted(text_of_length(8)))
                                 .with("AccessTime", quoted(std::to_string(kNow)))
                                 .json() +
                             "]");
}

TEST_F(GetTslinkTopologyInfoDevices, FailsIfTheCountCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        recording_host::reset();
        writes<devapi_get_dev_tol_num>(3, failure);
        EXPECT_EQ(devices(), "[]");
        EXPECT_EQ(result, failure);
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "get total limit fail ret=" + std::to_string(failure) + "\n"}}));
    }
    EXPECT_EQ(given_to("dev_is_exist", 0), Names());
}

TEST_F(GetTslinkTopologyInfoDevices, HasNoneForACountBelowOne)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        devices_are(count);
        EXPECT_EQ(devices(), "[]");
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(given_to("dev_is_exist", 0), Names());
}

TEST_F(GetTslinkTopologyInfoDevices, SkipsDevicesThatOtherEntriesRepresent)
{
    devices_are(4);
    when<dev_is_exist>([](int32_t index) { return index == 2 ? 1 : index == 3 ? -1 : 0; });
    when<devapi_get_ad_base_info>([](AdBaseInfo *info) {
        put(info->Mac, std::to_string(info->HostIndex));
        return 0;
    });
    const Json array = parse(devices());
    ASSERT_EQ(cJSON_GetArraySize(array.get()), 2);
    EXPECT_STREQ(cJSON_GetObjectItem(cJSON_GetArrayItem(array.get(), 0), "Mac")->valuestring, "1");
    EXPECT_STREQ(cJSON_GetObjectItem(cJSON_GetArrayItem(array.get(), 1), "Mac")->valuestring, "4");
    EXPECT_EQ(given_to("devapi_get_ad_base_info", 0).size(), 2u);
    EXPECT_EQ(g_dev_num, 2);
    EXPECT_EQ(g_active_num, 2);
}

// Before main(), and so before any report.
const std::pair<int32_t, int32_t> counts_at_start = {g_dev_num, g_active_num};

TEST_F(GetTslinkTopologyInfoDevices, AreCountedFromZero)
{
    EXPECT_EQ(counts_at_start, (std::pair<int32_t, int32_t>{0, 0}));
}

TEST_F(GetTslinkTopologyInfoDevices, SkipsAFreePlaceSilently)
{
    devices_are(3);
    when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
        const int32_t answer = info->HostIndex == 2 ? 1000 : 0;
        *info = device;
        return answer;
    });
    EXPECT_EQ(devices(), "[" + reported().json() + "," + reported().json() + "]");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(g_dev_num, 2);
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "get total limit = 3\n"}}));
}

TEST_F(GetTslinkTopologyInfoDevices, EndsAtADeviceThatCannotBeRead)
{
    devices_are(3);
    for (const int32_t failure : {-1, 1, 999, 1001, INT_MIN}) {
        recording_host::reset();
        when<devapi_get_ad_base_info>([=, this](AdBaseInfo *info) {
            const int32_t answer = info->HostIndex == 2 ? failure : 0;
            *info = device;
            return answer;
        });
        EXPECT_EQ(devices(), "[" + reported().json() + "]");
        EXPECT_EQ(result, -1);
        EXPECT_EQ(recording_host::log_lines().size(), 2u);
        expect_last_error("topology_report.cpp", "get ad base fail ret=" + std::to_string(failure));
    }
}

TEST_F(GetTslinkTopologyInfoDevices, PassesItsArgumentAsWideAsAPointer)
{
    for (const intptr_t argument : {INTPTR_MAX, INTPTR_MIN, intptr_t{-1}}) {
        recording_device::reset();
        const Json array = parse("[]");
        cJSON *list = array.get();
        EXPECT_EQ(put_to_json(&list, argument, 1), 0);
        EXPECT_EQ(given_to("devapi_get_dev_tol_num", 1), Names{std::to_string(argument)});
    }
}

TEST_F(GetTslinkTopologyInfoDevices, StopsAfterThirtyTwo)
{
    for (const int32_t count : {33, 40, INT_MAX}) {
        g_dev_num = 0;
        devices_are(count);
        const Json array = parse(devices());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 32);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(g_dev_num, 33);
    }
    g_dev_num = 0;
    devices_are(32);
    const Json array = parse(devices());
    EXPECT_EQ(cJSON_GetArraySize(array.get()), 32);
    EXPECT_EQ(g_dev_num, 32);
}

TEST_F(GetTslinkTopologyInfoDevices, KeepsCountingAcrossCalls)
{
    devices_are(20);
    devices(1);
    EXPECT_EQ(g_dev_num, 20);
    EXPECT_EQ(g_active_num, 20);
    const Json array = parse(devices(0));
    EXPECT_EQ(cJSON_GetArraySize(array.get()), 12);
    EXPECT_EQ(g_dev_num, 33);
    EXPECT_EQ(g_active_num, 20);
    EXPECT_EQ(devices(1), "[]");
    EXPECT_EQ(g_dev_num, 34);
    EXPECT_EQ(g_active_num, 20);
}

TEST_F(GetTslinkTopologyInfoDevices, StopCountingAtTheLargestNumber)
{
    g_dev_num = INT_MAX;
    EXPECT_EQ(devices(), "[]");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(g_dev_num, INT_MAX);
    g_dev_num = 0;
    g_active_num = INT_MAX;
    EXPECT_NE(devices(1), "[]");
    EXPECT_EQ(g_active_num, INT_MAX);
}

TEST_F(GetTslinkTopologyInfoDevices, AreNoneWithoutAnArray)
{
    EXPECT_EQ(put_to_json(nullptr, 0, 1), -1);
    cJSON *none = nullptr;
    EXPECT_EQ(put_to_json(&none, 0, 1), -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- In the report -----------------------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoDevices, AreCountedFromZeroInEachReport)
{
    g_dev_num = 7;
    g_active_num = 7;
    devices_are(40);
    for (int round = 0; round < 2; ++round) {
        const Json router = parse(report(json_get_hg_base_info_copy));
        EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(router.get(), "MainBaseInfo")), 32);
        EXPECT_EQ(g_dev_num, 33);
        EXPECT_EQ(g_active_num, 32);
    }
    EXPECT_EQ(given_to("devapi_get_dev_tol_num", 1), (Names{"0", "0"}));
    EXPECT_EQ(recording_device::record<AdBaseInfo>(recording_device::calls()[6]).Kind, 1);
}

TEST_F(GetTslinkTopologyInfoDevices, AreLeftOutOfTheReportWhenOneCannotBeRead)
{
    for (const int32_t failure : {-1, 1}) {
        when<devapi_get_ad_base_info>([=](AdBaseInfo *info) { return spoil(info, failure); });
        const Json reply = parse(run("GET_TSLINK_TOPOLOGY_INFO"));
        const cJSON *router = cJSON_GetObjectItem(reply.get(), "MainRouter");
        EXPECT_EQ(cJSON_GetObjectItem(router, "MainBaseInfo"), nullptr);
        EXPECT_STREQ(cJSON_GetObjectItem(router, "FailReason")->valuestring,
                     "get main base info error!");
        EXPECT_STREQ(cJSON_GetObjectItem(reply.get(), "Status")->valuestring, "0");
    }
}

TEST_F(GetTslinkTopologyInfoDevices, AreNoneInTheReportWhenTheCountFails)
{
    for (const int32_t failure : {1, 1000, -2, -1}) {
        when<devapi_get_dev_tol_num>([=](int32_t *, intptr_t) { return failure; });
        const Json router = parse(report(json_get_hg_base_info_copy));
        const cJSON *last = router->child->prev;
        EXPECT_STREQ(last->string, failure == -1 ? "FailReason" : "MainBaseInfo");
        EXPECT_EQ(print(last), failure == -1 ? R"("get main base info error!")" : "[]");
    }
}

} // namespace topology_devices_test

// A device attached to the main router in the topology report.
namespace topology_device_values_test {

class GetTslinkTopologyInfoDeviceValues : public TopologyDevices {};

TEST_F(GetTslinkTopologyInfoDeviceValues, ReplacesNullKeyByKey)
{
    const Request whole = reported();
    const std::vector<std::pair<const char *, Request>> cases = {
        {"Mac", whole.with("Mac", R"("")")},
        {"UID", whole.with("UID", R"("")")},
        {"DevType", whole.with("DevType", R"("")").with("DevModle", R"("")")},
        {"DevFactory", whole.with("DevFactory", R"("")")},
        {"Name", whole.with("Name", R"("")")},
        {"ByName", whole.with("ByName", R"("Name")")},
        {"OS", whole.with("OS", R"("")")},
        {"Version", whole.with("Version", R"("")")},
        {"NetStatus", whole.with("NetStatus", R"("")")},
        {"LinkStatus", whole.with("NetStatus", R"("NULL")")},
        {"NetMonopoly", whole.with("NetMonopoly", R"("")")},
        {"AccessType", whole.with("AccessType", R"("NULL")")},
        {"AccessEnable", whole.with("AccessEnable", R"("NULL")")},
        {"AccessTime", whole.with("AccessTime", R"("")")},
        {"UpSpeed", whole.with("UpSpeed", R"("NULL")")},
        {"DownSpeed", whole.with("DownSpeed", R"("NULL")")},
        {"ip", whole.with("ip", R"("")")},
        {"SpeedLimit", whole.with("SpeedLimit", R"("NULL")")},
        {"DownLimit", whole.with("DownLimit", R"("NULL")")},
        {"UpLimit", whole.with("UpLimit", R"("NULL")")},
        {"GreennetProtectEnable", whole.with("GreennetProtectEnable", R"("NULL")")},
        {"dbm", whole.with("dbm", R"("NULL")")},
        {"StaticDhcpEnable", whole.with("StaticDhcpEnable", R"("NULL")")},
        {"AccessCode", whole},
        {"SSIDIndex", whole},
    };
    ASSERT_EQ(cases.size(), kAttachedDevice.size());
    for (const auto &[key, request] : cases) {
        device = attached_device();
        fill_places(&device, select(kAttachedDevice, {key}),
                    [](const Place &) { return std::string("NULL"); });
        EXPECT_EQ(devices(), "[" + request.json() + "]") << key;
        g_dev_num = 0;
    }
}

TEST_F(GetTslinkTopologyInfoDeviceValues, ReplacesNullOnlyByItsExactText)
{
    for (const char *text : {"", "null", "NUL", "NULLx", " NULL"}) {
        device = attached_device();
        for (const char *key : {"Mac", "DevType", "DevFactory", "OS", "NetStatus", "NetMonopoly"}) {
            fill_places(&device, select(kAttachedDevice, {key}),
                        [](const Place &) -> std::string { return ""; });
            memcpy(reinterpret_cast<char *>(&device) + select(kAttachedDevice, {key})[0].offset,
                   text, strlen(text));
        }
        EXPECT_EQ(devices(), "[" + reported().with("Mac", quoted(text)).json() + "]") << text;
    }
}

TEST_F(GetTslinkTopologyInfoDeviceValues, HasACodeForTheTypeOfDevice)
{
    const std::pair<const char *, const char *> kinds[] = {
        {"Computer", "3"}, {"Phone", "0"}, {"computer", "0"}, {"Computers", "0"},
        {"Compute", "0"},  {"", "0"},      {"3", "0"},        {"NULL", ""}};
    for (const auto &[kind, code] : kinds) {
        put(device.DevType, kind);
        EXPECT_EQ(value("DevType"), code) << kind;
        EXPECT_EQ(value("DevModle"), *code != '\0' ? "3" : "") << kind;
    }
}

TEST_F(GetTslinkTopologyInfoDeviceValues, HasTheHostNameWithoutAnotherName)
{
    put(device.ByName, "");
    EXPECT_EQ(value("ByName"), "Name");
    fill(device.Name); // unterminated
    EXPECT_EQ(value("ByName"), text_of_length(32));
    put(device.Name, "NULL");
    EXPECT_EQ(value("ByName"), "NULL");
    EXPECT_EQ(value("Name"), "");
    put(device.ByName, "NULL");
    EXPECT_EQ(value("ByName"), "NULL");
    put(device.ByName, "null");
    EXPECT_EQ(value("ByName"), "null");
    put(device.ByName, "B");
    EXPECT_EQ(value("ByName"), "B");
}

// ---- Elapsed time ------------------------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoDeviceValues, HasTheTimeThatHasPassed)
{
    const std::pair<std::string, std::string> times[] = {
        {std::to_string(kNow), "0"},
        {std::to_string(kNow + 5), "-5"},
        {"", std::to_string(kNow)},
        {"yesterday", std::to_string(kNow)},
        {"0", std::to_string(kNow)},
        {" 1767225500 s", "100"},
        {"-100", std::to_string(kNow + 100)},
        {"-2147483648", "-380258048"},                     // exceeds 32 bits
        {"4294967296", std::to_string(kNow)},              // the same in 32 bits
        {"9223372036854775807", std::to_string(kNow + 1)}, // likewise
        {"99999999999999999999999999999999", std::to_string(kNow + 1)},
        {"-99999999999999999999999999999999", std::to_string(kNow)},
    };
    for (const auto &[start, elapsed] : times) {
        put(device.AccessTime, start.substr(0, 32));
        EXPECT_EQ(value("AccessTime"), elapsed) << start;
    }
}

TEST_F(GetTslinkTopologyInfoDeviceValues, CorrectsLocalTimesByTheZone)
{
    const std::pair<int32_t, std::string> zones[] = {
        {0, "100"}, {8, "-28700"}, {-5, "18100"}, {INT_MAX, "3700"}, {INT_MIN, "100"}};
    for (const auto &[hours, elapsed] : zones) {
        zone_is(hours);
        time_type_is(1);
        EXPECT_EQ(value("AccessTime"), elapsed) << hours;
        for (const int32_t type : {0, 2, -1}) {
            time_type_is(type);
            EXPECT_EQ(value("AccessTime"), "100") << hours;
        }
    }
    time_type_is(1);
    when<devapi_get_local_timezone>([](int32_t *hours) {
        EXPECT_EQ(*hours, 0);
        *hours = 8;
        return -1;
    });
    EXPECT_EQ(value("AccessTime"), "-28700") << "what the call left is used";
}

TEST_F(GetTslinkTopologyInfoDeviceValues, ReadsNoZoneWithoutATime)
{
    put(device.AccessTime, "NULL");
    devices();
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_dev_tol_num", "dev_is_exist", "devapi_get_ad_base_info"}));
}

} // namespace topology_device_values_test
