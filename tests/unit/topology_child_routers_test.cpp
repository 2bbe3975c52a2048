// SPDX-License-Identifier: MIT
// The child routers in the topology report.
#include "memory_sweep.h"
#include "topology_fixture.h"

namespace topology_child_routers_test {

class GetTslinkTopologyInfoChildRouters : public TopologyChildRouters {};

// ---- json_get_child_router_topo_info -----------------------------------------------------------

TEST_F(GetTslinkTopologyInfoChildRouters, AreListedWithTheirStations)
{
    child_routers_are({7, -3});
    stations_are({5}, 1);
    station_is(attached_device());
    const std::string object = with_stations("[" + station().json() + "]");
    EXPECT_EQ(routers(), "[" + object + "," + object + "]");
    EXPECT_EQ(result, 0);
    const Names each = {"devapi_get_childrouter_info", "devapi_get_devicemodel",
                        "devapi_get_childsta_list", "devapi_get_childsta_base_info",
                        "devapi_get_local_timezone"};
    Names all = {"devapi_get_childrouter_list", "devapi_call_tslink_set_topo_speed"};
    all.insert(all.end(), each.begin(), each.end());
    all.insert(all.end(), each.begin(), each.end());
    EXPECT_EQ(recording_device::called_functions(), all);
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names(2, std::string(1100, '\0')));
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 1), (Names{"7", "-3"}));
    EXPECT_EQ(given_to("devapi_get_childsta_list", 1), (Names{"Mac", "Mac"}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreThoseThatAFailedCallLeftInTheList)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        child_routers_are({7}, count);
        EXPECT_EQ(routers(), "[]");
        EXPECT_EQ(result, 0);
    }
    when<devapi_get_childrouter_list>([](ChildRouterList *) { return -1; });
    EXPECT_EQ(routers(), "[]");
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names());
    EXPECT_EQ(recording_device::called_functions().back(), "devapi_call_tslink_set_topo_speed");
    for (const int32_t failure : {-1, 1, 1000}) {
        recording_device::reset();
        when<devapi_get_childrouter_list>(
            [=](ChildRouterList *list) { return spoil(list, failure); });
        const Json array = parse(routers());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 8);
        EXPECT_EQ(given_to("devapi_get_childrouter_info", 1), Names(8, "825307441"));
    }
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreNoneWithoutAnArray)
{
    EXPECT_EQ(json_get_child_router_topo_info(nullptr), -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreEightAtMost)
{
    for (const int32_t count : {9, INT_MAX}) {
        child_routers_are({1, 2, 3, 4, 5, 6, 7, 8}, count);
        const Json array = parse(routers());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 8);
    }
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 1).back(), "8");
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreListedEvenIfTheSpeedsAreNotUpdated)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        recording_host::reset();
        when<devapi_call_tslink_set_topo_speed>([=] { return failure; });
        EXPECT_EQ(routers(), "[" + with_stations("[]") + "]");
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "call tslink set topo speed failed!\n"}}));
    }
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreLeftOutWhenTheyCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        for (const int32_t position : {0, 1, 2}) {
            recording_host::reset();
            child_routers_are({0, 1, 2});
            unreadable_child_router_is(position, failure);
            EXPECT_EQ(routers(), "[" + with_stations("[]") + "," + with_stations("[]") + "]");
            EXPECT_EQ(result, 0);
            EXPECT_EQ(
                recording_host::log_lines(),
                (LogLines{{3, "get child_router_info err " + std::to_string(failure) + "\n"}}));
        }
    }
}

TEST_F(GetTslinkTopologyInfoChildRouters, LogThatThereIsNoMemoryForOne)
{
    const auto with_a_station = [] {
        child_routers_are({7});
        child_router_is(child_router());
        stations_are({5}, 1);
    };
    const auto act = [this](cJSON *array) {
        result = json_get_child_router_topo_info(array);
    };
    sweep_memory(act, "[]", with_a_station, [this](const std::string &array, auto) {
        if (array != "[]") {
            EXPECT_EQ(array, "[" + with_stations("[]") + "]");
            EXPECT_EQ(result, 0);
            EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "create child_sta_itme err\n"}}));
        } else if (result == 0) {
            EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "create child_array err!\n"}}));
        } else {
            EXPECT_EQ(result, -1);
            EXPECT_EQ(recording_host::log_lines(),
                      (LogLines{{3, "create child_router_itme err\n"}}));
        }
    });
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreListedAfterOneWithoutMemoryForItsStations)
{
    const auto two_routers = [] {
        child_routers_are({7, 3});
        child_router_is(child_router());
    };
    const auto act = [this](cJSON *array) {
        result = json_get_child_router_topo_info(array);
    };
    int without_list = 0;
    sweep_memory(act, "[]", two_routers, [&](const std::string &array, FailingMemory::Fail how) {
        if (result == 0 && how == FailingMemory::Fail::kOnce) {
            EXPECT_EQ(array, "[" + with_stations("[]") + "]");
            ++without_list;
        }
    });
    EXPECT_EQ(without_list, 2);
}

TEST_F(GetTslinkTopologyInfoChildRouters, PassAMacWithoutANul)
{
    ChildRouterInfo record = child_router();
    fill(record.Mac);
    child_router_is(record);
    routers();
    EXPECT_EQ(given_to("devapi_get_childsta_list", 1), Names{text_of_length(64)});
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreInTheWholeReport)
{
    stations_are({5}, 1);
    station_is(attached_device());
    const std::string object = with_stations("[" + station().json() + "]");
    const std::string reply = run("GET_TSLINK_TOPOLOGY_INFO");
    const std::string end = R"(,"ChildRouter":[)" + object + R"(],"Status":"0"})";
    ASSERT_GT(reply.size(), end.size());
    EXPECT_EQ(reply.substr(reply.size() - end.size()), end);
}

// ---- json_insert_childrouter_info --------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoChildRouters, ReportNoFurtherThanTheirFields)
{
    ChildRouterInfo record = child_router();
    EXPECT_EQ(router(record), expected(kRouterPlaces).json());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(given_to("devapi_get_devicemodel", 1), Names{"31"});
    fill_places(&record, kChildRouterRecord, full_text_of);
    EXPECT_EQ(router(record), expected(kRouterPlaces, full_text_of).json());
}

TEST_F(GetTslinkTopologyInfoChildRouters, HaveLinksForTheOperatorsModelInAnyCase)
{
    ChildRouterInfo record = child_router();
    record.link_count = 2;
    for (MeshLink &link : record.links) {
        const std::string number = std::to_string(&link - record.links);
        put(link.nexthopMAC, "hop" + number);
        put(link.interface, "ath" + number);
        put(link.dbm, "-5" + number);
    }
    for (const char *model : {"", "QX3060", "QX2040", "QX2040B2"}) {
        model_is(model);
        EXPECT_EQ(router(record), expected(kRouterPlaces).json()) << model;
    }
    const Request with_links = expected(kRouterPlaces)
                                   .with("MeshInfo", R"([{"nexthopMAC":"hop0","dbm":"-50",)"
                                                     R"("interface":"ath0"},{"nexthopMAC":"hop1",)"
                                                     R"("dbm":"-51","interface":"ath1"}])");
    for (const char *model : {"QX2040B", "qx2040b", "Qx2040B"}) {
        model_is(model);
        EXPECT_EQ(router(record), with_links.json()) << model;
    }
    child_router_is(record);
    EXPECT_EQ(routers(), "[" + with_stations("[]", with_links) + "]");
    writes<devapi_get_devicemodel>("QX2040B", -1);
    EXPECT_EQ(router(record), with_links.json());
    when<devapi_get_devicemodel>([](char *, int32_t) { return -1; });
    EXPECT_EQ(router(record), expected(kRouterPlaces).json());
}

TEST_F(GetTslinkTopologyInfoChildRouters, HaveEightLinksAtMost)
{
    model_is("qx2040b");
    ChildRouterInfo record = {};
    for (MeshLink &link : record.links) {
        fill(link.nexthopMAC);
        fill(link.interface);
        fill(link.dbm);
    }
    const std::pair<int32_t, int> counts[] = {{0, 0}, {-1, 0}, {INT_MIN, 0}, {1, 1},
                                              {8, 8}, {9, 8},  {INT_MAX, 8}};
    for (const auto &[count, links] : counts) {
        record.link_count = count;
        const Json object = parse(router(record));
        const cJSON *list = cJSON_GetObjectItem(object.get(), "MeshInfo");
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(cJSON_GetArraySize(list), links) << count;
        if (links > 0) {
            EXPECT_EQ(print(cJSON_GetArrayItem(list, links - 1)),
                      R"({"nexthopMAC":")" + text_of_length(32) + R"(","dbm":")" +
                          text_of_length(16) + R"(","interface":")" + text_of_length(24) + R"("})");
        }
    }
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreNothingWithoutAnArgument)
{
    const ChildRouterInfo record = child_router();
    EXPECT_EQ(json_insert_childrouter_info(nullptr, &record), -1);
    EXPECT_EQ(report([](cJSON *object) { return json_insert_childrouter_info(object, nullptr); }),
              "{}");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "child_router_info is NULL\n"}));
}

TEST_F(GetTslinkTopologyInfoChildRouters, AreNothingWithoutMemory)
{
    const ChildRouterInfo record = child_router();
    sweep_memory([&](cJSON *object) { result = json_insert_childrouter_info(object, &record); },
                 "{}", [] {},
                 [this](const std::string &object, auto) {
                     EXPECT_EQ(object, "{}");
                     EXPECT_EQ(result, -1);
                 });
}

} // namespace topology_child_routers_test

// The stations of the child routers in the topology report.
namespace topology_stations_test {

class GetTslinkTopologyInfoStations : public TopologyChildRouters {};

// ---- json_get_childsta_info --------------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoStations, AreReadByTheirIndexAlone)
{
    stations_are({5, -9}, 2);
    station_is(attached_device());
    EXPECT_EQ(stations(), "[" + station().json() + "," + station().json() + "]");
    EXPECT_EQ(given_to("devapi_get_childsta_list", 0), Names{std::string(260, '\0')});
    EXPECT_EQ(given_to("devapi_get_childsta_list", 1), Names{"the mac"});
    AdBaseInfo first = {};
    first.HostIndex = 5;
    AdBaseInfo second = {};
    second.HostIndex = -9;
    EXPECT_EQ(given_to("devapi_get_childsta_base_info", 0),
              (Names{contents(&first), contents(&second)}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetTslinkTopologyInfoStations, AreThoseThatAFailedCallLeftInTheList)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        stations_are({5}, count);
        EXPECT_EQ(stations(), "[]");
    }
    when<devapi_get_childsta_list>([](ChildStationList *, const char *) { return -1; });
    EXPECT_EQ(stations(), "[]");
    EXPECT_EQ(recording_device::called_functions(), Names(4, "devapi_get_childsta_list"));
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_childsta_list>(
            [=](ChildStationList *list, const char *) { return spoil(list, failure); });
        const Json array = parse(stations());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 64);
    }
}

TEST_F(GetTslinkTopologyInfoStations, AreSixtyFourAtMost)
{
    for (const int32_t count : {64, 65, INT_MAX}) {
        stations_are(std::vector<int32_t>(64, 3), count);
        const Json array = parse(stations());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 64);
    }
    EXPECT_EQ(given_to("devapi_get_childsta_base_info", 0).size(), 3u * 64);
}

TEST_F(GetTslinkTopologyInfoStations, LeaveOutOneThatCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        for (const int32_t position : {0, 1, 2}) {
            recording_host::reset();
            stations_are({0, 1, 2}, 3);
            when<devapi_get_childsta_base_info>([=](AdBaseInfo *info) {
                const bool fails = info->HostIndex == position;
                *info = attached_device();
                return fails ? spoil(info, failure) : 0;
            });
            EXPECT_EQ(stations(), "[" + station().json() + "," + station().json() + "]");
            EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "get ad_base info err\n"}}));
        }
    }
}

TEST_F(GetTslinkTopologyInfoStations, AreNoneWithoutAnArgument)
{
    json_get_childsta_info(nullptr, "the mac");
    EXPECT_EQ(stations(nullptr), "[]");
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "param is NULL\n"}));
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- json_insert_childsta_info -----------------------------------------------------------------

TEST_F(GetTslinkTopologyInfoStations, AreReportedKeyByKey)
{
    AdBaseInfo record = attached_device();
    EXPECT_EQ(station_object(&record), station().json());
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(record.AccessTime, "100");
    EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_local_timezone"});
    fill_places(&record, kAttachedDevice, full_text_of);
    EXPECT_EQ(station_object(&record),
              station(full_text_of).with("AccessTime", quoted(std::to_string(kNow))).json());
}

TEST_F(GetTslinkTopologyInfoStations, ReportNullUnchanged)
{
    AdBaseInfo record = {};
    fill_places(&record, kAttachedDevice, [](const Place &) { return std::string("NULL"); });
    EXPECT_EQ(station_object(&record), station([](const Place &) { return std::string("NULL"); })
                                           .with("AccessTime", quoted(std::to_string(kNow)))
                                           .json());
}

TEST_F(GetTslinkTopologyInfoStations, HaveTheHostNameWithoutAnotherName)
{
    AdBaseInfo record = attached_device();
    put(record.ByName, "");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("Name")").json());
    record = attached_device();
    put(record.ByName, "");
    fill(record.Name); // unterminated
    const std::string name = quoted(text_of_length(32));
    EXPECT_EQ(station_object(&record), station().with("Name", name).with("ByName", name).json());
    record = attached_device();
    put(record.ByName, "NULL");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("NULL")").json());
    record = attached_device();
    put(record.ByName, "B");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("B")").json());
}

TEST_F(GetTslinkTopologyInfoStations, CorrectTheTimeByTheZoneInAnyTimeType)
{
    const std::pair<int32_t, std::string> zones[] = {{8, R"("-28700")"}, {-5, R"("18100")"}};
    for (const auto &[hours, elapsed] : zones) {
        for (const int32_t type : {0, 1, 2}) {
            zone_is(hours);
            time_type_is(type);
            AdBaseInfo record = attached_device();
            EXPECT_EQ(station_object(&record), station().with("AccessTime", elapsed).json());
        }
    }
}

TEST_F(GetTslinkTopologyInfoStations, AreNotInsertedWithoutAnArgument)
{
    AdBaseInfo record = attached_device();
    EXPECT_EQ(json_insert_childsta_info(nullptr, &record), -1);
    EXPECT_EQ(station_object(nullptr), "{}");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(record.AccessTime, std::to_string(kNow - 100));
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "child_router_info is NULL\n"}));
}

TEST_F(GetTslinkTopologyInfoStations, AreNotInsertedWithoutMemory)
{
    AdBaseInfo record = {};
    sweep_memory([&](cJSON *object) { result = json_insert_childsta_info(object, &record); }, "{}",
                 [] {},
                 [this](const std::string &object, auto) {
                     EXPECT_EQ(object, "{}");
                     EXPECT_EQ(result, -1);
                 });
}

} // namespace topology_stations_test
