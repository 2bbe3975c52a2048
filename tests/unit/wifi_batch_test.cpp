#include "handler_test.h"
#include "request.h"
#include "wifi.h"

#include <algorithm>
#include <cstring>

namespace wifi_batch_test {

using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;
using Names = std::vector<std::string>;

// ---- GET_WIFI_LIST_INFO ------------------------------------------------------------------------

void copy(char *field, const std::string &text)
{
    strcpy(field, text.c_str());
}

// A device whose SSIDs hold the names of their fields, with the number behind; of the numbers in
// failing the SSIDs cannot be read.
void device_with_ssids(int32_t count, const std::vector<int32_t> &failing = {})
{
    when<devapi_get_ssid_num>([count](int32_t *out) {
        *out = count;
        return 0;
    });
    when<devapi_get_ssid_info>([failing](SsidInfo *info) {
        const int32_t number = info->SSIDIndex;
        const std::string index = std::to_string(number);
        *info = {-5,    "SSID",      "PWD",  "ENC",  "PowerLevel", "Chan", "Used",
                 "Ena", "Bandwidth", "Type", "Mode", "Adv",        "Beam", "Perm"};
        for (char *field :
             {info->SSID, info->PWD, info->ENCRYPT, info->PowerLevel, info->Channel, info->Enable,
              info->Bandwidth, info->Type, info->Mode, info->AdvertisementEnable, info->Beamforming,
              info->PermissionProperty}) {
            copy(field, std::string(field) + index);
        }
        return std::find(failing.begin(), failing.end(), number) == failing.end() ? 0
                                                                                  : 100 + number;
    });
}

std::string element(int32_t number)
{
    std::string text = R"({"SSIDIndex":"#","SSID":"SSID#","PWD":"PWD#","ENCRYPT":"ENC#",)"
                       R"("PowerLevel":"PowerLevel#","Channel":"Chan#","Enable":"Ena#",)"
                       R"("PermissionProperty":"Perm#","Type":"Type#","Bandwidth":"Bandwidth#",)"
                       R"("AdvertisementEnable":"Adv#","Mode":"Mode#","Beamforming":"Beam#"})";
    for (size_t at; (at = text.find('#')) != std::string::npos;) {
        text.replace(at, 1, std::to_string(number));
    }
    return text;
}

void station_control_is(int32_t state)
{
    when<devapi_get_wifi_stactrl>([state](int32_t *out) {
        *out = state;
        return 0;
    });
}

void fast_roaming_is(const std::string &text, int32_t result = 0)
{
    when<devapi_get_wifi_fastroaming_enable>([=](char *out) {
        memcpy(out, text.data(), text.size());
        return result;
    });
}

class WifiListTest : public HandlerTest {};

TEST_F(WifiListTest, ReportsEverySsidAndTheSwitches)
{
    device_with_ssids(2);
    station_control_is(1);
    fast_roaming_is(std::string("fast\0?", 6));
    EXPECT_EQ(run("GET_WIFI_LIST_INFO", R"({"WIFIList":"kept","StaCtrl":0})"),
              R"({"WIFIList":"kept","StaCtrl":0,"WIFIList":[)" + element(1) + "," + element(2) +
                  R"(],"StaCtrl":"1","FastRoaming":"fast","Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "devapi_get_ssid_num 2!\n"},
                                    {7, "devapi_get_wifi_stactrl 1!\n"}}));

    const int32_t none = 0;
    const int32_t on = 1;
    SsidInfo first = {};
    first.SSIDIndex = 1;
    SsidInfo second = {};
    second.SSIDIndex = 2;
    EXPECT_EQ(recording_device::calls(),
              (std::vector<recording_device::Call>{
                  {"devapi_get_ssid_num", {contents(&none)}},
                  {"devapi_get_wifi_stactrl", {contents(&on)}},
                  {"devapi_get_ssid_info", {contents(&first)}},
                  {"devapi_get_ssid_info", {contents(&second)}},
                  {"devapi_get_wifi_fastroaming_enable", {std::string(1, '\0')}}}));
}

TEST_F(WifiListTest, LeavesOutAnSsidThatCannotBeRead)
{
    device_with_ssids(3, {2});
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[)" + element(1) + "," + element(3) +
                                             R"(],"StaCtrl":"1","Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "devapi_get_ssid_num 3!\n"},
                                    {7, "devapi_get_wifi_stactrl 1!\n"},
                                    {7, "json_get_wifi_list_info error! return =102! index=2\n"}}));
}

TEST_F(WifiListTest, NamesInDecimalWhatCannotBeRead)
{
    device_with_ssids(12, {12});
    run("GET_WIFI_LIST_INFO");
    EXPECT_EQ(recording_host::log_lines().back().text,
              "json_get_wifi_list_info error! return =112! index=12\n");
}

TEST_F(WifiListTest, TheListMayBeEmpty)
{
    for (const int32_t count : {0, -1, INT32_MIN}) {
        recording_device::reset();
        device_with_ssids(count);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
    }
    device_with_ssids(1, {1});
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
}

TEST_F(WifiListTest, TheListMayBeLong)
{
    device_with_ssids(100);
    const Json object = parse(run("GET_WIFI_LIST_INFO"));
    EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(object.get(), "WIFIList")), 100);
    EXPECT_EQ(print(cJSON_GetObjectItem(object.get(), "WIFIList")->child->prev), element(100));
}

TEST_F(WifiListTest, OnlyStateOneIsStationControl)
{
    for (const int32_t state : {1, 0, 2, -1, 256}) {
        station_control_is(state);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), std::string(R"({"WIFIList":[],"StaCtrl":")") +
                                                 (state == 1 ? "1" : "0") + R"(","Status":"0"})");
        EXPECT_EQ(recording_host::log_lines().back(),
                  (LogLine{7, "devapi_get_wifi_stactrl " + std::to_string(state) + "!\n"}));
    }
}

TEST_F(WifiListTest, FastRoamingIsReportedOnlyWhenKnown)
{
    for (const int32_t result : {-1, 1, -2}) {
        fast_roaming_is("1", result);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
    }
    fast_roaming_is("");
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
    fast_roaming_is("0");
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"),
              R"({"WIFIList":[],"StaCtrl":"1","FastRoaming":"0","Status":"0"})");
}

TEST_F(WifiListTest, FailsWithoutTheNumberOfSsids)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        recording_device::reset();
        recording_host::reset();
        when<devapi_get_ssid_num>([result](int32_t *count) {
            *count = 3;
            return result;
        });
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), "{" + failure("get ssid_num error") + "}");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_ssid_num"});
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{3, "devapi_get_ssid_num error! return =" +
                                                std::to_string(result) + "!\n"}}));
    }
}

TEST_F(WifiListTest, FailsWithoutTheStationControl)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        recording_device::reset();
        recording_host::reset();
        device_with_ssids(3);
        when<devapi_get_wifi_stactrl>([result](int32_t *) { return result; });
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), "{" + failure("get stactrl error") + "}");
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_get_ssid_num", "devapi_get_wifi_stactrl"}));
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{7, "devapi_get_ssid_num 3!\n"},
                                        {3, "devapi_get_wifi_stactrl error! return =" +
                                                std::to_string(result) + "!\n"}}));
    }
}

// ---- parse_wifi_info_from_json -----------------------------------------------------------------

const Request kElement({{"SSIDIndex", R"("2")"},
                        {"SSID", R"("home")"},
                        {"PWD", R"("secret")"},
                        {"ENCRYPT", R"("WPA2")"},
                        {"PowerLevel", R"("80")"},
                        {"Channel", R"("6")"},
                        {"Enable", R"("1")"}});

class WifiElementTest : public HandlerTest {
  protected:
    int32_t parse_element(const std::string &json)
    {
        const Json item = parse(json);
        const int32_t result = parse_wifi_info_from_json(&record, item.get());
        EXPECT_EQ(print(item.get()), json) << "the element stays as it is";
        return result;
    }

    SsidInfo record = {};
};

TEST_F(WifiElementTest, LeavesOutWhatItWasNotGiven)
{
    EXPECT_EQ(parse_element(kElement.with("UsedChannel", R"("1")")
                                .with("Type", R"("1")")
                                .with("PermissionProperty", R"("1")")
                                .json()),
              0);
    const SsidInfo expected = {2,   "home", "secret", "WPA2", "80", "6",  "",
                               "1", "-1",   "",       "-1",   "-1", "-1", ""};
    EXPECT_EQ(contents(&record), contents(&expected));
}

TEST_F(WifiElementTest, TakesItsOptionsCutAtTheirFields)
{
    Request request({});
    for (const char *key : {"SSIDIndex", "SSID", "PWD", "ENCRYPT", "PowerLevel", "Channel",
                            "Enable", "Bandwidth", "AdvertisementEnable", "Mode", "Beamforming"}) {
        request = request.with(key, quoted(text_of_length(200)));
    }
    EXPECT_EQ(parse_element(request.json()), 0);
    SsidInfo expected = {};
    for (char *field : {expected.SSID, expected.PWD, expected.PowerLevel}) {
        text_of_length(63).copy(field, 63);
    }
    text_of_length(15).copy(expected.Bandwidth, 15);
    for (char *field : {expected.ENCRYPT, expected.Channel, expected.Enable, expected.Mode,
                        expected.AdvertisementEnable, expected.Beamforming}) {
        text_of_length(7).copy(field, 7);
    }
    EXPECT_EQ(contents(&record), contents(&expected));
}

TEST_F(WifiElementTest, AnOptionWithoutTextCountsAsLeftOutAndAnEmptyOneDoesNot)
{
    for (const char *key : {"Bandwidth", "AdvertisementEnable", "Mode", "Beamforming"}) {
        EXPECT_EQ(parse_element(kElement.json()), 0);
        const SsidInfo without = record;
        for (const std::string &no_text : kNoTexts) {
            EXPECT_EQ(parse_element(kElement.with(key, no_text).json()), 0);
            EXPECT_EQ(contents(&record), contents(&without));
        }
        EXPECT_EQ(parse_element(kElement.with(key, R"("")").json()), 0);
        EXPECT_NE(contents(&record), contents(&without));
    }
}

TEST_F(WifiElementTest, NeedsEachOfItsKeys)
{
    for (const auto &[key, json] : kElement.keys()) {
        EXPECT_EQ(parse_element(kElement.without(key).json()), -1) << key;
        for (const std::string &no_text : kNoTexts) {
            EXPECT_EQ(parse_element(kElement.with(key, no_text).json()), -1) << key << no_text;
        }
    }
    for (const std::string no_object : {"null", "7", R"("SSID")", "[]", R"(["SSID"])"}) {
        EXPECT_EQ(parse_element(no_object), -1);
    }
    EXPECT_EQ(parse_wifi_info_from_json(&record, nullptr), -1);
    EXPECT_EQ(parse_wifi_info_from_json(nullptr, parse(kElement.json()).get()), -1);
    EXPECT_EQ(contents(&record), std::string(292, '\0')) << "a refused element leaves it untouched";
}

TEST_F(WifiElementTest, ReadsItsIndexAsANumber)
{
    const std::pair<const char *, int32_t> indexes[] = {
        {"abc", 0}, {"0", 0}, {"9", 9}, {"-1", -1}, {"", 0}, {"99999999999", INT32_MAX}};
    for (const auto &[text, index] : indexes) {
        EXPECT_EQ(parse_element(kElement.with("SSIDIndex", quoted(text)).json()), 0);
        EXPECT_EQ(record.SSIDIndex, index) << text;
    }
}

} // namespace wifi_batch_test
