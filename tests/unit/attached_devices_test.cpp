#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace attached_devices_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using Names = std::vector<std::string>;

constexpr char kCommand[] = "GET_AD_BASE_INFO";
const std::string kFailure = "{" + failure("get ad base info error") + "}";

class AttachedDevicesTest : public HandlerTest {};

void hosts_are(int32_t count, int32_t result = 0)
{
    when<devapi_get_host_num>([=](int32_t *out) {
        *out = count;
        return result;
    });
}

struct BaseText {
    const char *key;
    size_t offset;
    size_t width;
};
const std::vector<BaseText> kReported = {
    {"Mac", 8, 32},
    {"UID", 40, 32},
    {"DevType", 72, 32},
    {"DevFactory", 104, 32},
    {"DevModle", 72, 32},
    {"Name", 136, 32},
    {"ByName", 168, 32},
    {"OS", 200, 32},
    {"Version", 232, 32},
    {"NetStatus", 264, 8},
    {"NetMonopoly", 272, 32},
    {"AccessType", 304, 32},
    {"AccessEnable", 336, 8},
    {"AccessTime", 344, 32},
    {"UpSpeed", 376, 32},
    {"DownSpeed", 408, 32},
    {"ip", 440, 64},
    {"GreennetProtectEnable", 632, 8},
    {"StaticDhcpEnable", 648, 8},
};

// The text of a field of the device with this host index; the model is its type once more.
std::string text_of(const BaseText &place, int32_t host)
{
    return std::to_string(host) + "@" + std::to_string(place.offset);
}

// Fills the fields that are reported, and everything else with rubbish.
int32_t describe(AdBaseInfo *info, int32_t result)
{
    const int32_t host = info->HostIndex;
    memset(info, '?', sizeof *info);
    for (const BaseText &place : kReported) {
        strcpy(reinterpret_cast<char *>(info) + place.offset, text_of(place, host).c_str());
    }
    return result;
}

std::string element(int32_t host)
{
    std::string text;
    for (const BaseText &place : kReported) {
        text += std::string(text.empty() ? "{\"" : ",\"") + place.key +
                "\":" + quoted(text_of(place, host));
    }
    return text + "}";
}

TEST_F(AttachedDevicesTest, ReportsEveryDevice)
{
    hosts_are(2);
    when<devapi_get_ad_base_info>([](AdBaseInfo *info) { return describe(info, 0); });
    EXPECT_EQ(run(kCommand, R"({"baseinfo":"kept"})"), R"({"baseinfo":"kept","BaseInfo":[)" +
                                                           element(1) + "," + element(2) +
                                                           R"(],"Status":"0"})");
    const int32_t none = 0;
    AdBaseInfo first = {};
    first.HostIndex = 1;
    AdBaseInfo second = {};
    second.HostIndex = 2;
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_host_num", {contents(&none)}},
                                 {"devapi_get_ad_base_info", {contents(&first)}},
                                 {"devapi_get_ad_base_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(AttachedDevicesTest, NoDevicesAreAnEmptyList)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        hosts_are(count);
        EXPECT_EQ(run(kCommand), R"({"BaseInfo":[],"Status":"0"})") << count;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_host_num"});
    }
}

TEST_F(AttachedDevicesTest, AnyCountIsHeldToTheDevicesThatCanBeRead)
{
    for (const int32_t count : {2000000, INT32_MAX}) {
        recording_device::reset();
        hosts_are(count);
        when<devapi_get_ad_base_info>(
            [](AdBaseInfo *info) { return describe(info, info->HostIndex == 400 ? -1 : 0); });
        EXPECT_EQ(run(kCommand), kFailure);
        EXPECT_EQ(recording_device::calls().size(), 401u);
    }
    hosts_are(900);
    when<devapi_get_ad_base_info>([](AdBaseInfo *info) { return describe(info, 0); });
    const Json object = parse(run(kCommand));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 900);
    EXPECT_EQ(print(object->child->child->prev), element(900));
}

} // namespace attached_devices_test
