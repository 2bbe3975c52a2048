// SPDX-License-Identifier: MIT
// The devices attached to the main router, in the agent's own reports.
#include "mesh_fixture.h"
#include "router_info.h"

namespace router_info_devices_test {

// A device of the reported type, online by cable.
AdBaseInfo device_by_cable()
{
    AdBaseInfo device = attached_device();
    put(device.OS, "");
    put(device.AccessCode, "0");
    put(device.NetStatus, "1");
    put(device.LinkStatus, "1");
    put(device.UpSpeed, "8");
    put(device.DownSpeed, "0.5");
    return device;
}

class RouterInfoDevicesTest : public MeshTest {
  protected:
    RouterInfoDevicesTest()
    {
        devices_are(1);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
    }

    static void devices_are(int32_t number, int32_t answer = 0)
    {
        when<devapi_get_host_num>([=](int32_t *count) {
            EXPECT_EQ(*count, 0);
            *count = number;
            return answer;
        });
    }

    static Request reported()
    {
        Places places = kAttachedDevice;
        places.push_back({"DevModle", 0, 32});
        return expected(select(places, {"DevType", "DevModle", "OS", "AccessType", "NetStatus",
                                        "AccessEnable", "Mac", "Name", "ByName", "DevFactory",
                                        "AccessTime", "ip", "UpSpeed", "DownSpeed"}))
            .with("DevType", R"("0")")
            .with("DevModle", R"("DevType")")
            .with("OS", R"("0")")
            .with("AccessType", R"("1")")
            .with("NetStatus", R"("1")")
            .with("AccessEnable", R"("1")")
            .with("DevFactory", R"("")")
            .with("AccessTime", quoted(std::to_string(kNow - 100)))
            .with("UpSpeed", R"("1000.00")")
            .with("DownSpeed", R"("62.50")");
    }
    static std::string list(const std::vector<Request> &requests)
    {
        std::string text;
        for (const Request &request : requests) {
            text += (text.empty() ? "" : ",") + request.json();
        }
        return R"({"MainBaseInfo":[)" + text + "]}";
    }

    std::string devices() { return report(json_get_main_router_baseinfo); }

    AdBaseInfo device = device_by_cable();
};

// ---- The walk ----------------------------------------------------------------------------------

TEST_F(RouterInfoDevicesTest, AreListedKeyByKey)
{
    devices_are(2);
    EXPECT_EQ(devices(), list({reported(), reported()}));
    EXPECT_EQ(result, 0);
    AdBaseInfo first = {};
    first.HostIndex = 1;
    AdBaseInfo second = {};
    second.HostIndex = 2;
    EXPECT_EQ(given_to("devapi_get_ad_base_info", 0), (Names{contents(&first), contents(&second)}));
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_host_num", "devapi_get_ad_base_info", "devapi_get_ad_base_info"}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(RouterInfoDevicesTest, AreNoneWithoutACount)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        devices_are(count);
        EXPECT_EQ(devices(), list({}));
        EXPECT_EQ(result, 0);
    }
    devices_are(3, -1);
    EXPECT_EQ(devices(), list({}));
    EXPECT_EQ(given_to("devapi_get_ad_base_info", 0), Names());
    for (const int32_t answer : {1, 1000, -2}) { // no failures here
        devices_are(1, answer);
        EXPECT_EQ(devices(), list({reported()})) << answer;
    }
}

TEST_F(RouterInfoDevicesTest, EndAtOneThatCannotBeRead)
{
    for (const int32_t number : {3, INT_MAX}) {
        recording_device::reset();
        devices_are(number);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            const int32_t answer = info->HostIndex == 2 ? -1 : 0;
            *info = device;
            return answer;
        });
        EXPECT_EQ(devices(), list({reported()}));
        EXPECT_EQ(result, 0);
        EXPECT_EQ(given_to("devapi_get_ad_base_info", 0).size(), 2u);
    }
}

TEST_F(RouterInfoDevicesTest, AreListedForResultsOtherThanMinusOne)
{
    devices_are(3);
    for (const int32_t other : {1, -2, 999, 1001, INT_MIN}) {
        when<devapi_get_ad_base_info>([=, this](AdBaseInfo *info) {
            const int32_t answer = info->HostIndex == 2 ? other : 0;
            *info = device;
            return answer;
        });
        EXPECT_EQ(devices(), list({reported(), reported(), reported()})) << other;
    }
    when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
        const int32_t answer = info->HostIndex == 2 ? 1000 : 0;
        *info = device;
        return answer;
    });
    EXPECT_EQ(devices(), list({reported(), reported()}));
}

TEST_F(RouterInfoDevicesTest, AreListedWhileTheirLinkIsUp)
{
    for (const char *state : {"0", "", "NULL", "00", "off", " 0"}) {
        put(device.LinkStatus, state);
        EXPECT_EQ(devices(), list({})) << state;
    }
    for (const char *state : {"1", "2", "-1", " 7up"}) {
        put(device.LinkStatus, state);
        EXPECT_EQ(devices(), list({reported()})) << state;
    }
    memcpy(device.LinkStatus, "00000000", 8); // and no NUL before the next field
    put(device.SpeedLimit, "1");
    EXPECT_EQ(devices(), list({}));
}

// ---- Values ------------------------------------------------------------------------------------

TEST_F(RouterInfoDevicesTest, HaveACodeForTheirTypeAndTheTypeItself)
{
    const std::pair<const char *, const char *> kinds[] = {
        {"Computer", "3"}, {"Phone", "1"}, {"computer", "0"}, {"phone", "0"},
        {"Phones", "0"},   {"", "0"},      {"NULL", "0"},     {"3", "0"}};
    for (const auto &[kind, code] : kinds) {
        put(device.DevType, kind);
        EXPECT_EQ(devices(),
                  list({reported().with("DevType", quoted(code)).with("DevModle", quoted(kind))}));
    }
}

TEST_F(RouterInfoDevicesTest, HaveNoSystemIfItHasAName)
{
    for (const char *system : {"0", "3", "NULL", "a system"}) {
        put(device.OS, system);
        EXPECT_EQ(devices(), list({reported().without("OS")})) << system;
    }
}

TEST_F(RouterInfoDevicesTest, HaveACodeForTheirAccess)
{
    for (const char *code : {"", "2", "10", "01", "00", "NULL", "wifi"}) {
        put(device.AccessCode, code);
        EXPECT_EQ(devices(), list({reported().with("AccessType", R"("0")")})) << code;
    }
    EXPECT_EQ(given_to("devapi_get_ssid_info", 0), Names());
}

TEST_F(RouterInfoDevicesTest, HaveACodeForTheBandOfTheirSsid)
{
    put(device.AccessCode, "1");
    put(device.SSIDIndex, "6");
    const std::pair<const char *, const char *> bands[] = {
        {"0", "2"}, {"1", "4"}, {"2", "4"}, {"-1", "4"}, {"", "2"}, {"NULL", "2"}, {" 5GHz", "4"}};
    for (const auto &[band, code] : bands) {
        recording_device::reset();
        devices_are(1);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
        when<devapi_get_ssid_info>([&type = band](SsidInfo *info) {
            memcpy(reinterpret_cast<char *>(info) + 244, type, strlen(type));
            return 0;
        });
        EXPECT_EQ(devices(), list({reported().with("AccessType", quoted(code))})) << band;
        SsidInfo asked = {};
        asked.SSIDIndex = 6;
        EXPECT_EQ(given_to("devapi_get_ssid_info", 0), Names{contents(&asked)});
    }
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_ssid_info>([=](SsidInfo *info) { return spoil(info, failure); });
        EXPECT_EQ(devices(), list({reported().with("AccessType", R"("0")")}));
    }
}

TEST_F(RouterInfoDevicesTest, HaveTheSsidThatTheirTextBeginsWith)
{
    const std::pair<std::string, int32_t> numbers[] = {{"", 0},
                                                       {"NULL", 0},
                                                       {" 12x", 12},
                                                       {"-3", -3},
                                                       {"99999999999", INT_MAX},
                                                       {std::string(47, '0') + "5", 5}};
    put(device.AccessCode, "1");
    for (const auto &[text, number] : numbers) {
        recording_device::reset();
        devices_are(1);
        when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
        put(device.SSIDIndex, text);
        put(device.LinkStatus, "1");
        devices();
        const auto asked = recording_device::record<SsidInfo>(recording_device::calls().back());
        EXPECT_EQ(asked.SSIDIndex, number) << text;
    }
}

TEST_F(RouterInfoDevicesTest, HaveTwoKeysForWhetherTheyAreOnline)
{
    const std::pair<const char *, const char *> states[] = {
        {"0", "0"}, {"", "0"}, {"NULL", "0"}, {"1", "1"}, {"2", "1"}, {"-1", "1"}, {"on", "0"}};
    for (const auto &[state, code] : states) {
        put(device.NetStatus, state);
        EXPECT_EQ(
            devices(),
            list({reported().with("NetStatus", quoted(code)).with("AccessEnable", quoted(code))}))
            << state;
    }
}

TEST_F(RouterInfoDevicesTest, HaveTheirRatesInBytes)
{
    const std::pair<const char *, const char *> rates[] = {
        {"8", "1000.00"},    {"0", "0.00"},        {"", "0.00"},
        {"NULL", "0.00"},    {"fast", "0.00"},     {"1.5 kbit/s", "187.50"},
        {"-2", "-250.00"},   {"1e3", "125000.00"}, {"0.0001", "0.01"},
        {"0.00001", "0.00"},
    };
    for (const auto &[rate, bytes] : rates) {
        put(device.UpSpeed, rate);
        put(device.DownSpeed, "0");
        const Request online = reported().with("DownSpeed", R"("0.00")");
        EXPECT_EQ(devices(), list({online.with("UpSpeed", quoted(bytes))})) << rate;
        std::swap(device.UpSpeed, device.DownSpeed);
        EXPECT_EQ(devices(),
                  list({reported().with("UpSpeed", R"("0.00")").with("DownSpeed", quoted(bytes))}))
            << rate;
    }
}

TEST_F(RouterInfoDevicesTest, CutARateThatIsTooLong)
{
    put(device.UpSpeed, "1e300");
    const Json json = parse(devices());
    const cJSON *first = cJSON_GetArrayItem(cJSON_GetObjectItem(json.get(), "MainBaseInfo"), 0);
    const std::string up = cJSON_GetObjectItem(first, "UpSpeed")->valuestring;
    EXPECT_EQ(up.substr(0, 12), "125000000000");
    EXPECT_EQ(up.size(), 31u);
    EXPECT_STREQ(cJSON_GetObjectItem(first, "DownSpeed")->valuestring, "62.50");
}

TEST_F(RouterInfoDevicesTest, ReportNoFurtherThanTheirFields)
{
    fill_places(&device, kAttachedDevice, full_text_of);
    put(device.LinkStatus, "1");
    EXPECT_EQ(devices(), list({reported()
                                   .without("OS")
                                   .with("DevModle", quoted(text_of_length(32)))
                                   .with("AccessType", R"("0")")
                                   .with("NetStatus", R"("0")")
                                   .with("AccessEnable", R"("0")")
                                   .with("Mac", quoted(text_of_length(32)))
                                   .with("Name", quoted(text_of_length(32)))
                                   .with("ByName", quoted(text_of_length(32)))
                                   .with("AccessTime", quoted(text_of_length(32)))
                                   .with("ip", quoted(text_of_length(64)))
                                   .with("UpSpeed", R"("0.00")")
                                   .with("DownSpeed", R"("0.00")")}));
}

} // namespace router_info_devices_test
