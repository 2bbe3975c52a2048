// Which devices attached to the main router are in the topology report.
#include "topology_devices_fixture.h"

namespace topology_devices_test {

using recording_device::when;

class TopologyDevicesTest : public TopologyDevices {};

// ---- The walk ----------------------------------------------------------------------------------

TEST_F(TopologyDevicesTest, HasEachDeviceKeyByKey)
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

TEST_F(TopologyDevicesTest, AsksForEachDeviceWithKindAndIndexAlone)
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
        EXPECT_EQ(
            given_to("devapi_get_ad_base_info", 0),
            (Names{recording_device::contents(&asked[0]), recording_device::contents(&asked[1])}));
    }
}

TEST_F(TopologyDevicesTest, ReadsNoFurtherThanTheFieldsOfADevice)
{
    fill_places(&device, kAttachedDevice, brim_of);
    EXPECT_EQ(devices(), "[" +
                             reported(brim_of)
                                 .with("NetStatus", quoted(text_of_length(8)))
                                 .with("AccessTime", quoted(std::to_string(kNow)))
                                 .json() +
                             "]");
}

TEST_F(TopologyDevicesTest, FailsWithTheCount)
{
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        recording_host::reset();
        when<devapi_get_dev_tol_num>([failure](int32_t *count, intptr_t) {
            *count = 3;
            return failure;
        });
        EXPECT_EQ(devices(), "[]");
        EXPECT_EQ(result, failure);
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "get total limit fail ret=" + std::to_string(failure) + "\n"}}));
    }
    EXPECT_EQ(given_to("dev_is_exist", 0), Names());
}

TEST_F(TopologyDevicesTest, HasNoneForACountBelowOne)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        devices_are(count);
        EXPECT_EQ(devices(), "[]");
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(given_to("dev_is_exist", 0), Names());
}

TEST_F(TopologyDevicesTest, SkipsWhatElseStandsFor)
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

TEST_F(TopologyDevicesTest, AreCountedFromZero)
{
    EXPECT_EQ(counts_at_start, (std::pair<int32_t, int32_t>{0, 0}));
}

TEST_F(TopologyDevicesTest, SkipsAFreePlaceSilently)
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

TEST_F(TopologyDevicesTest, EndsAtADeviceThatCannotBeRead)
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
        const LogLines lines = recording_host::log_lines();
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[1].level, 3);
        EXPECT_TRUE(is_line_of("smart_router_service/topology_report.cpp",
                               "get ad base fail ret=" + std::to_string(failure) + "\n",
                               lines[1].text))
            << lines[1].text;
    }
}

TEST_F(TopologyDevicesTest, HandsItsArgumentOnAsWideAsAPointer)
{
    for (const intptr_t argument : {INTPTR_MAX, INTPTR_MIN, intptr_t{-1}}) {
        recording_device::reset();
        const Json array = parse("[]");
        cJSON *list = array.get();
        EXPECT_EQ(put_to_json(&list, argument, 1), 0);
        EXPECT_EQ(given_to("devapi_get_dev_tol_num", 1), Names{std::to_string(argument)});
    }
}

TEST_F(TopologyDevicesTest, StopsAfterThirtyTwo)
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

TEST_F(TopologyDevicesTest, CountsOnAcrossCalls)
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

TEST_F(TopologyDevicesTest, CountNoFurtherThanANumberGoes)
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

TEST_F(TopologyDevicesTest, OfNoArrayAreNone)
{
    EXPECT_EQ(put_to_json(nullptr, 0, 1), -1);
    cJSON *none = nullptr;
    EXPECT_EQ(put_to_json(&none, 0, 1), -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- In the report -----------------------------------------------------------------------------

TEST_F(TopologyDevicesTest, AreCountedAnewInEachReport)
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

TEST_F(TopologyDevicesTest, AreLeftOutOfTheReportWhenOneCannotBeRead)
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

TEST_F(TopologyDevicesTest, AreNoneInTheReportWhenTheCountFails)
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
