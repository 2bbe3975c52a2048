// What the topology report says of a device attached to the main router.
#include "topology_devices_fixture.h"

namespace topology_device_values_test {

using recording_device::when;

class TopologyDeviceValuesTest : public TopologyDevices {};

TEST_F(TopologyDeviceValuesTest, HasNoValueForNullOneByOne)
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

TEST_F(TopologyDeviceValuesTest, KnowsNullByItsExactTextAlone)
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

TEST_F(TopologyDeviceValuesTest, HasACodeForTheKindOfDevice)
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

TEST_F(TopologyDeviceValuesTest, CallsADeviceByItsHostNameWithoutAnotherName)
{
    put(device.ByName, "");
    EXPECT_EQ(value("ByName"), "Name");
    fill(device.Name); // without an end
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

TEST_F(TopologyDeviceValuesTest, HasTheTimeThatHasPassed)
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

TEST_F(TopologyDeviceValuesTest, CorrectsLocalTimesByTheZone)
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
    EXPECT_EQ(value("AccessTime"), "-28700") << "what the call leaves counts";
}

TEST_F(TopologyDeviceValuesTest, AsksForNoZoneWithoutATime)
{
    put(device.AccessTime, "NULL");
    devices();
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_dev_tol_num", "dev_is_exist", "devapi_get_ad_base_info"}));
}

} // namespace topology_device_values_test
