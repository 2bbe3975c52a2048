// SPDX-License-Identifier: MIT
// The stations of any router, in the agent's own reports.
#include "mesh_fixture.h"
#include "router_info.h"

namespace router_info_stations_test {

Request station(std::string (*text)(const Place &) = value_of)
{
    Places places = kAttachedDevice;
    places.push_back({"DevModle", 0, 32});
    return expected(select(places, {"Mac",          "DevType",     "DevFactory",
                                    "DevModle",     "Name",        "ByName",
                                    "NetStatus",    "NetMonopoly", "AccessType",
                                    "AccessEnable", "UpSpeed",     "DownSpeed",
                                    "ip",           "AccessTime",  "UID",
                                    "OS",           "Version",     "GreennetProtectEnable",
                                    "SpeedLimit",   "DownLimit",   "UpLimit"}),
                    text)
        .with("DevModle", R"("Tessaline")")
        .with("OS", R"("3")")
        .with("AccessTime", R"("100")");
}

class RouterInfoStationsTest : public MeshTest {
  protected:
    static void stations_are(const AdBaseInfo &station, int32_t count)
    {
        when<devapi_get_node_sta_info_by_newmetod>([=](StationList *list, const char *) {
            std::fill(std::begin(list->stations), std::end(list->stations), station);
            list->count = count;
            return 0;
        });
    }

    std::string stations(const char *which = "sub", const char *path = "the path")
    {
        return report([=](cJSON *object) { return json_get_router_sta_info(object, which, path); });
    }
    int count(const std::string &object)
    {
        const Json json = parse(object);
        return cJSON_GetArraySize(cJSON_GetObjectItem(json.get(), "ChildBaseInfo"));
    }
};

TEST_F(RouterInfoStationsTest, AreListedKeyByKey)
{
    stations_are(attached_device(), 2);
    EXPECT_EQ(stations(),
              R"({"ChildBaseInfo":[)" + station().json() + "," + station().json() + "]}");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(recording_device::called_functions()[0], "devapi_get_node_sta_info_by_newmetod");
    EXPECT_EQ(given_to("devapi_get_node_sta_info_by_newmetod", 0), Names{std::string(41988, '\0')});
    EXPECT_EQ(given_to("devapi_get_node_sta_info_by_newmetod", 1), Names{"the path"});
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(RouterInfoStationsTest, AreThoseOfTheMainRouterOrAChild)
{
    EXPECT_EQ(stations("main"), R"({"MainBaseInfo":[]})");
    for (const char *which : {"sub", "", "Main", "MAIN", "main ", "mai", "xmain"}) {
        EXPECT_EQ(stations(which), R"({"ChildBaseInfo":[]})") << which;
    }
    EXPECT_EQ(stations(nullptr), R"({"ChildBaseInfo":[]})");
}

TEST_F(RouterInfoStationsTest, AreNoneWithoutAPath)
{
    stations_are(attached_device(), 2);
    EXPECT_EQ(stations("sub", nullptr), R"({"ChildBaseInfo":[]})");
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(RouterInfoStationsTest, AreThirtyTwoAtMost)
{
    const std::pair<int32_t, int> counts[] = {{0, 0},   {-1, 0},  {INT_MIN, 0}, {1, 1},
                                              {31, 31}, {32, 32}, {33, 32},     {40, 32},
                                              {64, 32}, {65, 32}, {INT_MAX, 32}};
    for (const auto &[given, listed] : counts) {
        stations_are(attached_device(), given);
        EXPECT_EQ(count(stations()), listed) << given;
        EXPECT_EQ(result, 0);
    }
}

TEST_F(RouterInfoStationsTest, AreThoseThatAFailedCallLeftInTheList)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_node_sta_info_by_newmetod>(
            [=](StationList *, const char *) { return failure; });
        EXPECT_EQ(stations(), R"({"ChildBaseInfo":[]})");
        EXPECT_EQ(result, 0);
        when<devapi_get_node_sta_info_by_newmetod>([=](StationList *list, const char *) {
            spoil(list);
            put(list->stations[0].AccessTime, std::to_string(kNow - 100));
            list->count = 1;
            return failure;
        });
        const auto full = [](const Place &place) {
            return std::string(place.width, '1');
        };
        EXPECT_EQ(stations(), R"({"ChildBaseInfo":[)" + station(full).json() + "]}");
        EXPECT_EQ(result, 0);
    }
}

TEST_F(RouterInfoStationsTest, ReportNoFurtherThanTheirFieldsAndNullUnchanged)
{
    AdBaseInfo device = {};
    fill_places(&device, kAttachedDevice, full_text_of);
    stations_are(device, 1);
    EXPECT_EQ(stations(),
              R"({"ChildBaseInfo":[)" +
                  station(full_text_of).with("AccessTime", quoted(std::to_string(kNow))).json() +
                  "]}");
    fill_places(&device, kAttachedDevice, [](const Place &) { return std::string("NULL"); });
    stations_are(device, 1);
    EXPECT_EQ(stations(), R"({"ChildBaseInfo":[)" +
                              station([](const Place &) { return std::string("NULL"); })
                                  .with("AccessTime", quoted(std::to_string(kNow)))
                                  .json() +
                              "]}");
}

TEST_F(RouterInfoStationsTest, CorrectTheTimeByTheZoneInAnyTimeType)
{
    stations_are(attached_device(), 1);
    for (const int32_t type : {0, 1, 2}) {
        zone_is(8);
        time_type_is(type);
        EXPECT_EQ(stations(), R"({"ChildBaseInfo":[)" +
                                  station().with("AccessTime", R"("-28700")").json() + "]}");
    }
}

TEST_F(RouterInfoStationsTest, AddNothingWithoutAnObject)
{
    EXPECT_EQ(
        report([](cJSON *array) { return json_get_router_sta_info(array, "sub", "x"); }, "[]"),
        "[]");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(json_get_router_sta_info(nullptr, "sub", "x"), -1);
}

} // namespace router_info_stations_test
