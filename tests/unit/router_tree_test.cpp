// SPDX-License-Identifier: MIT
// Child routers from the gateway's tree of parameters.
#include "memory_sweep.h"
#include "mesh_fixture.h"
#include "router_info.h"

#include <map>

namespace router_tree_test {

const std::string kTree = "InternetGatewayDevice.WiFi.MultiAP.APDevice";

class RouterTreeTest : public MeshTest {
  protected:
    RouterTreeTest()
    {
        bridge_mac_is("bridge");
        when<devapi_topo_xml_getinfo>([this](const char *path, char *value) {
            EXPECT_EQ(std::string(value, 32), std::string(32, '\0'));
            const auto found = tree.find(path);
            EXPECT_NE(found, tree.end()) << path;
            if (found != tree.end()) {
                memcpy(value, found->second.c_str(),
                       std::min<size_t>(found->second.size() + 1, 32));
            }
            return path == failing ? failure_code : 0;
        });
        entries_are("1");
        entry_is(1);
        record_is(child_router());
    }

    void entries_are(const std::string &number) { tree[kTree + "NumberOfEntries"] = number; }
    void entry_is(int position, const std::string &parent = "parent",
                  const std::string &active = "1", const std::string &mac = "mac")
    {
        tree[parameter(position, "X_TS_ParentMACAddress")] = parent;
        tree[parameter(position, "X_TS_Active")] = active;
        tree[parameter(position, "MACAddress")] = mac;
    }
    static std::string parameter(int position, const std::string &name)
    {
        return kTree + "." + std::to_string(position) + "." + name;
    }
    static void record_is(const ChildRouterInfo &record)
    {
        writes<devapi_get_node_dev_info_by_newmetod>(record);
    }
    static void children_are(const std::string &mac, int32_t count, int32_t answer = 0)
    {
        when<devapi_get_child_mesh_info_bynewmethod>([=](const char *, ChildMeshList *list) {
            for (ChildMeshInfo &child : list->children) {
                put(child.Mac, mac);
                put(child.ChildMac, "not read");
            }
            list->count = count;
            return answer;
        });
    }

    // The child router as it is reported, with its part of the mesh.
    static std::string reported(const std::string &mesh_key, const std::string &mesh,
                                std::string (*text)(const Place &) = value_of,
                                const std::string &parent = "ParentMac",
                                const std::string &stations = "[]")
    {
        const std::pair<const char *, const char *> keys[] = {
            {"Mac", "Mac"},
            {"ip", "ip"},
            {"AccessType", "ChildRouterAccessType"},
            {"LinkSpeed", "LinkSpeed"},
            {"dbm", "dbm"},
            {"FWVersion", "FWVersion"},
            {"RouterDeviceID", "RouterDeviceID"},
            {"Name", "Name"},
            {"NetStatus", "NetStatus"},
            {"ChildRouterAccessType", "ChildRouterAccessType"},
            {"UpSpeed", "UpSpeed"},
            {"DownSpeed", "DownSpeed"},
            {"FWDATA", "FWDATA"},
            {"HWVersion", "HWVersion"},
            {"AreaCode", "AreaCode"},
            {"UpTime", "UpTime"},
            {"DeviceType", "DeviceType"},
            {"Wlan0Mac", "Wlan0Mac"},
            {"Wlan1Mac", "Wlan1Mac"},
            {"ip", "ip"}, // a second time
        };
        Request::Keys list;
        for (const auto &[key, place] : keys) {
            list.emplace_back(key, quoted(text(select(kChildRouterRecord, {place})[0])));
        }
        list.emplace_back("ParentMacAddress", quoted(parent));
        list.emplace_back(mesh_key, mesh);
        list.emplace_back("ChildBaseInfo", stations);
        return Request(list).json();
    }
    static std::string list(const std::string &routers)
    {
        return R"({"ChildRouter":[)" + routers + "]}";
    }

    std::string routers() { return report(json_get_topo_router_agent_info_bynewmethod); }

    std::map<std::string, std::string> tree;
    std::string failing;
    int32_t failure_code = 0;
};

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

TEST_F(RouterTreeTest, ReadsTheNumberThatTheCountBeginsWith)
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

TEST_F(RouterTreeTest, SkipsAllButChildRoutersThatAreUp)
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

TEST_F(RouterTreeTest, HasTheOnlyOneOfThreeThatIsUp)
{
    entries_are("3");
    entry_is(1, "NULL");
    entry_is(2);
    entry_is(3, "parent", "0");
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]")));
    EXPECT_EQ(given_to("devapi_get_node_dev_info_by_newmetod", 0), Names{parameter(2, "")});
}

TEST_F(RouterTreeTest, HasNoListIfAParameterCannotBeRead)
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
            EXPECT_EQ(recording_host::log_lines().size(), 1u);
            expect_last_error("router_tree.cpp", "get dev active fail ret=" + std::to_string(code));
        }
    }
}

// ---- One child router --------------------------------------------------------------------------

class RouterTreeRouterTest : public RouterTreeTest {};

TEST_F(RouterTreeRouterTest, ReadsNoFurtherThanTheFieldsOfAChildRouter)
{
    ChildRouterInfo record = {};
    fill_places(&record, kChildRouterRecord, full_text_of);
    record_is(record);
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", full_text_of, text_of_length(32))));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info_bynewmethod", 0), Names{text_of_length(64)});
}

TEST_F(RouterTreeRouterTest, ReportsTheRecordThatAFailedCallLeft)
{
    for (const int32_t answer : {-1, 1, 1000}) {
        when<devapi_get_node_dev_info_by_newmetod>(
            [=](const char *, ChildRouterInfo *) { return answer; });
        EXPECT_EQ(routers(),
                  list(reported(
                      "ChildInfo", "[]", [](const Place &) { return std::string(); }, "")));
        when<devapi_get_node_dev_info_by_newmetod>(
            [=](const char *, ChildRouterInfo *info) { return spoil(info, answer); });
        EXPECT_EQ(routers(), list(reported(
                                 "ChildInfo", "[]",
                                 [](const Place &place) { return std::string(place.width, '1'); },
                                 std::string(32, '1'))));
    }
}

TEST_F(RouterTreeRouterTest, FindsTheMainRouterAsParentInAnyCase)
{
    ChildRouterInfo record = child_router();
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        EXPECT_EQ(std::string(mac, 32), std::string(32, '\0'));
        strcpy(mac, "our own");
        return 0;
    });
    for (const char *parent : {"bridge", "BRIDGE", "BridgE"}) {
        put(record.ParentMac, parent);
        record_is(record);
        EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, "our own"))) << parent;
    }
    EXPECT_EQ(given_to("devapi_get_iotagtd_device_mac", 1), Names(3, "32"));
    for (const char *parent : {"", "bridg", "bridges", "NULL"}) {
        put(record.ParentMac, parent);
        record_is(record);
        EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, parent))) << parent;
    }
    EXPECT_EQ(given_to("devapi_get_iotagtd_device_mac", 1).size(), 3u);
    writes<devapi_get_iotagtd_device_mac>("left behind", -1);
    put(record.ParentMac, "bridge");
    record_is(record);
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, "left behind")));
    when<devapi_get_iotagtd_device_mac>([](char *, int32_t) { return -1; });
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, "")));
}

TEST_F(RouterTreeRouterTest, HasTheStationsOfAChildRouter)
{
    when<devapi_get_node_sta_info_by_newmetod>([](StationList *list, const char *) {
        list->count = 1;
        put(list->stations[0].Mac, "station");
        put(list->stations[0].AccessTime, std::to_string(kNow));
        return 0;
    });
    const std::string text = routers();
    EXPECT_NE(text.find(R"("ChildBaseInfo":[{"Mac":"station","DevType":)"), std::string::npos)
        << text;
}

// ---- The mesh of a child router ----------------------------------------------------------------

TEST_F(RouterTreeRouterTest, HasTheChildrenOfAChildRouterInMostAreas)
{
    children_are("child", 2);
    mesh_type_is(2);
    for (const char *code : {"", "arven", "Kolm", "SEDRAN", "TH_OLV", "NULL"}) {
        area_code_is(code);
        EXPECT_EQ(routers(),
                  list(reported("ChildInfo", R"([{"childMac":"child"},{"childMac":"child"}])")))
            << code;
    }
    when<devapi_get_basic_area_code>([](char *, int32_t) { return -1; });
    EXPECT_EQ(routers(),
              list(reported("ChildInfo", R"([{"childMac":"child"},{"childMac":"child"}])")));
    EXPECT_EQ(given_to("devapi_get_mesh_type", 0), Names());
}

TEST_F(RouterTreeRouterTest, HasThirtyTwoChildrenOfAChildRouterAtMost)
{
    const std::pair<int32_t, int> counts[] = {{0, 0},   {-1, 0},  {INT_MIN, 0},
                                              {32, 32}, {33, 32}, {INT_MAX, 32}};
    for (const auto &[given, listed] : counts) {
        children_are(text_of_length(32), given);
        const Json object = parse(routers());
        const cJSON *children = cJSON_GetObjectItem(
            cJSON_GetArrayItem(cJSON_GetObjectItem(object.get(), "ChildRouter"), 0), "ChildInfo");
        EXPECT_EQ(cJSON_GetArraySize(children), listed) << given;
        if (listed > 0) {
            EXPECT_EQ(print(cJSON_GetArrayItem(children, 31)),
                      R"({"childMac":)" + quoted(text_of_length(32)) + "}");
        }
    }
    for (const int32_t failure : {-1, 1, 1000}) {
        children_are("child", 2, failure); // what the call left is reported
        EXPECT_EQ(routers(),
                  list(reported("ChildInfo", R"([{"childMac":"child"},{"childMac":"child"}])")));
        children_are("child", 0, failure);
        EXPECT_EQ(routers(), list(reported("ChildInfo", "[]")));
    }
}

TEST_F(RouterTreeRouterTest, UsesTheAreaCodeThatAFailedCallLeft)
{
    writes<devapi_get_basic_area_code>("ARVEN", -1);
    EXPECT_NE(routers().find(R"("MeshInfo":)"), std::string::npos);
}

TEST_F(RouterTreeRouterTest, HasTheLinksOfAChildRouterInThreeAreas)
{
    ChildRouterInfo record = child_router();
    record.link_count = 2;
    for (MeshLink &link : record.links) {
        put(link.nexthopMAC, "hop");
        put(link.interface, "ath0");
        fill(link.dbm);
    }
    record_is(record);
    const std::string link =
        R"({"nexthopMAC":"hop","dbm":)" + quoted(text_of_length(16)) + R"(,"interface":"ath0"})";
    for (const char *code : {"ARVEN", "KOLM", "SEDRANO", "xxARVENyy", "xKOLMy", "xSEDRANOy"}) {
        area_code_is(code);
        EXPECT_EQ(routers(), list(reported("MeshInfo", "[" + link + "," + link + "]"))) << code;
    }
    EXPECT_EQ(given_to("devapi_get_child_mesh_info_bynewmethod", 0), Names());
    when<devapi_get_basic_area_code>([](char *code, int32_t) {
        memset(code, 'x', 28);
        memcpy(code + 28, "KOLM", 4); // ends without a NUL
        return 0;
    });
    EXPECT_EQ(routers(), list(reported("MeshInfo", "[" + link + "," + link + "]")));
    for (const int32_t count : {0, -1, INT_MIN}) {
        record.link_count = count;
        record_is(record);
        EXPECT_EQ(routers(), list(reported("MeshInfo", "[]")));
    }
    record.link_count = INT_MAX;
    record_is(record);
    const Json object = parse(routers());
    EXPECT_EQ(
        cJSON_GetArraySize(cJSON_GetObjectItem(
            cJSON_GetArrayItem(cJSON_GetObjectItem(object.get(), "ChildRouter"), 0), "MeshInfo")),
        8);
}

// Without memory for the parent's address there is no report.
TEST_F(RouterTreeRouterTest, ReportsNoChildRouterWithoutItsParent)
{
    const auto below = [] {
        when<devapi_topo_xml_getinfo>([](const char *path, char *value) {
            strcpy(value, strstr(path, "NumberOfEntries") != nullptr ? "2" : "1");
            return 0;
        });
        ChildRouterInfo record = {};
        put(record.ParentMac, "another");
        record_is(record);
    };
    const auto act = [](cJSON *object) {
        json_get_topo_router_agent_info_bynewmethod(object);
    };
    sweep_memory(act, "{}", below, [](const std::string &object, auto) {
        const Json report = parse(object);
        const cJSON *router;
        cJSON_ArrayForEach(router, cJSON_GetObjectItem(report.get(), "ChildRouter"))
        {
            EXPECT_TRUE(cJSON_HasObjectItem(router, "ParentMacAddress")) << object;
        }
    });
}

// The first router without memory for a part of it ends the report; only the list of its stations
// may be missing.
TEST_F(RouterTreeRouterTest, LogsThatThereIsNoMemoryForAChildRouter)
{
    const auto two_with_a_child = [] {
        when<devapi_topo_xml_getinfo>([](const char *path, char *value) {
            strcpy(value, strstr(path, "NumberOfEntries") != nullptr ? "2" : "1");
            return 0;
        });
        children_are("child", 1);
    };
    const auto act = [this](cJSON *object) {
        result = json_get_topo_router_agent_info_bynewmethod(object);
    };
    const LogLine error = {3, "create childinfo_json err"};
    sweep_memory(act, "{}", two_with_a_child, [&](const std::string &object, auto) {
        const LogLines lines = recording_host::log_lines();
        const bool is_reported = object != "{}";
        EXPECT_EQ(result, is_reported ? 0 : -1);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), error), is_reported ? 0 : 1);
        EXPECT_EQ(object.find(R"("childMac":"child")") != std::string::npos, is_reported);
    });
}

TEST_F(RouterTreeRouterTest, AddsNothingWithoutAnObject)
{
    EXPECT_EQ(report(json_get_topo_router_agent_info_bynewmethod, "[]"), "[]");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(json_get_topo_router_agent_info_bynewmethod(nullptr), -1);
}

} // namespace router_tree_test
