// SPDX-License-Identifier: MIT
#include "wifi.h"

#include "failing_memory.h"
#include "wifi_fixture.h"
#include "worker_control.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

namespace wifi_batch_test {

// ---- GET_WIFI_LIST_INFO ------------------------------------------------------------------------

// A device whose SSIDs contain the names of their fields, followed by the number; SSIDs with the
// numbers in failing cannot be read.
void device_with_ssids(int32_t count, const std::vector<int32_t> &failing = {})
{
    writes<devapi_get_ssid_num>(count);
    when<devapi_get_ssid_info>([failing](SsidInfo *info) {
        const int32_t number = info->SSIDIndex;
        const std::string index = std::to_string(number);
        *info = {-5,    "SSID",      "PWD",  "ENC",  "PowerLevel", "Chan", "Used",
                 "Ena", "Bandwidth", "Type", "Mode", "Adv",        "Beam", "Perm"};
        for (char *field :
             {info->SSID, info->PWD, info->ENCRYPT, info->PowerLevel, info->Channel, info->Enable,
              info->Bandwidth, info->Type, info->Mode, info->AdvertisementEnable, info->Beamforming,
              info->PermissionProperty}) {
            strcpy(field, (field + index).c_str());
        }
        return std::find(failing.begin(), failing.end(), number) == failing.end() ? 0
                                                                                  : 100 + number;
    });
}

std::string reported(int32_t number)
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

void fast_roaming_is(const std::string &text, int32_t result = 0)
{
    when<devapi_get_wifi_fastroaming_enable>([=](char *out) {
        memcpy(out, text.data(), text.size());
        return result;
    });
}

class GetWifiListInfo : public HandlerTest {};

TEST_F(GetWifiListInfo, ReportsEverySsidAndTheSwitches)
{
    device_with_ssids(2);
    writes<devapi_get_wifi_stactrl>(1);
    fast_roaming_is(std::string("fast\0?", 6));
    EXPECT_EQ(run("GET_WIFI_LIST_INFO", R"({"WIFIList":"kept","StaCtrl":0})"),
              R"({"WIFIList":"kept","StaCtrl":0,"WIFIList":[)" + reported(1) + "," + reported(2) +
                  R"(],"StaCtrl":"1","FastRoaming":"fast","Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "devapi_get_ssid_num 2!\n"}, {7, "devapi_get_wifi_stactrl 1!\n"}}));

    const int32_t none = 0;
    const int32_t on = 1;
    SsidInfo first = {};
    first.SSIDIndex = 1;
    SsidInfo second = {};
    second.SSIDIndex = 2;
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_ssid_num", {contents(&none)}},
                     {"devapi_get_wifi_stactrl", {contents(&on)}},
                     {"devapi_get_ssid_info", {contents(&first)}},
                     {"devapi_get_ssid_info", {contents(&second)}},
                     {"devapi_get_wifi_fastroaming_enable", {std::string(1, '\0')}}}));
}

TEST_F(GetWifiListInfo, LeavesOutAnSsidThatCannotBeRead)
{
    device_with_ssids(3, {2});
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[)" + reported(1) + "," + reported(3) +
                                             R"(],"StaCtrl":"1","Status":"0"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "devapi_get_ssid_num 3!\n"},
                        {7, "devapi_get_wifi_stactrl 1!\n"},
                        {7, "json_get_wifi_list_info error! return =102! index=2\n"}}));
}

TEST_F(GetWifiListInfo, LogsInDecimalWhatCannotBeRead)
{
    device_with_ssids(12, {12});
    run("GET_WIFI_LIST_INFO");
    EXPECT_EQ(recording_host::log_lines().back().text,
              "json_get_wifi_list_info error! return =112! index=12\n");
}

TEST_F(GetWifiListInfo, TheListMayBeEmpty)
{
    for (const int32_t count : {0, -1, INT32_MIN}) {
        recording_device::reset();
        device_with_ssids(count);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
    }
    device_with_ssids(1, {1});
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"), R"({"WIFIList":[],"StaCtrl":"1","Status":"0"})");
}

TEST_F(GetWifiListInfo, TheListMayBeLong)
{
    device_with_ssids(100);
    const Json object = parse(run("GET_WIFI_LIST_INFO"));
    EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(object.get(), "WIFIList")), 100);
    EXPECT_EQ(print(cJSON_GetObjectItem(object.get(), "WIFIList")->child->prev), reported(100));
}

TEST_F(GetWifiListInfo, OnlyStateOneIsStationControl)
{
    for (const int32_t state : {1, 0, 2, -1, 256}) {
        writes<devapi_get_wifi_stactrl>(state);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), std::string(R"({"WIFIList":[],"StaCtrl":")") +
                                                 (state == 1 ? "1" : "0") + R"(","Status":"0"})");
        EXPECT_EQ(recording_host::log_lines().back(),
                  (LogLine{7, "devapi_get_wifi_stactrl " + std::to_string(state) + "!\n"}));
    }
}

TEST_F(GetWifiListInfo, FastRoamingIsReportedOnlyWhenKnown)
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
    fast_roaming_is("8 bytes."); // ends without a NUL
    EXPECT_EQ(run("GET_WIFI_LIST_INFO"),
              R"({"WIFIList":[],"StaCtrl":"1","FastRoaming":"8 bytes.","Status":"0"})");
}

TEST_F(GetWifiListInfo, FailsWithoutTheNumberOfSsids)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        forget();
        writes<devapi_get_ssid_num>(3, result);
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), "{" + failure("get ssid_num error") + "}");
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_ssid_num"});
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "devapi_get_ssid_num error! return =" +
                                                                 std::to_string(result) + "!\n"}}));
    }
}

TEST_F(GetWifiListInfo, FailsWithoutTheStationControl)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        forget();
        device_with_ssids(3);
        when<devapi_get_wifi_stactrl>([result](int32_t *) { return result; });
        EXPECT_EQ(run("GET_WIFI_LIST_INFO"), "{" + failure("get stactrl error") + "}");
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_get_ssid_num", "devapi_get_wifi_stactrl"}));
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{7, "devapi_get_ssid_num 3!\n"},
                            {3, "devapi_get_wifi_stactrl error! return =" + std::to_string(result) +
                                    "!\n"}}));
    }
}

// ---- parse_wifi_info_from_json -----------------------------------------------------------------

class SetWifiInfoListElement : public HandlerTest {
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

TEST_F(SetWifiInfoListElement, MarksWhatItIsNotGiven)
{
    EXPECT_EQ(parse_element(kSsidSetting.with("UsedChannel", R"("1")")
                                .with("Type", R"("1")")
                                .with("PermissionProperty", R"("1")")
                                .json()),
              0);
    const SsidInfo expected = ssid_record("-1");
    EXPECT_EQ(contents(&record), contents(&expected));
}

TEST_F(SetWifiInfoListElement, TakesItsOptionsCutAtTheirFields)
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

TEST_F(SetWifiInfoListElement, AnOptionWithoutTextIsNotUsedButAnEmptyOneIs)
{
    for (const char *key : {"Bandwidth", "AdvertisementEnable", "Mode", "Beamforming"}) {
        EXPECT_EQ(parse_element(kSsidSetting.json()), 0);
        const SsidInfo without = record;
        for (const std::string &no_text : kNoTexts) {
            EXPECT_EQ(parse_element(kSsidSetting.with(key, no_text).json()), 0);
            EXPECT_EQ(contents(&record), contents(&without));
        }
        EXPECT_EQ(parse_element(kSsidSetting.with(key, R"("")").json()), 0);
        EXPECT_NE(contents(&record), contents(&without));
    }
}

TEST_F(SetWifiInfoListElement, NeedsEachOfItsKeys)
{
    for (const std::string &bad : not_like(kSsidSetting)) {
        EXPECT_EQ(parse_element(bad), -1) << bad;
    }
    EXPECT_EQ(parse_wifi_info_from_json(&record, nullptr), -1);
    EXPECT_EQ(parse_wifi_info_from_json(nullptr, parse(kSsidSetting.json()).get()), -1);
    EXPECT_EQ(contents(&record), std::string(292, '\0')) << "a refused element leaves it untouched";
}

TEST_F(SetWifiInfoListElement, ReadsItsIndexAsANumber)
{
    const std::pair<const char *, int32_t> indexes[] = {
        {"abc", 0}, {"0", 0}, {"9", 9}, {"-1", -1}, {"", 0}, {"99999999999", INT32_MAX}};
    for (const auto &[text, index] : indexes) {
        EXPECT_EQ(parse_element(kSsidSetting.with("SSIDIndex", quoted(text)).json()), 0);
        EXPECT_EQ(record.SSIDIndex, index) << text;
    }
}

// ---- SET_WIFI_INFO_LIST ------------------------------------------------------------------------

constexpr char kSuccess[] = R"({"Status":"0"})";

std::string element(int32_t index, const std::string &enable = "1")
{
    return kSsidSetting.with("SSIDIndex", quoted(std::to_string(index)))
        .with("Enable", quoted(enable))
        .json();
}

std::string element_record(int32_t index, const std::string &enable = "1")
{
    SsidInfo record = ssid_record("-1");
    record.SSIDIndex = index;
    put(record.Enable, enable);
    return contents(&record);
}

Request batch(const std::string &elements, const std::string &station_control = "1")
{
    return Request({{"WIFILIST", "[" + elements + "]"}, {"StaCtrl", quoted(station_control)}});
}

class WifiBatchTest : public HandlerTest {
  protected:
    WifiBatchTest()
    {
        g_set_wifi_array_size = 0;
        memset(g_stactrl_enable, 0, sizeof g_stactrl_enable);
        memset(g_fastroaming_enable, 0, sizeof g_fastroaming_enable);
    }

    std::string send(const Request &request) { return run("SET_WIFI_INFO_LIST", request.json()); }

    // What the worker has done so far, its sleeps among the device's calls.
    static Calls worker_calls()
    {
        Calls calls = recording_device::calls();
        std::erase_if(calls,
                      [](const Call &call) { return call.function.starts_with("devapi_get_"); });
        return calls;
    }

    static Calls whole_life(const std::string &station_control, const std::string &fast_roaming,
                            const std::vector<std::string> &records)
    {
        Calls calls = {{"sleep", {"1"}},
                       {"devapi_set_wifi_stactrl", {station_control}},
                       {"sleep", {"5"}},
                       {"devapi_set_wifi_fastroaming", {fast_roaming}}};
        for (const std::string &record : records) {
            calls.push_back({"devapi_set_ssid_list_info", {record}});
        }
        return calls;
    }

    WorkerControl control;
};

// ---- Batches that never get a worker -----------------------------------------------------------

class SetWifiInfoListRefusal : public WifiBatchTest {
  protected:
    ~SetWifiInfoListRefusal() override
    {
        EXPECT_EQ(control.workers(), 0u);
        EXPECT_TRUE(control.is_idle());
        EXPECT_TRUE(recording_host::log_lines().empty());
    }

    static Request batch(const std::string &elements)
    {
        return Request({{"First", "1"},
                        {"WIFILIST", "[" + elements + "]"},
                        {"StaCtrl", R"("on")"},
                        {"FastRoaming", R"("fast")"}});
    }

    // A list that was read is removed, and nothing else.
    static std::string refused(const Request &request)
    {
        return request.without("WIFILIST").followed_by(failure("set ssid failed"));
    }

    const std::string good = element(1, "0");
};

TEST_F(SetWifiInfoListRefusal, WithoutAList)
{
    std::vector<Request> requests = {batch("").without("WIFILIST"), Request({})};
    for (const std::string json : {"7", "true", "null", R"("[]")", "{}", R"({"x":[]})"}) {
        requests.push_back(batch("").with("WIFILIST", json));
    }
    for (const Request &request : requests) {
        EXPECT_EQ(send(request), request.followed_by(failure("json node: wifilist not found")));
    }
    EXPECT_STREQ(g_stactrl_enable, "");
    EXPECT_STREQ(g_fastroaming_enable, "");
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(SetWifiInfoListRefusal, WithoutStationControl)
{
    for (const Request &request : batch(good).without_text("StaCtrl")) {
        EXPECT_EQ(send(request), request.followed_by(failure("json node: StaCtrl not found")));
    }
    EXPECT_STREQ(g_stactrl_enable, "");
    EXPECT_STREQ(g_fastroaming_enable, "");
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(SetWifiInfoListRefusal, ForAnElementWithoutOneOfItsKeys)
{
    for (const std::string &bad : not_like(kSsidSetting)) {
        for (const std::string &list : {bad, bad + "," + good, good + "," + bad}) {
            EXPECT_EQ(send(batch(list)), refused(batch("")));
        }
    }
    EXPECT_EQ(send(batch(R"({"WIFILIST":[)" + good + "]}")), refused(batch("")));
}

TEST_F(SetWifiInfoListRefusal, HasChangedTheSwitches)
{
    EXPECT_EQ(send(batch("{}")), refused(batch("")));
    EXPECT_STREQ(g_stactrl_enable, "on");
    EXPECT_STREQ(g_fastroaming_enable, "fast");
    EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_5g_wifi_index"});
}

TEST_F(SetWifiInfoListRefusal, ForAWorkerThatCannotBeStarted)
{
    writes<devapi_get_Multi_Ap_enable>(1);
    for (const std::string &list : {good, std::string()}) {
        control.fail_next_worker();
        EXPECT_EQ(send(batch(list)), refused(batch("")));
        EXPECT_TRUE(control.is_idle());
    }
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_5g_wifi_index", "devapi_get_5g_wifi_index"}));
}

// The worker cannot be cancelled: the answer is complete before it starts.
TEST_F(SetWifiInfoListRefusal, ForAWarningWithoutMemory)
{
    for (size_t first = 0; first < 4; ++first) {
        const Json object = parse(batch(good).json());
        {
            const FailingMemory memory(first, FailingMemory::Fail::kOnce);
            hg_process_json_cmd("SET_WIFI_INFO_LIST", object.get());
        }
        EXPECT_EQ(print(object.get()), refused(batch(""))) << "allocation " << first;
        EXPECT_EQ(control.workers(), 0u);
    }
}

// ---- One batch at a time -----------------------------------------------------------------------

class SetWifiInfoList : public WifiBatchTest {};

// The request to turn off the mesh first, as the apps have to receive it.
constexpr char kMeshWarning[] = "\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5mesh\xBF\xAA\xB9\xD8!";

// Before main(), and so before any batch.
const int32_t size_at_start = g_set_wifi_array_size;
const std::string switches_at_start = std::string(g_stactrl_enable) + g_fastroaming_enable;

TEST_F(SetWifiInfoList, NothingIsSetBeforeTheFirst)
{
    EXPECT_EQ(size_at_start, 0);
    EXPECT_EQ(switches_at_start, "");
}

// ---- The life of a batch -----------------------------------------------------------------------

TEST_F(SetWifiInfoList, IsAppliedAfterTheReply)
{
    control.hold_sleeps();
    EXPECT_EQ(send(batch(element(3) + "," + element(7, "0")).with("FastRoaming", R"("on")")),
              kSuccess);
    control.wait_for_sleep(1);
    EXPECT_FALSE(control.is_idle());
    EXPECT_EQ(g_set_wifi_array_size, 2);
    EXPECT_EQ(worker_calls(), (Calls{{"sleep", {"1"}}}));

    control.end_sleep();
    control.wait_for_sleep(2);
    EXPECT_EQ(worker_calls(),
              (Calls{{"sleep", {"1"}}, {"devapi_set_wifi_stactrl", {"1"}}, {"sleep", {"5"}}}));
    EXPECT_FALSE(control.is_idle());

    control.end_sleep();
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("1", "on", {element_record(3), element_record(7, "0")}));
    EXPECT_EQ(control.sleeps(), (std::vector<WorkerControl::Sleep>{{1, true}, {5, true}}));
    EXPECT_EQ(control.workers(), 1u);
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetWifiInfoList, ReturnsZeroOnceItIsAccepted)
{
    const Json object = parse(batch(element(3)).json());
    EXPECT_EQ(json_set_wifi_info_list(object.get()), 0);
    control.wait_until_idle();
}

TEST_F(SetWifiInfoList, ReadsTheDeviceInOrder)
{
    control.hold_sleeps();
    send(batch(element(3)));
    Names names = recording_device::called_functions();
    std::erase(names, "sleep");
    EXPECT_EQ(names, (Names{"devapi_get_5g_wifi_index", "devapi_get_Multi_Ap_enable"}));
    for (const Call &call : recording_device::calls()) {
        if (call.function != "sleep") {
            EXPECT_EQ(call.arguments, (Names{std::string(4, '\0')})) << call.function;
        }
    }
}

TEST_F(SetWifiInfoList, IgnoresTheResultsOfApplying)
{
    when<devapi_set_wifi_stactrl>([](const char *) { return -1; });
    when<devapi_set_wifi_fastroaming>([](const char *) { return -1; });
    when<devapi_set_ssid_list_info>([](const SsidInfo *) { return -1; });
    EXPECT_EQ(send(batch(element(3) + "," + element(4))), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("1", "", {element_record(3), element_record(4)}));
}

TEST_F(SetWifiInfoList, AnEmptyListStillAppliesTheSwitches)
{
    writes<devapi_get_Multi_Ap_enable>(1);
    EXPECT_EQ(send(batch("", "0")), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("0", "", {}));
    EXPECT_EQ(g_set_wifi_array_size, 0);
}

TEST_F(SetWifiInfoList, AppliesAHugeListCompletely)
{
    constexpr int32_t kCount = 20000;
    std::string elements = element(0);
    for (int32_t index = 1; index < kCount; ++index) {
        elements += "," + element(index);
    }
    const Json object = parse(batch(elements).json());
    EXPECT_EQ(hg_process_json_cmd("SET_WIFI_INFO_LIST", object.get()), 0);
    EXPECT_EQ(print(object.get()), kSuccess);
    control.wait_until_idle();
    const Calls calls = worker_calls();
    ASSERT_EQ(calls.size(), kCount + 4u);
    for (int32_t index = 0; index < kCount; ++index) {
        ASSERT_EQ(calls[static_cast<size_t>(index) + 4].arguments[0], element_record(index));
    }
}

TEST_F(SetWifiInfoList, OnlyTheKeysOfTheBatchAreRemoved)
{
    EXPECT_EQ(run("SET_WIFI_INFO_LIST",
                  R"({"First":1,"wifilist":[],"fastroaming":"1","stactrl":"1","WIFILIST":[7],)"
                  R"("StaCtrl":2,"FastRoaming":3,"Last":[{}]})"),
              R"({"First":1,"WIFILIST":[7],"StaCtrl":2,"FastRoaming":3,"Last":[{}],"Status":"0"})");
    for (const std::string &no_text : kNoTexts) {
        EXPECT_EQ(send(batch("").with("FastRoaming", no_text)), kSuccess);
    }
}

TEST_F(SetWifiInfoList, TheWorkerAppliesWhatItIsGiven)
{
    auto *records = static_cast<SsidInfo *>(calloc(2, sizeof(SsidInfo)));
    records[1].SSIDIndex = 4;
    pthread_mutex_lock(&setwifilistlock);
    g_set_wifi_array_size = 2;
    pthread_t worker;
    ASSERT_EQ(pthread_create(&worker, nullptr, set_wifi_list_arr_thread, records), 0);
    control.wait_until_idle();
    SsidInfo last = {};
    last.SSIDIndex = 4;
    EXPECT_EQ(worker_calls(), whole_life("", "", {std::string(292, '\0'), contents(&last)}));
}

// ---- The switches ------------------------------------------------------------------------------

TEST_F(SetWifiInfoList, FastRoamingIsKeptAcrossBatches)
{
    EXPECT_EQ(send(batch("").with("FastRoaming", R"("1")")), kSuccess);
    std::vector<std::string> later = {R"("")"};
    later.insert(later.end(), kNoTexts.begin(), kNoTexts.end());
    for (const std::string &json : later) {
        EXPECT_EQ(send(batch("", "0").with("FastRoaming", json)), kSuccess);
        control.wait_until_idle();
        EXPECT_EQ(worker_calls().back(), (Call{"devapi_set_wifi_fastroaming", {"1"}})) << json;
    }
    EXPECT_EQ(send(batch("", "0")), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls().back(), (Call{"devapi_set_wifi_fastroaming", {"1"}}));
}

TEST_F(SetWifiInfoList, TheSwitchesAreCut)
{
    const std::string text = text_of_length(100000);
    EXPECT_EQ(send(batch("", text).with("FastRoaming", quoted(text))), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("abcdefg", "abcdefg", {}));
    EXPECT_EQ(send(batch("", "")), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls()[5], (Call{"devapi_set_wifi_stactrl", {""}}));
}

// ---- The mesh warning --------------------------------------------------------------------------

TEST_F(SetWifiInfoList, AppliesTheBatchDespiteTheMeshWarning)
{
    for (const std::string off : {"0", "", "abc", "00", "-0"}) {
        recording_device::reset();
        writes<devapi_get_Multi_Ap_enable>(1);
        EXPECT_EQ(send(batch(element(1, off) + "," + element(2)).with("FastRoaming", R"("1")")),
                  R"({"FastRoaming":"1",)" + failure(kMeshWarning) + "}");
        control.wait_until_idle();
        EXPECT_EQ(worker_calls(),
                  whole_life("1", "1", {element_record(1, off), element_record(2)}));
    }
}

struct MeshCase {
    const char *what;
    int32_t mesh;
    int32_t mesh_result;
    int32_t index5g;
    int32_t index5g_result;
    std::string elements;
    bool warns;
};

TEST_F(SetWifiInfoList, WarnsOfAMeshIfAMainSsidIsTurnedOff)
{
    const MeshCase cases[] = {
        {"the first SSID", 1, 0, 5, 0, element(1, "0"), true},
        {"the main SSID at 5 GHz", 1, 0, 5, 0, element(5, "0"), true},
        {"another SSID", 1, 0, 5, 0, element(2, "0") + "," + element(6, "0"), false},
        {"the last of several", 1, 0, 5, 0, element(2) + "," + element(5, "0"), true},
        {"off, then on again", 1, 0, 5, 0, element(1, "0") + "," + element(1, "1"), true},
        {"both stay on", 1, 0, 5, 0, element(1) + "," + element(5), false},
        {"on by any number", 1, 0, 5, 0, element(1, "2") + "," + element(5, "-1"), false},
        {"no 5 GHz index: the first", 1, 0, 0, 0, element(1, "0"), true},
        {"no 5 GHz index: SSID 0", 1, 0, 0, 0, element(0, "0"), true},
        {"the result of the 5 GHz index is ignored", 1, 0, 5, -1, element(5, "0"), true},
        {"the mesh is off", 0, 0, 5, 0, element(1, "0"), false},
        {"the mesh state is another number", 2, 0, 5, 0, element(1, "0"), false},
        {"the mesh state is negative", -1, 0, 5, 0, element(1, "0"), false},
        {"the result of the mesh state is ignored", 1, -1, 5, 0, element(1, "0"), true},
    };
    for (const MeshCase &one : cases) {
        writes<devapi_get_Multi_Ap_enable>(one.mesh, one.mesh_result);
        writes<devapi_get_5g_wifi_index>(one.index5g, one.index5g_result);
        EXPECT_EQ(send(batch(one.elements)),
                  one.warns ? "{" + failure(kMeshWarning) + "}" : kSuccess)
            << one.what;
        control.wait_until_idle();
    }
    EXPECT_EQ(control.workers(), std::size(cases));
}

// ---- Several batches ---------------------------------------------------------------------------

class SetWifiInfoListTwice : public WifiBatchTest {};

TEST_F(SetWifiInfoListTwice, ASecondBatchWaitsInsideTheCommand)
{
    control.hold_sleeps();
    send(batch(element(1)));
    control.wait_for_sleep(1);
    std::atomic<bool> answered = false;
    std::thread second([&] {
        EXPECT_EQ(send(batch(element(2) + "," + element(3))), kSuccess);
        answered = true;
    });
    control.wait_for_waiting_batch();
    EXPECT_FALSE(answered);
    EXPECT_EQ(control.workers(), 1u);
    EXPECT_EQ(g_set_wifi_array_size, 1);

    control.end_all_sleeps();
    second.join();
    control.wait_until_idle();
    Calls expected = whole_life("1", "", {element_record(1)});
    for (const Call &call : whole_life("1", "", {element_record(2), element_record(3)})) {
        expected.push_back(call);
    }
    EXPECT_EQ(worker_calls(), expected);
    EXPECT_EQ(control.workers(), 2u);
}

TEST_F(SetWifiInfoListTwice, ABatchWhileAWorkerSleepsChangesWhatThatOneApplies)
{
    for (const size_t sleeping : {1u, 2u}) {
        recording_device::reset();
        const size_t before = control.sleeps().size();
        control.hold_sleeps();
        send(batch(element(1), "one").with("FastRoaming", R"("first")"));
        control.wait_for_sleep(before + 1);
        if (sleeping == 2) {
            control.end_sleep();
            control.wait_for_sleep(before + 2);
        }
        std::thread second(
            [&] { send(batch(element(2), "two").with("FastRoaming", R"("second")")); });
        control.wait_for_waiting_batch();
        control.end_all_sleeps();
        second.join();
        control.wait_until_idle();
        Calls expected = whole_life(sleeping == 1 ? "two" : "one", "second", {element_record(1)});
        for (const Call &call : whole_life("two", "second", {element_record(2)})) {
            expected.push_back(call);
        }
        EXPECT_EQ(worker_calls(), expected) << "in sleep " << sleeping;
    }
}

TEST_F(SetWifiInfoListTwice, ARefusedBatchWhileAWorkerSleepsChangesItsSwitchesToo)
{
    control.hold_sleeps();
    send(batch(element(1), "one"));
    control.wait_for_sleep(1);
    EXPECT_EQ(send(batch("{}", "two").with("FastRoaming", R"("second")")),
              R"({"StaCtrl":"two","FastRoaming":"second",)" + failure("set ssid failed") + "}");
    control.end_all_sleeps();
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("two", "second", {element_record(1)}));
}

TEST_F(SetWifiInfoListTwice, ManyBatchesAtOnceAreAppliedOneAfterTheOther)
{
    constexpr int32_t kThreads = 4;
    constexpr int32_t kBatches = 10;
    std::vector<std::thread> threads;
    for (int32_t number = 1; number <= kThreads; ++number) {
        threads.emplace_back([this, number] {
            for (int32_t round = 0; round < kBatches; ++round) {
                EXPECT_EQ(send(batch(element(number) + "," + element(number), "1")
                                   .with("FastRoaming", R"("1")")),
                          kSuccess);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    control.wait_until_idle();
    const Calls calls = worker_calls();
    ASSERT_EQ(calls.size(), kThreads * kBatches * 6u);
    std::vector<int32_t> applied(kThreads + 1);
    for (size_t at = 0; at < calls.size(); at += 6) {
        const auto index = recording_device::record<SsidInfo>(calls[at + 4]).SSIDIndex;
        EXPECT_EQ(Calls(calls.begin() + at, calls.begin() + at + 6),
                  whole_life("1", "1", {element_record(index), element_record(index)}));
        ++applied[index];
    }
    EXPECT_EQ(applied, (std::vector<int32_t>{0, kBatches, kBatches, kBatches, kBatches}));
}

} // namespace wifi_batch_test
