// Quality of service: its switch, and the priorities of applications.
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

namespace qos_test {

using recording_device::Call;
using recording_device::when;

constexpr int32_t kFailures[] = {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX};

// Texts with the number that the first seven bytes of each begin with.
const std::pair<std::string, int32_t> kNumbers[] = {{"1", 1},
                                                    {"0", 0},
                                                    {"", 0},
                                                    {"abc", 0},
                                                    {" 12x", 12},
                                                    {"-3", -3},
                                                    {"+4", 4},
                                                    {"007", 7},
                                                    {"x1", 0},
                                                    {"1.9", 1},
                                                    {"9999999", 9999999},
                                                    {"12345678", 1234567},
                                                    {"-1234567", -123456},
                                                    {"       5", 0}};

class QosTest : public HandlerTest {};

// ---- SET_QOS_ENABLE ----------------------------------------------------------------------------

constexpr char kSwitch[] = "SET_QOS_ENABLE";
const Request kOn = Request({}).with("Enable", R"("1")");

TEST_F(QosTest, SwitchesByTheNumberThatTheTextBeginsWith)
{
    for (const auto &[text, number] : kNumbers) {
        EXPECT_EQ(run(kSwitch, kOn.with("Enable", quoted(text)).with("Other", "1").json()),
                  R"({"Other":1,"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back(),
                  (Call{"devapi_set_qos_enable", {std::to_string(number)}}))
            << text;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosTest, ASwitchNeedsItsText)
{
    std::vector<Request> requests = {Request({}), Request({}).with("Other", R"("1")")};
    for (const std::string &no_text : kNoTexts) {
        requests.push_back(kOn.with("Enable", no_text));
    }
    for (const Request &request : requests) {
        EXPECT_EQ(run(kSwitch, request.json()),
                  request.followed_by(failure("get param:enable err")));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(QosTest, ASwitchThatFailsIsConsumedToo)
{
    for (const int32_t result : kFailures) {
        when<devapi_set_qos_enable>([result](int32_t) { return result; });
        EXPECT_EQ(run(kSwitch, R"({"enable":"1","Enable":"2"})"),
                  R"({"Enable":"2",)" + failure("Set qos enable failed") + "}");
        EXPECT_EQ(recording_device::calls().back().arguments[0], "1");
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- SET_QOS_APP_INFO --------------------------------------------------------------------------

constexpr char kPriority[] = "SET_QOS_APP_INFO";
const Request kApplication({{"Id", R"("3")"}, {"PriorityLevel", R"("high")"}});

TEST_F(QosTest, SetsThePriorityOfAnApplication)
{
    EXPECT_EQ(run(kPriority, kApplication.with("Name", R"("kept")").json()),
              R"({"Name":"kept","Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_set_qos_app_info", {"3", "high"}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosTest, AnApplicationIsANumberOfAnyLength)
{
    const std::pair<const char *, const char *> numbers[] = {{"", "0"},
                                                             {"abc", "0"},
                                                             {" 12x", "12"},
                                                             {"-3", "-3"},
                                                             {"12345678", "12345678"},
                                                             {"2147483647", "2147483647"},
                                                             {"00000000000000000001", "1"}};
    for (const auto &[text, number] : numbers) {
        EXPECT_EQ(run(kPriority, kApplication.with("Id", quoted(text)).json()),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back().arguments[0], number);
    }
}

TEST_F(QosTest, APriorityIsCut)
{
    for (const size_t length : {0u, 6u, 7u, 8u, 100000u}) {
        const std::string text = text_of_length(length);
        EXPECT_EQ(run(kPriority, kApplication.with("PriorityLevel", quoted(text)).json()),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back().arguments[1], text.substr(0, 7));
    }
}

TEST_F(QosTest, APriorityNeedsBothKeys)
{
    for (const auto &[key, json] : kApplication.keys()) {
        std::vector<Request> requests = {kApplication.without(key), Request({})};
        for (const std::string &no_text : kNoTexts) {
            requests.push_back(kApplication.with(key, no_text));
        }
        for (const Request &request : requests) {
            EXPECT_EQ(run(kPriority, request.json()),
                      request.followed_by(failure("json param is null")));
        }
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosTest, APriorityThatFailsIsConsumedToo)
{
    for (const int32_t result : kFailures) {
        when<devapi_set_qos_app_info>([result](int32_t, const char *) { return result; });
        EXPECT_EQ(
            run(kPriority, R"({"id":"1","prioritylevel":"a",)" + kApplication.json().substr(1)),
            kApplication.followed_by(failure("set qos app info failed")));
        EXPECT_EQ(recording_device::calls().back(), (Call{"devapi_set_qos_app_info", {"1", "a"}}));
    }
}

TEST_F(QosTest, WithoutMemoryNothingIsSet)
{
    const std::pair<const char *, std::pair<Request, const char *>> settings[] = {
        {kSwitch, {kOn, "Set qos enable failed"}},
        {kPriority, {kApplication, "set qos app info failed"}}};
    for (const auto &[command, setting] : settings) {
        const char *text = setting.second;
        const size_t allocations = sweep_memory(
            command, setting.first.json(), [] {},
            [text](const std::string &object, FailingMemory::Fail how) {
                EXPECT_EQ(object,
                          how == FailingMemory::Fail::kOnce ? "{" + failure(text) + "}" : "{}");
                EXPECT_TRUE(recording_device::calls().empty());
            });
        EXPECT_EQ(allocations, 1u);
    }
}

TEST_F(QosTest, WhatIsNoObjectIsLeftAlone)
{
    const std::string text = R"([{"Enable":"1","Id":"1","PriorityLevel":"1"}])";
    for (const char *command : {kSwitch, kPriority}) {
        EXPECT_EQ(hg_process_json_cmd(command, nullptr), 0);
        const Json array = parse(text);
        EXPECT_EQ(hg_process_json_cmd(command, array.get()), 0);
        EXPECT_EQ(print(array.get()), text) << command;
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace qos_test
