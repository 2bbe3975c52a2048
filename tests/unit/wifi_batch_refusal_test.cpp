// Batches that never get a worker.
#include "handler_test.h"
#include "request.h"
#include "worker_control.h"

#include <cstring>

namespace wifi_batch_refusal_test {

using recording_device::when;
using Names = std::vector<std::string>;

const Request kElement({{"SSIDIndex", R"("1")"},
                        {"SSID", R"("home")"},
                        {"PWD", R"("secret")"},
                        {"ENCRYPT", R"("WPA2")"},
                        {"PowerLevel", R"("80")"},
                        {"Channel", R"("6")"},
                        {"Enable", R"("0")"}});

Request batch(const std::string &elements)
{
    return Request({{"First", "1"},
                    {"WIFILIST", "[" + elements + "]"},
                    {"StaCtrl", R"("on")"},
                    {"FastRoaming", R"("fast")"}});
}

class WifiBatchRefusalTest : public HandlerTest {
  protected:
    WifiBatchRefusalTest() { forget_switches(); }
    ~WifiBatchRefusalTest() override
    {
        EXPECT_EQ(control.workers(), 0u);
        EXPECT_TRUE(control.is_idle());
        EXPECT_TRUE(recording_host::log_lines().empty());
    }

    static void forget_switches()
    {
        memset(g_stactrl_enable, 0, sizeof g_stactrl_enable);
        memset(g_fastroaming_enable, 0, sizeof g_fastroaming_enable);
    }

    std::string send(const Request &request) { return run("SET_WIFI_INFO_LIST", request.json()); }

    // A list that was looked at goes, and nothing else.
    static std::string refused(const Request &request)
    {
        return request.without("WIFILIST").followed_by(failure("set ssid failed"));
    }

    WorkerControl control;
};

TEST_F(WifiBatchRefusalTest, WithoutAList)
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

TEST_F(WifiBatchRefusalTest, WithoutStationControl)
{
    std::vector<Request> requests = {batch(kElement.json()).without("StaCtrl")};
    for (const std::string &json : kNoTexts) {
        requests.push_back(batch(kElement.json()).with("StaCtrl", json));
    }
    for (const Request &request : requests) {
        EXPECT_EQ(send(request), request.followed_by(failure("json node: StaCtrl not found")));
    }
    EXPECT_STREQ(g_stactrl_enable, "");
    EXPECT_STREQ(g_fastroaming_enable, "");
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(WifiBatchRefusalTest, ForAnElementWithoutOneOfItsKeys)
{
    const std::string good = kElement.json();
    for (const auto &[key, json] : kElement.keys()) {
        std::vector<std::string> elements = {kElement.without(key).json()};
        for (const std::string &no_text : kNoTexts) {
            elements.push_back(kElement.with(key, no_text).json());
        }
        for (const std::string &bad : elements) {
            for (const std::string &list : {bad, bad + "," + good, good + "," + bad}) {
                EXPECT_EQ(send(batch(list)), refused(batch(list)));
            }
        }
    }
}

TEST_F(WifiBatchRefusalTest, ForAnElementThatIsNoObject)
{
    const std::string good = kElement.json();
    for (const std::string bad : {"null", "7", R"("SSID")", "true", "[]", "{}", "[[[[]]]]"}) {
        EXPECT_EQ(send(batch(good + "," + bad)), refused(batch("")));
    }
    EXPECT_EQ(send(batch("[" + good + "]")), refused(batch("")));
    EXPECT_EQ(send(batch(R"({"WIFILIST":[)" + good + "]}")), refused(batch("")));
}

TEST_F(WifiBatchRefusalTest, HasChangedTheSwitchesAllTheSame)
{
    EXPECT_EQ(send(batch("{}")), refused(batch("")));
    EXPECT_STREQ(g_stactrl_enable, "on");
    EXPECT_STREQ(g_fastroaming_enable, "fast");
    EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_5g_wifi_index"});
}

TEST_F(WifiBatchRefusalTest, ForAWorkerThatCannotBeStarted)
{
    when<devapi_get_Multi_Ap_enable>([](int32_t *enable) {
        *enable = 1;
        return 0;
    });
    for (const std::string &list : {kElement.json(), std::string()}) {
        control.fail_next_worker();
        EXPECT_EQ(send(batch(list)), refused(batch("")));
        EXPECT_TRUE(control.is_idle());
    }
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_5g_wifi_index", "devapi_get_5g_wifi_index"}));
}

} // namespace wifi_batch_refusal_test
