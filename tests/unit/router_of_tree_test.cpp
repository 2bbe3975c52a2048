// SPDX-License-Identifier: MIT
// One child router from the gateway's tree of parameters.
#include "memory_sweep.h"
#include "router_tree_fixture.h"

namespace router_of_tree_test {

class RouterOfTreeTest : public RouterTree {};

TEST_F(RouterOfTreeTest, ReadsNoFurtherThanTheFieldsOfAChildRouter)
{
    ChildRouterInfo record = {};
    fill_places(&record, kChildRouterRecord, full_text_of);
    record_is(record);
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", full_text_of, text_of_length(32))));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info_bynewmethod", 0), Names{text_of_length(64)});
}

TEST_F(RouterOfTreeTest, HasAChildRouterAsTheDeviceLeavesItsRecord)
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

TEST_F(RouterOfTreeTest, HangsFromTheMainRouterByItsMacInAnyCase)
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
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        strcpy(mac, "left behind");
        return -1;
    });
    put(record.ParentMac, "bridge");
    record_is(record);
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, "left behind")));
    when<devapi_get_iotagtd_device_mac>([](char *, int32_t) { return -1; });
    EXPECT_EQ(routers(), list(reported("ChildInfo", "[]", value_of, "")));
}

TEST_F(RouterOfTreeTest, HasStationsOfAChildRouter)
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

TEST_F(RouterOfTreeTest, HasTheChildrenOfAChildRouterInMostAreas)
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

TEST_F(RouterOfTreeTest, HasThirtyTwoChildrenOfAChildRouterAtMost)
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
        children_are("child", 2, failure); // what the call leaves counts
        EXPECT_EQ(routers(),
                  list(reported("ChildInfo", R"([{"childMac":"child"},{"childMac":"child"}])")));
        children_are("child", 0, failure);
        EXPECT_EQ(routers(), list(reported("ChildInfo", "[]")));
    }
}

TEST_F(RouterOfTreeTest, GoesByTheAreaCodeAsTheDeviceLeavesIt)
{
    when<devapi_get_basic_area_code>([](char *code, int32_t) {
        strcpy(code, "ARVEN");
        return -1;
    });
    EXPECT_NE(routers().find(R"("MeshInfo":)"), std::string::npos);
}

TEST_F(RouterOfTreeTest, HasTheLinksOfAChildRouterInThreeAreas)
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

// A router below another one has memory for its parent's address, or there is no report.
TEST_F(RouterOfTreeTest, BelowAnotherIsNotReportedWithoutItsParent)
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
TEST_F(RouterOfTreeTest, IsLoggedWhenThereIsNoMemoryForIt)
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
    const recording_host::LogLine error = {3, "create childinfo_json err"};
    sweep_memory(act, "{}", two_with_a_child, [&](const std::string &object, auto) {
        const LogLines lines = recording_host::log_lines();
        const bool is_reported = object != "{}";
        EXPECT_EQ(result, is_reported ? 0 : -1);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), error), is_reported ? 0 : 1);
        EXPECT_EQ(object.find(R"("childMac":"child")") != std::string::npos, is_reported);
    });
}

TEST_F(RouterOfTreeTest, OfWhatIsNoObjectAddsNothing)
{
    EXPECT_EQ(report(json_get_topo_router_agent_info_bynewmethod, "[]"), "[]");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(json_get_topo_router_agent_info_bynewmethod(nullptr), -1);
}

} // namespace router_of_tree_test
