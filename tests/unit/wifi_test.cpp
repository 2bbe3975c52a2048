#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace wifi_test {

using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;

class WifiTest : public HandlerTest {};

// ---- GET_WIFI_INFO -----------------------------------------------------------------------------

// A device whose fields hold what the protocol calls them.
int32_t named_ssid(SsidInfo *info)
{
    *info = {77,       "SSID",      "PWD",  "ENCRYPT", "PowerLevel", "Channel", "UsedCha",
             "Enable", "Bandwidth", "Type", "Mode",    "Adverti",    "Beamfor", "Permiss"};
    return 0;
}

constexpr char kNamedReply[] =
    R"("Status":"0","SSID":"SSID","PWD":"PWD","ENCRYPT":"ENCRYPT","PowerLevel":"PowerLevel",)"
    R"("Channel":"Channel","UsedChannel":"UsedCha","Enable":"Enable","Bandwidth":"Bandwidth",)"
    R"("AdvertisementEnable":"Adverti","Mode":"Mode","Beamforming":"Beamfor")";

TEST_F(WifiTest, ReportsElevenKeysOfAnSsid)
{
    when<devapi_get_ssid_info>(named_ssid);
    EXPECT_EQ(run("GET_WIFI_INFO", R"({"Before":1,"SSIDIndex":"3","SSID":"kept"})"),
              R"({"Before":1,"SSID":"kept",)" + std::string(kNamedReply) + "}");
    SsidInfo asked = {};
    asked.SSIDIndex = 3;
    EXPECT_EQ(recording_device::calls(),
              (std::vector<recording_device::Call>{{"devapi_get_ssid_info", {contents(&asked)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WifiTest, AnIndexThatIsAbsentOrNoTextIsNoIndex)
{
    std::vector<std::string> requests = {"{}", R"({"Index":"1","SSID":"1"})"};
    for (const std::string &json : kNoTexts) {
        requests.push_back(R"({"SSIDIndex":)" + json + "}");
    }
    for (const std::string &request : requests) {
        recording_host::reset();
        EXPECT_EQ(run("GET_WIFI_INFO", request), request.substr(0, request.size() - 1) +
                                                     (request == "{}" ? "" : ",") +
                                                     failure("no index") + "}");
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{3, "can not find SSIDIndex object!\n"}}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(WifiTest, AnEmptyIndexIsRefused)
{
    EXPECT_EQ(run("GET_WIFI_INFO", R"({"SSIDIndex":""})"),
              R"({"SSIDIndex":"",)" + failure("index string null") + "}");
    EXPECT_EQ(recording_host::log_lines(), (std::vector<LogLine>{{3, "invalid SSIDIndex!\n"}}));
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(WifiTest, AnIndexThatReadsAsZeroIsRefused)
{
    for (const std::string &index :
         {std::string("0"), std::string("abc"), std::string("-0"), std::string(" "),
          std::string("0x9"), std::string("- 1"), std::string("a1"), text_of_length(100000),
          std::string(63, '0') + "5"}) { // only 63 characters are read
        recording_host::reset();
        EXPECT_EQ(run("GET_WIFI_INFO", R"({"SSIDIndex":")" + index + "\"}"),
                  R"({"SSIDIndex":")" + index + "\"," + failure("index is 0, (should be 1 to 8)") +
                      "}");
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{3, "invalid SSIDIndex 0!\n"}}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(WifiTest, AnyOtherIndexReachesTheDevice)
{
    const std::pair<std::string, int32_t> indexes[] = {
        {"1", 1},
        {"8", 8},
        {"9", 9},
        {"-1", -1},
        {" 7", 7},
        {"+3", 3},
        {"4 or so", 4},
        {"2147483647", INT32_MAX},
        {"99999999999", INT32_MAX},
        {"-99999999999", INT32_MIN},
        {"99999999999999999999999999", INT32_MAX},
        {std::string(62, '0') + "5", 5},
        {"6" + std::string(100000, ' '), 6},
    };
    for (const auto &[text, index] : indexes) {
        recording_device::reset();
        when<devapi_get_ssid_info>(named_ssid);
        EXPECT_EQ(run("GET_WIFI_INFO", R"({"SSIDIndex":")" + text + "\"}"),
                  "{" + std::string(kNamedReply) + "}");
        EXPECT_EQ(recording_device::record<SsidInfo>(recording_device::calls().at(0)).SSIDIndex,
                  index);
    }
}

} // namespace wifi_test
