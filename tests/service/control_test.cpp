// SPDX-License-Identifier: MIT
// Control of the simulated gateway through a service.
#include "service_process.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace service_control_test {

constexpr char kDone[] = R"({"id":1,"result":0,"reply":{}})";
constexpr char kName[] = R"({"id":2,"command":"GET_HG_BASE_INFO"})";

std::string control(const std::string &value)
{
    return R"({"id":1,"control":)" + value + "}";
}

TEST(ServiceControl, IsForTheOwner)
{
    const ServiceProcess service;
    const auto client = service.client();
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask_json(R"({"id":1,"subscribe":"device.*"})")["result"], 0);
    EXPECT_EQ(client->ask(control(R"({"faults":["devapi_get_sn_info=-1*1"]})")), kDone);
    EXPECT_EQ(client->ask(control(R"({"trace":true})")), kDone);
    EXPECT_THAT(client->ask(R"({"id":3,"command":"GET_SN_INFO"})"), HasSubstr("get sn failed"));
    const auto event = watcher->await_event("device.call");
    EXPECT_EQ(event["command"], "GET_SN_INFO");
    EXPECT_EQ(event["result"], -1);
    EXPECT_EQ(client->ask(control(R"({"trace":false})")), kDone);
    EXPECT_EQ(client->ask_json(control(R"({"show":{}})"))["reply"]["faults"],
              nlohmann::json::array());
    EXPECT_EQ(client->ask_json(control(R"({"clock":"noon"})"))["code"], "bad-request");
}

TEST(ServiceControl, AnswersBadControlsAsServeDoes)
{
    const ServiceProcess service;
    const auto client = service.client();
    for (const char *value :
         {"null", "[]", "{}", "7", R"("show")", R"({"castle":1})", R"({"show":{},"show":{}})",
          R"({"show":{},"trace":true})", R"({"faults":7})", R"({"clock":{}})"}) {
        EXPECT_EQ(client->ask_json(control(value))["code"], "bad-request") << value;
    }
    for (const char *line : {R"({"id":1,"control":{"show":{}},"command":"GET_SN_INFO"})",
                             R"({"id":1,"control":{"show":{}},"control":{"trace":true}})",
                             R"({"id":1,"control":{)", R"({"id":1,"control":{"show":{}})"}) {
        EXPECT_EQ(client->ask_json(line)["code"], "bad-request") << line;
    }
    EXPECT_EQ(client->ask(control(R"({"faults":[]})")), kDone);
}

// The worker process is started with the scenario of the command line each time.
TEST(ServiceControl, KeepsTheHomeWhenTheWorkerIsRestarted)
{
    const ServiceProcess service({}, {"--scenario=three_storey_house"});
    const auto client = service.client();
    EXPECT_EQ(client->ask(control(R"({"scenario":"operator_variant"})")), kDone);
    EXPECT_EQ(client->ask(control(R"({"faults":["devapi_get_sn_info=-1"]})")), kDone);
    EXPECT_THAT(client->ask(kName), HasSubstr("Casa Arven"));
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask_json(R"({"id":1,"subscribe":"worker.started"})")["result"], 0);
    ASSERT_EQ(kill(service.worker(), SIGKILL), 0);
    EXPECT_EQ(watcher->await_event("worker.started")["starts"], 2);
    EXPECT_THAT(client->ask(kName), HasSubstr("Casa Arven"));
    EXPECT_EQ(client->ask_json(control(R"({"show":{}})"))["reply"]["faults"],
              nlohmann::json::array())
        << "the fault plan belongs to the process";
}

} // namespace service_control_test
