// SPDX-License-Identifier: MIT
#include "commands.h"
#include "wifi_fixture.h"

#include <cstring>

namespace wifi_test {

class GetWifiInfo : public HandlerTest {};
class SetWifiInfo : public HandlerTest {};

// ---- GET_WIFI_INFO -----------------------------------------------------------------------------

// A device whose fields contain their names in the protocol.
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

TEST_F(GetWifiInfo, AnEmptyIndexIsRefused)
{
    EXPECT_EQ(run("GET_WIFI_INFO", R"({"SSIDIndex":""})"),
              R"({"SSIDIndex":"",)" + failure("index string null") + "}");
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "invalid SSIDIndex!\n"}}));
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(GetWifiInfo, AnIndexThatReadsAsZeroIsRefused)
{
    for (const std::string &index :
         {std::string("0"), std::string("abc"), std::string("-0"), std::string(" "),
          std::string("0x9"), std::string("- 1"), std::string("a1"), text_of_length(100000),
          std::string(63, '0') + "5"}) { // only 63 characters are read
        recording_host::reset();
        EXPECT_EQ(run("GET_WIFI_INFO", R"({"SSIDIndex":")" + index + "\"}"),
                  R"({"SSIDIndex":")" + index + "\"," + failure("index is 0, (should be 1 to 8)") +
                      "}");
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "invalid SSIDIndex 0!\n"}}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(GetWifiInfo, AnyOtherIndexReachesTheDevice)
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

// ---- SET_WIFI_INFO -----------------------------------------------------------------------------

const Request kSettingWithOptions = kSsidSetting.with("Beamforming", R"("b")")
                                        .with("Mode", R"("m")")
                                        .with("AdvertisementEnable", R"("a")");

TEST_F(SetWifiInfo, MarksWhatItIsNotGiven)
{
    EXPECT_EQ(run("SET_WIFI_INFO", kSsidSetting.with("Bandwidth", R"("160")").json()),
              R"({"Bandwidth":"160","Status":"0"})");
    const SsidInfo expected = ssid_record("");
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_set_ssid_info", {contents(&expected)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetWifiInfo, AnOptionWithoutTextIsNotUsedAndStays)
{
    const SsidInfo expected = ssid_record("");
    for (const std::string &json : kNoTexts) {
        const std::string options =
            R"("Mode":)" + json + R"(,"AdvertisementEnable":)" + json + R"(,"Beamforming":)" + json;
        const std::string request = kSsidSetting.json();
        EXPECT_EQ(run("SET_WIFI_INFO", "{" + options + "," + request.substr(1)),
                  "{" + options + R"(,"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back().arguments[0], contents(&expected));
    }
}

TEST_F(SetWifiInfo, TheMainSsidsPowerGoesToTheUpperRadioEvenOnFailure)
{
    for (const int32_t result : {0, -1, 1, -2, 1000}) {
        for (const int32_t power_result : {0, -1}) {
            recording_device::reset();
            when<devapi_set_ssid_info>([result](const SsidInfo *) { return result; });
            when<devapi_set_5gwifi_powerlevel>([=](const char *) { return power_result; });
            EXPECT_EQ(run("SET_WIFI_INFO", kSsidSetting.with("SSIDIndex", R"("1")")
                                               .with("PowerLevel", quoted(text_of_length(100)))
                                               .json()),
                      "{" + (result == 0 ? R"("Status":"0")" : failure("SET_WIFI_INFO_FAIL")) +
                          "}");
            EXPECT_EQ(recording_device::called_functions(),
                      (Names{"devapi_set_ssid_info", "devapi_set_5gwifi_powerlevel"}));
            const auto calls = recording_device::calls();
            EXPECT_EQ(recording_device::record<SsidInfo>(calls[0]).PowerLevel, text_of_length(63));
            EXPECT_EQ(calls[1].arguments[0], text_of_length(100)); // not truncated
        }
    }
}

TEST_F(SetWifiInfo, RemovesTheOptionsBeforeTheDeviceIsCalled)
{
    const Json object = parse(kSettingWithOptions.with("Mode", "7").json());
    when<devapi_set_ssid_info>([&](const SsidInfo *) {
        EXPECT_EQ(print(object.get()), kSsidSetting.with("Mode", "7").json());
        return 0;
    });
    EXPECT_EQ(json_set_wifi_info(object.get()), 0);
    EXPECT_EQ(print(object.get()), R"({"Mode":7,"Status":"0"})");
    EXPECT_EQ(recording_device::called_functions()[0], "devapi_set_ssid_info");
}

TEST_F(SetWifiInfo, NoOtherIndexReachesTheUpperRadio)
{
    const std::pair<const char *, int32_t> indexes[] = {
        {"2", 2}, {"0", 0},   {"-1", -1}, {"9", 9},
        {"", 0},  {"abc", 0}, {"11", 11}, {"99999999999", INT32_MAX},
    };
    for (const auto &[text, index] : indexes) {
        recording_device::reset();
        EXPECT_EQ(run("SET_WIFI_INFO", kSsidSetting.with("SSIDIndex", quoted(text)).json()),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_set_ssid_info"}) << text;
        EXPECT_EQ(recording_device::record<SsidInfo>(recording_device::calls()[0]).SSIDIndex,
                  index);
    }
    run("SET_WIFI_INFO", kSsidSetting.with("SSIDIndex", R"("1st")").json());
    EXPECT_EQ(recording_device::called_functions().back(), "devapi_set_5gwifi_powerlevel");
}

TEST_F(SetWifiInfo, TheHandlerReturnsTheDevicesResult)
{
    for (const int32_t result : {0, -1, 7, -2}) {
        when<devapi_set_ssid_info>([result](const SsidInfo *) { return result; });
        EXPECT_EQ(json_set_wifi_info(parse(kSsidSetting.json()).get()), result);
        EXPECT_EQ(json_set_wifi_info(parse("{}").get()), -1);
        EXPECT_EQ(json_set_wifi_info(parse(kSsidSetting.with("SSID", "1").json()).get()), -1);
    }
}

// ---- parse_wifi_set_info_from_json -------------------------------------------------------------

TEST_F(SetWifiInfo, TheAgentsSettingLeavesTheOtherFieldsAlone)
{
    SsidInfo record;
    memset(&record, '?', sizeof record);
    SsidInfo expected = record;
    const Json item = parse(kSettingWithOptions.json());
    EXPECT_EQ(parse_wifi_set_info_from_json(&record, item.get()), 0);
    expected.SSIDIndex = 2;
    strcpy(expected.SSID, "home");
    strcpy(expected.PWD, "secret");
    strcpy(expected.PowerLevel, "80");
    strcpy(expected.Channel, "6");
    strcpy(expected.Enable, "1");
    EXPECT_EQ(contents(&record), contents(&expected));
    EXPECT_EQ(print(item.get()), kSettingWithOptions.json());
}

TEST_F(SetWifiInfo, TheAgentsSettingNeedsItsKeysButNoEncryption)
{
    SsidInfo record = {};
    EXPECT_EQ(
        parse_wifi_set_info_from_json(&record, parse(kSsidSetting.without("ENCRYPT").json()).get()),
        0);
    EXPECT_EQ(parse_wifi_set_info_from_json(&record,
                                            parse(kSsidSetting.with("ENCRYPT", "7").json()).get()),
              0);
    record = {};
    for (const auto &[key, json] : kSsidSetting.without("ENCRYPT").keys()) {
        for (const Request &request : kSsidSetting.without_text(key)) {
            const Json wrong = parse(request.json());
            EXPECT_EQ(parse_wifi_set_info_from_json(&record, wrong.get()), -1) << request.json();
        }
    }
    for (const std::string no_object : {"null", "7", R"("x")", "[]", R"(["x"])"}) {
        EXPECT_EQ(parse_wifi_set_info_from_json(&record, parse(no_object).get()), -1);
    }
    EXPECT_EQ(parse_wifi_set_info_from_json(&record, nullptr), -1);
    EXPECT_EQ(contents(&record), std::string(292, '\0')) << "a refused object leaves it untouched";
    EXPECT_EQ(parse_wifi_set_info_from_json(nullptr, parse(kSsidSetting.json()).get()), -1);
}

} // namespace wifi_test
