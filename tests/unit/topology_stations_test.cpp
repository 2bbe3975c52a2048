// The stations of the child routers in the topology report.
#include "topology_child_routers_fixture.h"

namespace topology_stations_test {

using recording_device::when;

class TopologyStationsTest : public TopologyChildRouters {};

// ---- json_get_childsta_info --------------------------------------------------------------------

TEST_F(TopologyStationsTest, AskForEachStationByItsIndexAlone)
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
              (Names{recording_device::contents(&first), recording_device::contents(&second)}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(TopologyStationsTest, AreListedAsTheDeviceLeavesTheirList)
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

TEST_F(TopologyStationsTest, HaveSixtyFourStationsAtMost)
{
    for (const int32_t count : {64, 65, INT_MAX}) {
        stations_are(std::vector<int32_t>(64, 3), count);
        const Json array = parse(stations());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 64);
    }
    EXPECT_EQ(given_to("devapi_get_childsta_base_info", 0).size(), 3u * 64);
}

TEST_F(TopologyStationsTest, LeaveOutAStationThatCannotBeRead)
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

TEST_F(TopologyStationsTest, HaveNoStationsWithoutAnArgument)
{
    json_get_childsta_info(nullptr, "the mac");
    EXPECT_EQ(stations(nullptr), "[]");
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "param is NULL\n"}));
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- json_insert_childsta_info -----------------------------------------------------------------

TEST_F(TopologyStationsTest, HaveStationsKeyByKey)
{
    AdBaseInfo record = attached_device();
    EXPECT_EQ(station_object(&record), station().json());
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(record.AccessTime, "100");
    EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_local_timezone"});
    fill_places(&record, kAttachedDevice, brim_of);
    EXPECT_EQ(station_object(&record),
              station(brim_of).with("AccessTime", quoted(std::to_string(kNow))).json());
}

TEST_F(TopologyStationsTest, CopyNullAsItStands)
{
    AdBaseInfo record = {};
    fill_places(&record, kAttachedDevice, [](const Place &) { return std::string("NULL"); });
    EXPECT_EQ(station_object(&record), station([](const Place &) { return std::string("NULL"); })
                                           .with("AccessTime", quoted(std::to_string(kNow)))
                                           .json());
}

TEST_F(TopologyStationsTest, CallAStationByItsHostNameWithoutAnotherName)
{
    AdBaseInfo record = attached_device();
    put(record.ByName, "");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("Name")").json());
    record = attached_device();
    put(record.ByName, "");
    fill(record.Name); // without an end
    const std::string name = quoted(text_of_length(32));
    EXPECT_EQ(station_object(&record), station().with("Name", name).with("ByName", name).json());
    record = attached_device();
    put(record.ByName, "NULL");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("NULL")").json());
    record = attached_device();
    put(record.ByName, "B");
    EXPECT_EQ(station_object(&record), station().with("ByName", R"("B")").json());
}

TEST_F(TopologyStationsTest, CorrectTheTimeByTheZoneInAnyTimeType)
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

TEST_F(TopologyStationsTest, HaveNoStationWithoutAnArgument)
{
    AdBaseInfo record = attached_device();
    EXPECT_EQ(json_insert_childsta_info(nullptr, &record), -1);
    EXPECT_EQ(station_object(nullptr), "{}");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(record.AccessTime, std::to_string(kNow - 100));
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "child_router_info is NULL\n"}));
}

} // namespace topology_stations_test
