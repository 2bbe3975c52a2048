// The devices attached to the main router in the topology report.
#include "mesh_fixture.h"
#include "topology_report.h"

namespace {

using recording_device::when;

const Names kDeviceKeys = {"Mac",
                           "UID",
                           "DevType",
                           "DevFactory",
                           "DevModle",
                           "Name",
                           "ByName",
                           "OS",
                           "Version",
                           "NetStatus",
                           "NetMonopoly",
                           "AccessType",
                           "AccessEnable",
                           "AccessTime",
                           "UpSpeed",
                           "DownSpeed",
                           "ip",
                           "SpeedLimit",
                           "DownLimit",
                           "UpLimit",
                           "GreennetProtectEnable",
                           "dbm",
                           "StaticDhcpEnable"};

class TopologyDevicesTest : public MeshTest {
  protected:
    TopologyDevicesTest()
    {
        g_dev_num = 0;
        g_active_num = 0;
        devices_are(1);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
    }

    static void devices_are(int32_t number)
    {
        when<devapi_get_dev_tol_num>([number](int32_t *count, int32_t) {
            EXPECT_EQ(*count, 0);
            *count = number;
            return 0;
        });
    }

    // The device as it is reported.
    static Request reported(std::string (*text)(const Place &) = value_of)
    {
        Places places = kAttachedDevice;
        places.push_back({"DevModle", 0, 32});
        return expected(select(places, kDeviceKeys), text)
            .with("DevType", R"("0")")
            .with("DevFactory", R"("unknow")")
            .with("DevModle", R"("3")")
            .with("OS", R"("3")")
            .with("NetStatus", R"("LinkSta")")
            .with("NetMonopoly", R"("0")")
            .with("AccessTime", R"("100")");
    }

    std::string devices(int32_t kind = 1)
    {
        return report([=](cJSON *array) { return put_to_json(&array, 5, kind); }, "[]");
    }

    // The one device's value under the key.
    std::string value(const char *key)
    {
        const Json array = parse(devices());
        const cJSON *item = cJSON_GetObjectItem(cJSON_GetArrayItem(array.get(), 0), key);
        return item != nullptr ? item->valuestring : "(none)";
    }

    AdBaseInfo device = attached_device();
};

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
                                 .with("NetStatus", quoted(text_of_length(7)))
                                 .with("AccessTime", quoted(std::to_string(kNow)))
                                 .json() +
                             "]");
}

TEST_F(TopologyDevicesTest, FailsWithTheCount)
{
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        recording_host::reset();
        when<devapi_get_dev_tol_num>([failure](int32_t *count, int32_t) {
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

TEST_F(TopologyDevicesTest, OfNoArrayAreNone)
{
    EXPECT_EQ(put_to_json(nullptr, 0, 1), -1);
    cJSON *none = nullptr;
    EXPECT_EQ(put_to_json(&none, 0, 1), -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- Values ------------------------------------------------------------------------------------

TEST_F(TopologyDevicesTest, HasNoValueForNullOneByOne)
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

TEST_F(TopologyDevicesTest, KnowsNullByItsExactTextAlone)
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

TEST_F(TopologyDevicesTest, HasACodeForTheKindOfDevice)
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

TEST_F(TopologyDevicesTest, CallsADeviceByItsHostNameWithoutAnotherName)
{
    put(device.ByName, "");
    EXPECT_EQ(value("ByName"), "Name");
    put(device.Name, "NULL");
    EXPECT_EQ(value("ByName"), "NULL");
    EXPECT_EQ(value("Name"), "");
    put(device.ByName, "NULL");
    EXPECT_EQ(value("ByName"), "NULL");
    put(device.ByName, "null");
    EXPECT_EQ(value("ByName"), "null");
}

// ---- Elapsed time ------------------------------------------------------------------------------

TEST_F(TopologyDevicesTest, HasTheTimeThatHasPassed)
{
    const std::pair<std::string, std::string> times[] = {
        {std::to_string(kNow), "0"},
        {std::to_string(kNow + 5), "-5"},
        {"", std::to_string(kNow)},
        {"yesterday", std::to_string(kNow)},
        {"0", std::to_string(kNow)},
        {" 1767225500 s", "100"},
        {"-100", std::to_string(kNow + 100)},
        {"-2147483648", "-380258048"},                     // more than 32 bits hold
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

TEST_F(TopologyDevicesTest, CorrectsLocalTimesByTheZone)
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
    EXPECT_EQ(value("AccessTime"), "100") << "a zone that could not be read";
}

TEST_F(TopologyDevicesTest, AsksForNoZoneWithoutATime)
{
    put(device.AccessTime, "NULL");
    devices();
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_dev_tol_num", "dev_is_exist", "devapi_get_ad_base_info"}));
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
        const Json router = parse(report(json_get_hg_base_info_copy));
        EXPECT_EQ(cJSON_GetObjectItem(router.get(), "MainBaseInfo"), nullptr);
        EXPECT_STREQ(cJSON_GetObjectItem(router.get(), "FailReason")->valuestring,
                     "get main base info error!");
    }
}

TEST_F(TopologyDevicesTest, AreNoneInTheReportWhenTheCountFails)
{
    for (const int32_t failure : {1, 1000, -2, -1}) {
        when<devapi_get_dev_tol_num>([=](int32_t *, int32_t) { return failure; });
        const Json router = parse(report(json_get_hg_base_info_copy));
        const cJSON *last = router->child->prev;
        EXPECT_STREQ(last->string, failure == -1 ? "FailReason" : "MainBaseInfo");
        EXPECT_EQ(print(last), failure == -1 ? R"("get main base info error!")" : "[]");
    }
}

} // namespace
