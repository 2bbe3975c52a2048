// One batch at a time, from the reply to the end of its worker.
#include "wifi.h"
#include "wifi_batch_fixture.h"

namespace wifi_batch_worker_test {

using recording_device::contents;
using recording_device::when;
using Names = std::vector<std::string>;

// The request to turn off the mesh first, as the apps have to receive it.
constexpr char kMeshWarning[] = "\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5mesh\xBF\xAA\xB9\xD8!";

void mesh_is(int32_t state, int32_t result = 0)
{
    when<devapi_get_Multi_Ap_enable>([=](int32_t *enable) {
        *enable = state;
        return result;
    });
}

void main_5g_ssid_is(int32_t index, int32_t result = 0)
{
    when<devapi_get_5g_wifi_index>([=](int32_t *out) {
        *out = index;
        return result;
    });
}

// Before main(), and so before any batch.
const int32_t size_at_start = g_set_wifi_array_size;
const std::string switches_at_start = std::string(g_stactrl_enable) + g_fastroaming_enable;

TEST_F(WifiBatchTest, NothingIsKnownBeforeTheFirst)
{
    EXPECT_EQ(size_at_start, 0);
    EXPECT_EQ(switches_at_start, "");
}

// ---- The life of a batch -----------------------------------------------------------------------

TEST_F(WifiBatchTest, IsAppliedAfterTheReply)
{
    control.hold_sleeps();
    EXPECT_EQ(send(batch(element(3) + "," + element(7, "0")).with("FastRoaming", R"("on")")),
              kSuccess);
    control.wait_for_sleep(1);
    EXPECT_FALSE(control.is_idle());
    EXPECT_EQ(g_set_wifi_array_size, 2);
    EXPECT_EQ(worker_calls(), (std::vector<Call>{{"sleep", {"1"}}}));

    control.end_sleep();
    control.wait_for_sleep(2);
    EXPECT_EQ(worker_calls(),
              (std::vector<Call>{
                  {"sleep", {"1"}}, {"devapi_set_wifi_stactrl", {"1"}}, {"sleep", {"5"}}}));
    EXPECT_FALSE(control.is_idle());

    control.end_sleep();
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("1", "on", {element_record(3), element_record(7, "0")}));
    EXPECT_EQ(control.sleeps(), (std::vector<WorkerControl::Sleep>{{1, true}, {5, true}}));
    EXPECT_EQ(control.workers(), 1u);
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WifiBatchTest, ReturnsZeroOnceItIsAccepted)
{
    const Json object = parse(batch(element(3)).json());
    EXPECT_EQ(json_set_wifi_info_list(object.get()), 0);
    control.wait_until_idle();
}

TEST_F(WifiBatchTest, AsksTheDeviceInOrder)
{
    control.hold_sleeps();
    send(batch(element(3)));
    Names names = recording_device::called_functions();
    std::erase(names, "sleep");
    EXPECT_EQ(names, (Names{"devapi_get_5g_wifi_index", "devapi_get_Multi_Ap_enable"}));
    for (const Call &call : recording_device::calls()) {
        if (call.function != "sleep") {
            EXPECT_EQ(call.arguments, (std::vector<std::string>{std::string(4, '\0')}))
                << call.function;
        }
    }
}

TEST_F(WifiBatchTest, TheResultsOfApplyingAreIgnored)
{
    when<devapi_set_wifi_stactrl>([](const char *) { return -1; });
    when<devapi_set_wifi_fastroaming>([](const char *) { return -1; });
    when<devapi_set_ssid_list_info>([](const SsidInfo *) { return -1; });
    EXPECT_EQ(send(batch(element(3) + "," + element(4))), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("1", "", {element_record(3), element_record(4)}));
}

TEST_F(WifiBatchTest, AnEmptyListStillAppliesTheSwitches)
{
    mesh_is(1);
    EXPECT_EQ(send(batch("", "0")), kSuccess);
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("0", "", {}));
    EXPECT_EQ(g_set_wifi_array_size, 0);
}

TEST_F(WifiBatchTest, AHugeListIsAppliedWhole)
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
    const std::vector<Call> calls = worker_calls();
    ASSERT_EQ(calls.size(), kCount + 4u);
    for (int32_t index = 0; index < kCount; ++index) {
        ASSERT_EQ(calls[static_cast<size_t>(index) + 4].arguments[0], element_record(index));
    }
}

TEST_F(WifiBatchTest, OnlyTheBatchsOwnKeysAreConsumed)
{
    EXPECT_EQ(run("SET_WIFI_INFO_LIST",
                  R"({"First":1,"wifilist":[],"fastroaming":"1","stactrl":"1","WIFILIST":[7],)"
                  R"("StaCtrl":2,"FastRoaming":3,"Last":[{}]})"),
              R"({"First":1,"WIFILIST":[7],"StaCtrl":2,"FastRoaming":3,"Last":[{}],"Status":"0"})");
    for (const std::string &no_text : kNoTexts) {
        EXPECT_EQ(send(batch("").with("FastRoaming", no_text)), kSuccess);
    }
}

TEST_F(WifiBatchTest, TheWorkerAppliesWhatItIsGiven)
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

TEST_F(WifiBatchTest, FastRoamingIsKeptAcrossBatches)
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

TEST_F(WifiBatchTest, TheSwitchesAreCut)
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

TEST_F(WifiBatchTest, TheMeshWarningIsOnlyAWarning)
{
    for (const std::string off : {"0", "", "abc", "00", "-0"}) {
        recording_device::reset();
        mesh_is(1);
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

TEST_F(WifiBatchTest, TheMeshWarningComesForAMainSsidThatGoesOff)
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
        mesh_is(one.mesh, one.mesh_result);
        main_5g_ssid_is(one.index5g, one.index5g_result);
        EXPECT_EQ(send(batch(one.elements)),
                  one.warns ? "{" + failure(kMeshWarning) + "}" : kSuccess)
            << one.what;
        control.wait_until_idle();
    }
    EXPECT_EQ(control.workers(), std::size(cases));
}

} // namespace wifi_batch_worker_test
