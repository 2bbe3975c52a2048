// SPDX-License-Identifier: MIT
// hgagent run: many clients at once, and a misbehaving worker.
#include "service_process.h"

#include "agent_commands.h"
#include "invalid_lines.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using testing::AnyOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace run_test {

constexpr char kQuestion[] = R"({"id":"last","command":"GET_SN_INFO"})";
constexpr char kAnswer[] = R"({"id":"last","result":0,"reply":{"Status":"0",)"
                           R"("MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1",)"
                           R"("DeviceType":"HGU-AX3000"}})";
constexpr char kSubscribe[] = R"({"id":"s","subscribe":"*"})";
constexpr char kSubscribed[] = R"({"id":"s","result":0})";

const std::vector<std::string> kPlugin = {"--plugin=" SERVICE_PLUGIN};

std::string code_of(const std::string &answer)
{
    return nlohmann::json::parse(answer).value("code", "");
}

// A client whose command is running.
std::unique_ptr<TestClient> ready_client(const ServiceProcess &service)
{
    auto client = service.client();
    EXPECT_EQ(client->ask_json(request(0, "NO_SUCH_COMMAND"))["result"], -3);
    return client;
}

std::vector<nlohmann::json> records_of(const std::string &audit)
{
    std::vector<nlohmann::json> records;
    std::ifstream lines(audit);
    for (std::string line; std::getline(lines, line);) {
        records.push_back(nlohmann::json::parse(line));
    }
    return records;
}

// Commands with their codes: "ECHO busy".
std::vector<std::string> codes_in(const std::string &audit)
{
    std::vector<std::string> codes;
    for (const nlohmann::json &record : records_of(audit)) {
        codes.push_back(record.value("command", "") + " " + record.value("code", ""));
    }
    return codes;
}

int pid_of(TestClient &client)
{
    return client.ask_json(request(0, "PID"))["reply"]["pid"];
}

// ---- Clients ------------------------------------------------------------------------------------

TEST(Run, AnswersEachClientInItsOrder)
{
    const ServiceProcess service;
    std::vector<std::unique_ptr<TestClient>> clients;
    for (int number = 0; number < 8; ++number) {
        clients.push_back(service.client());
        std::string lines;
        for (int id = 0; id < 12; ++id) {
            lines += request(number * 100 + id, "GET_SN_INFO") + "\n";
        }
        clients.back()->send(lines);
    }
    for (int number = 7; number >= 0; --number) {
        for (int id = 0; id < 12; ++id) {
            EXPECT_THAT(clients[static_cast<size_t>(number)]->read_line(),
                        StartsWith(R"({"id":)" + std::to_string(number * 100 + id) +
                                   R"(,"result":0,"reply":{"Status":"0")"));
        }
    }
}

TEST(Run, AnswersBadLinesAsServeDoes)
{
    const std::vector<std::string> bad_lines = invalid_lines({
        R"({"id":1e999,"command":"GET_SN_INFO"})",
        R"({"id":1,"command":7})",
        R"({"id":1,"command":"GET_SN_INFO","params":7})",
        R"({"id":1})",
        R"({"id":{"a":[1,"}"]},"command":"NO_SUCH_COMMAND","params":{"b":1.50}})",
        R"({"id":1,"notice":{}})",
        R"({"id":1,"report":7})",
        R"({"id":1,"report":"nothing"})",
        R"({"id":1,"comm\u0061nd":"GET_SN\u005fINFO"})",
        "\xef\xbb\xbf{\"id\":1,\"command\":\"GET_SN_INFO\"}",
        "{ \"id\" : 1 ,\t\"command\" : \"GET_SN_INFO\" }\r",
        R"({"command":"GET_SN_INFO","id":2,"id":3})",
        R"({"id":1,"command":"GET_SN_INFO)",
        R"({"id":1,"command":"GET_SN_INFO",})",
        R"({"id":1 "command":"GET_SN_INFO"})",
        R"({"id":tru"e,"command":"GET_SN_INFO"})",
        R"({"id":01,"command":"GET_SN_INFO"})",
        "{\"id\":1,\"command\":\"GET_SN_INFO\"}" + std::string(1024UL * 1024, ' '),
    });
    std::string input;
    for (const std::string &line : bad_lines) {
        input += line + "\n";
    }
    const std::vector<std::string> expected = lines_of(serve(input).output);
    ASSERT_EQ(expected.size(), bad_lines.size());

    const ServiceProcess service;
    const auto client = service.client();
    for (size_t at = 0; at < bad_lines.size(); ++at) {
        EXPECT_EQ(client->ask(bad_lines[at]), expected[at]) << bad_lines[at].substr(0, 80);
    }
    EXPECT_EQ(client->ask(kQuestion), kAnswer);
}

TEST(Run, DoesNotGuessWhatALineAsksFor)
{
    const ServiceProcess service;
    const auto client = service.client();
    for (const char *line : {R"({"id":1,"command":"GET_SN_INFO","command":"GET_WIFI_INFO"})",
                             R"({"id":1,"hello":{},"command":"GET_SN_INFO"})",
                             R"({"id":1,"report":"topology","comm\u0061nd":"GET_SN_INFO"})"}) {
        EXPECT_EQ(client->ask(line), R"({"id":1,"error":"the line has more than one request",)"
                                     R"("code":"bad-request"})");
    }
}

TEST(Run, SaysHelloWithItsEpoch)
{
    ServiceProcess service;
    const auto epoch = [&] {
        const auto answer = service.client()->ask_json(R"({"id":[1],"hello":{}})");
        EXPECT_EQ(answer["id"], nlohmann::json::array({1}));
        EXPECT_EQ(answer["reply"]["service"], PROJECT_VERSION);
        EXPECT_TRUE(answer["reply"].contains("protocol"));
        return answer["reply"]["epoch"].get<std::string>();
    };
    const std::string first = epoch();
    EXPECT_THAT(first, ContainsRegex("^[0-9a-f]{16}$"));
    EXPECT_EQ(epoch(), first);
    service.stop(SIGTERM);
    service.start();
    EXPECT_NE(epoch(), first);
}

TEST(Run, AnswersWhoHalfCloses)
{
    const ServiceProcess service;
    const auto client = service.client();
    client->send(std::string(kQuestion) + "\n" + kQuestion); // the last line has no end
    client->end_output();
    EXPECT_EQ(client->read_line(), kAnswer);
    EXPECT_EQ(client->read_line(), kAnswer);
    EXPECT_EQ(client->read_line(), "");
}

TEST(Run, GoesOnAfterClientsThatVanish)
{
    const ServiceProcess service({}, kPlugin);
    const Gatepost gate;
    const auto first = ready_client(service);
    first->send_line(request(1, "WAIT", gate.params()));
    first->close(); // while its command is running
    for (int count = 0; count < 20; ++count) {
        const auto client = service.client();
        client->send_line(request(1, "ECHO"));
        client->send("{\"id\":2,\"comm"); // half a line
        if (count % 2 == 0) {
            // Unread data at close() causes a connection reset.
            client->send_line("rubbish");
        }
    }
    await_reading(service);
    gate.open();
    // Those that were waiting were dropped with their clients.
    EXPECT_EQ(service.client()->ask_json(request(1, "ECHO"))["reply"]["echoed"], 1);
}

TEST(Run, AuditsTheRequestsOfClientsThatVanish)
{
    const std::string audit = new_path("audit");
    ServiceProcess service({"--audit=" + audit}, kPlugin);
    const Gatepost gate;
    const auto first = ready_client(service);
    first->send_line(request(1, "WAIT", gate.params()));
    first->send_line(request(2, "PID"));
    const auto second = service.client();
    second->send_line(request(3, "ECHO"));
    await_reading(service);
    first->close();
    second->close();
    await_reading(service);
    gate.open();
    EXPECT_EQ(service.client()->ask_json(request(4, "ECHO"))["reply"]["echoed"], 1);
    service.stop(SIGTERM);
    EXPECT_THAT(codes_in(audit), UnorderedElementsAre("NO_SUCH_COMMAND ", "WAIT outcome-unknown",
                                                      "PID not-run", "ECHO not-run", "ECHO "));
    for (const nlohmann::json &record : records_of(audit)) {
        if (record.value("code", "") == "not-run") {
            EXPECT_GT(record["waited_us"], 0);
            EXPECT_EQ(record["worked_us"], 0);
        }
    }
}

TEST(Run, AuditsRequestsThatAreRefusedInTheQueue)
{
    const std::string audit = new_path("audit");
    ServiceProcess service({"--audit=" + audit}, kPlugin);
    const Gatepost gate;
    const auto running = ready_client(service);
    running->send_line(request(1, "WAIT", gate.params()));
    const auto waiting = service.client();
    waiting->send_line(request(2, "ECHO"));
    await_reading(service);
    service.process().signal(SIGTERM);
    EXPECT_EQ(code_of(waiting->read_line()), "busy");
    gate.open();
    EXPECT_EQ(code_of(running->read_line()), "");
    EXPECT_EQ(service.process().wait().exit_status, 0);
    EXPECT_THAT(codes_in(audit), ElementsAre("NO_SUCH_COMMAND ", "ECHO busy", "WAIT "));
}

TEST(Run, TakesManyClientsThatSayNothing)
{
    const ServiceProcess service;
    // SERVICE_CONNECTS in the environment is how many.
    const char *wanted = getenv("SERVICE_CONNECTS");
    for (int left = wanted != nullptr ? std::stoi(wanted) : 2000; left > 0; --left) {
        const auto client = service.client();
    }
    EXPECT_EQ(service.client()->ask(kQuestion), kAnswer);
}

// ---- Turns and limits ---------------------------------------------------------------------------

TEST(Run, RefusesWhatAQueueHasNoRoomFor)
{
    const ServiceProcess service({}, kPlugin);
    const Gatepost gate;
    const auto client = ready_client(service);
    client->send_line(request(0, "WAIT", gate.params()));
    for (int id = 1; id <= 20; ++id) {
        client->send_line(request(id, "ECHO"));
    }
    const auto other = service.client();
    other->send_line(request(1, "ECHO")); // queues are each client's own
    gate.open();
    for (int id = 0; id <= 20; ++id) {
        const auto answer = nlohmann::json::parse(client->read_line());
        EXPECT_EQ(answer["id"], id);
        EXPECT_EQ(answer.value("code", "none"), id <= 16 ? "none" : "busy") << answer;
    }
    EXPECT_EQ(code_of(other->read_line()), "");
}

TEST(Run, ServesClientsInTurn)
{
    const ServiceProcess service({}, kPlugin);
    const Gatepost gate;
    const auto blocking = ready_client(service);
    blocking->send_line(request(0, "WAIT", gate.params()));
    const auto greedy = service.client();
    for (int id = 0; id < 16; ++id) {
        greedy->send_line(request(id, "ECHO"));
    }
    const auto modest = service.client();
    modest->send_line(request(0, "ECHO"));
    await_reading(service);
    gate.open();
    EXPECT_EQ(nlohmann::json::parse(modest->read_line())["reply"]["echoed"], 2);
    EXPECT_EQ(nlohmann::json::parse(greedy->read_line())["reply"]["echoed"], 1);
    EXPECT_EQ(nlohmann::json::parse(greedy->read_line())["reply"]["echoed"], 3);
}

TEST(Run, LimitsClients)
{
    const ServiceProcess service({"--max-clients=2"});
    const auto first = service.client();
    const auto second = service.client();
    EXPECT_EQ(first->ask(kQuestion), kAnswer);
    EXPECT_EQ(second->ask(kQuestion), kAnswer);
    const auto third = service.client();
    EXPECT_EQ(third->read_line(),
              R"({"id":null,"error":"the service has 2 clients already","code":"busy"})");
    EXPECT_EQ(third->read_line(), "");
    EXPECT_EQ(first->ask(kQuestion), kAnswer);
}

TEST(Run, LimitsLines)
{
    const ServiceProcess service({"--max-line=100"});
    const auto client = service.client();
    client->send(std::string(150, ' '));
    EXPECT_EQ(client->read_line(),
              R"({"id":null,"error":"the line is longer than 100 bytes","code":"too-large"})");
    client->send(std::string(100000, ' ') + "\n"); // the rest of it
    EXPECT_EQ(client->ask(kQuestion), kAnswer);
    EXPECT_EQ(code_of(client->ask(std::string(101, ' '))), "too-large");
    EXPECT_EQ(client->ask(std::string(60, ' ') + kQuestion), kAnswer);
}

TEST(Run, WaitsForAClientThatDoesNotRead)
{
    const std::string audit = new_path("audit");
    const ServiceProcess service({"--max-pending-output=1000000", "--audit=" + audit}, kPlugin);
    const auto lazy = service.client();
    constexpr int kCount = 12;
    for (int id = 0; id < kCount; ++id) {
        lazy->send_line(request(id, "FLOOD", R"({"count":"1000000"})"));
    }
    const auto other = service.client();
    for (int id = 0; id < kCount; ++id) {
        EXPECT_EQ(code_of(other->ask(request(id, "ECHO"))), "");
    }
    // Clients take turns, so all would have been run by now.
    EXPECT_LE(std::ranges::count(codes_in(audit), "FLOOD "), 3);
    for (int id = 0; id < kCount; ++id) {
        const auto answer = nlohmann::json::parse(lazy->read_line());
        EXPECT_EQ(answer["id"], id);
        EXPECT_EQ(answer["reply"]["text"].get<std::string>().size(), 1000000U);
    }
}

TEST(Run, StopsReadingFromAClientThatDoesNotReadRefusals)
{
    const ServiceProcess service({"--max-pending-output=100000"});
    const auto lazy = service.client();
    const std::string line = "{}" + std::string(997, ' ') + "\n";
    std::string lines;
    for (int count = 0; count < 100; ++count) {
        lines += line;
    }
    constexpr size_t kMuch = 16'000'000;
    size_t sent = 0;
    for (int stuck = 0; sent < kMuch && stuck < 3;) {
        const size_t begin = sent % line.size();
        const ssize_t count =
            ::send(lazy->descriptor(), lines.data() + begin, lines.size() - begin, MSG_DONTWAIT);
        if (count > 0) {
            sent += static_cast<size_t>(count);
            stuck = 0;
        } else {
            await_reading(service);
            ++stuck;
        }
    }
    EXPECT_LT(sent, kMuch);
    const std::string refusal = lazy->read_line();
    EXPECT_EQ(code_of(refusal), "bad-request");
    for (size_t left = sent / line.size() - 1; left > 0; --left) {
        ASSERT_EQ(lazy->read_line(), refusal);
    }
    lazy->send(std::string_view(line).substr(sent % line.size()));
    EXPECT_EQ(lazy->read_line(), refusal);
    EXPECT_EQ(lazy->ask(kQuestion), kAnswer);
}

TEST(Run, LimitsSubscriptions)
{
    const ServiceProcess service;
    const auto client = service.client();
    const auto subscribe = [&](const std::string &pattern) {
        return code_of(client->ask(R"({"id":1,"subscribe":")" + pattern + "\"}"));
    };
    for (int number = 0; number < 32; ++number) {
        EXPECT_EQ(subscribe("update." + std::to_string(number)), "");
    }
    EXPECT_EQ(subscribe("update.32"), "bad-request");
    EXPECT_EQ(code_of(client->ask(R"({"id":1,"unsubscribe":"update.7"})")), "");
    EXPECT_EQ(subscribe(std::string(129, 'x')), "bad-request");
    EXPECT_EQ(subscribe(""), "bad-request");
    EXPECT_EQ(subscribe(std::string(128, 'x')), "");
}

TEST(Run, LeavesAClientThatDoesNotReadEvents)
{
    const ServiceProcess service({"--max-pending-output=1000"}, kPlugin);
    const auto lazy = service.client();
    EXPECT_EQ(lazy->ask(kSubscribe), kSubscribed);
    const auto busy = service.client();
    const std::string event =
        R"({\"event\":\"test\",\"data\":{\"text\":\")" + std::string(50000, 'x') + R"(\"}}\n)";
    for (int id = 0; id < 20; ++id) {
        EXPECT_EQ(
            code_of(busy->ask(request(id, "WRITE", R"({"count":"1","text":")" + event + "\"}"))),
            "");
    }
    size_t events = 0;
    while (!lazy->read_line().empty()) {
        ++events;
    }
    EXPECT_LT(events, 20U);
}

TEST(Run, DisconnectsWhoIsIdle)
{
    const ServiceProcess service({"--idle-seconds=1"}, kPlugin);
    const Gatepost gate;
    const auto subscriber = service.client();
    EXPECT_EQ(subscriber->ask(R"({"id":"s","subscribe":"reboot.*"})"), kSubscribed);
    const auto waiting = service.client();
    waiting->send_line(request(1, "WAIT", gate.params()));
    const auto idle = service.client();
    EXPECT_EQ(idle->read_line(), "");
    gate.open();
    EXPECT_EQ(code_of(waiting->read_line()), "");
    EXPECT_EQ(subscriber->ask(R"({"unsubscribe":"reboot.*"})"), R"({"id":null,"result":0})");
}

TEST(Run, GoesOnWithoutDescriptors)
{
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few = {40, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    const ServiceProcess service;
    setrlimit(RLIMIT_NOFILE, &before);
    // The sanitizer needs descriptors to inspect objects of a new type.
    ready_client(service)->close();
    await_reading(service);
    std::vector<std::unique_ptr<TestClient>> clients;
    std::string answer;
    while (answer != R"({"id":null,"error":"the service has no descriptors left",)"
                     R"("code":"busy"})") {
        clients.push_back(service.client());
        answer = clients.back()->ask(kQuestion);
        ASSERT_FALSE(answer.empty());
        ASSERT_LT(clients.size(), 100U);
    }
    EXPECT_EQ(clients.front()->ask(kQuestion), kAnswer);
    clients.clear();
    EXPECT_EQ(service.client()->ask(kQuestion), kAnswer);
}

// ---- The worker ---------------------------------------------------------------------------------

TEST(Run, KillsAWorkerWhoseCommandTakesTooLong)
{
    TimeLimit limit;
    ServiceProcess service({limit.option()}, kPlugin);
    const Gatepost gate;
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    const int before = pid_of(*client);
    limit.send_overdue(service, *client, request(7, "WAIT", gate.params()));
    EXPECT_EQ(client->read_line(),
              R"({"id":7,"error":"WAIT has taken more than 1 seconds","code":"timeout"})");
    EXPECT_EQ(watcher->await_event("worker.killed"),
              nlohmann::json({{"command", "WAIT"}, {"seconds", 1}}));
    EXPECT_EQ(watcher->await_event("worker.started")["starts"], 2);
    EXPECT_NE(pid_of(*client), before);
    EXPECT_NE(kill(before, 0), 0) << "the old one is still there";
}

TEST(Run, GivesADeviceCallThatSleepsUp)
{
    TimeLimit limit;
    ServiceProcess service({limit.option()}, {"--fault=devapi_get_sn_info=0*1@3600000ms"});
    const auto client = service.client();
    limit.send_overdue(service, *client, kQuestion);
    EXPECT_EQ(code_of(client->read_line()), "timeout");
    EXPECT_EQ(code_of(client->ask(request(1, "GET_HG_BASE_INFO"))), "");
}

TEST(Run, ServesFiftyClientsBesideOneThatNeverReturns)
{
    TimeLimit limit;
    ServiceProcess service({limit.option()}, kPlugin);
    const Gatepost gate;
    const auto stuck = service.client();
    limit.send_overdue(service, *stuck, request(0, "WAIT", gate.params()));
    std::vector<std::unique_ptr<TestClient>> clients;
    for (int id = 1; id <= 50; ++id) {
        clients.push_back(service.client());
        clients.back()->send_line(request(id, "ECHO"));
    }
    EXPECT_EQ(code_of(stuck->read_line()), "timeout");
    for (int id = 1; id <= 50; ++id) {
        const auto answer =
            nlohmann::json::parse(clients[static_cast<size_t>(id - 1)]->read_line());
        EXPECT_EQ(answer["id"], id);
        EXPECT_EQ(answer["result"], 0);
    }
}

TEST(Run, ReportsACrash)
{
    ServiceProcess service({}, kPlugin);
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    EXPECT_EQ(client->ask(request(7, "ABORT")),
              R"({"id":7,"error":"the worker was killed by signal 6 (Aborted) while it ran ABORT",)"
              R"("code":"outcome-unknown"})");
    EXPECT_EQ(watcher->await_event("worker.crashed"),
              nlohmann::json({{"signal", 6}, {"command", "ABORT"}, {"crashes", 1}}));
    EXPECT_EQ(code_of(client->ask(request(8, "ECHO"))), "");
    EXPECT_EQ(code_of(client->ask(request(9, "EXIT"))), "outcome-unknown");
    EXPECT_EQ(watcher->await_event("worker.crashed"),
              nlohmann::json({{"status", 3}, {"command", "EXIT"}, {"crashes", 2}}));
    const std::string log = service.stop(SIGTERM).error;
    EXPECT_THAT(log, HasSubstr("hgagent: the worker was killed by signal 6 (Aborted) while it ran "
                               "ABORT\n"));
    EXPECT_THAT(log, HasSubstr("hgagent: crashed: Aborted; the calls that led here"));
    EXPECT_THAT(log, ContainsRegex("service_plugin.so\\(hg_process_json_cmd"));
}

TEST(Run, BacksOffAfterFiveCrashes)
{
    const ServiceProcess service({}, kPlugin);
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(R"({"id":"s","subscribe":"worker.*"})"), kSubscribed);
    const auto client = service.client();
    for (int id = 1; id <= 5; ++id) {
        EXPECT_EQ(code_of(client->ask(request(id, "OVERRUN"))), "outcome-unknown");
    }
    EXPECT_EQ(watcher->await_event("worker.backing-off"),
              nlohmann::json({{"crashes", 5}, {"seconds", 10}}));
    const auto refused = client->ask_json(request(6, "ECHO"));
    EXPECT_EQ(refused["code"], "busy");
    EXPECT_THAT(refused["error"].get<std::string>(), HasSubstr("5 times within a minute"));
    EXPECT_EQ(watcher->await_event("worker.started")["starts"], 6);
    EXPECT_EQ(code_of(client->ask(request(7, "ECHO"))), "");
}

TEST(Run, SparesABackgroundWorker)
{
    TimeLimit limit;
    ServiceProcess service({limit.option()}, kPlugin);
    const Gatepost work;
    const Gatepost gate;
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    EXPECT_EQ(code_of(client->ask(request(1, "WORK", work.params()))), "");
    EXPECT_EQ(watcher->await_event("background.started"),
              nlohmann::json({{"worker", "wifi-batch"}}));
    const auto other = service.client();
    limit.send_overdue(service, *client, request(2, "WAIT", gate.params()));
    EXPECT_EQ(client->read_line(), R"({"id":2,"error":"WAIT has taken more than 1 seconds",)"
                                   R"("code":"outcome-unknown"})");
    EXPECT_EQ(code_of(other->ask(request(3, "ECHO"))), "busy");
    // The command ends: nothing has to be killed.
    gate.open();
    work.open();
    EXPECT_EQ(watcher->await_event("background.ended"), nlohmann::json({{"worker", "wifi-batch"}}));
    EXPECT_EQ(code_of(other->ask(request(4, "ECHO"))), "");
}

TEST(Run, KillsAWorkerWhoseBackgroundWorkTakesTooLong)
{
    TimeLimit limit;
    ServiceProcess service({limit.option(), "--background-seconds=3"}, kPlugin);
    const Gatepost never;
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    EXPECT_EQ(code_of(client->ask(request(1, "WORK", never.params()))), "");
    limit.send_overdue(service, *client, request(2, "WAIT", never.params()));
    // On a slow machine, the background work may be overdue before the command is.
    EXPECT_THAT(code_of(client->read_line()), AnyOf("outcome-unknown", "timeout"));
    EXPECT_EQ(watcher->await_event("worker.killed")["command"], "WAIT");
    EXPECT_EQ(watcher->await_event("background.lost"), nlohmann::json({{"worker", "wifi-batch"}}));
    EXPECT_EQ(watcher->await_event("worker.started")["starts"], 2);
    EXPECT_EQ(code_of(client->ask(request(3, "ECHO"))), "");
}

class Rubbish : public testing::TestWithParam<const char *> {};

TEST_P(Rubbish, OfTheWorkerReachesNoClient)
{
    const ServiceProcess service({}, kPlugin);
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    const std::string params = std::string(R"({"count":"1","text":")") + GetParam() + "\"}";
    const auto answer = client->ask_json(request(1, "WRITE", params));
    EXPECT_EQ(answer["id"], 1);
    EXPECT_EQ(answer["code"], "outcome-unknown");
    EXPECT_EQ(watcher->await_event("worker.crashed"),
              nlohmann::json({{"command", "WRITE"}, {"crashes", 1}}));
    EXPECT_EQ(code_of(client->ask(request(2, "ECHO"))), "");
}

INSTANTIATE_TEST_SUITE_P(Run, Rubbish,
                         testing::Values("rubbish\\n", "\\n", R"({\"id\":)", R"({\"id\":2}\n)",
                                         R"({\"id\":1,\"result\":0\n)", R"({\"event\":1}\n)",
                                         R"({\"id\":12,\"result\":0}\n)"));

TEST(Run, EndsAWorkerThatWritesWithoutEnd)
{
    const ServiceProcess service({}, kPlugin);
    const auto client = service.client();
    const std::string block(10000, 'x');
    for (const std::string &text : {block, R"({\"event\":\"x\",\"data\":{}}\n)" + std::string()}) {
        EXPECT_EQ(code_of(client->ask(
                      request(1, "WRITE", R"({"count":"1000000000","text":")" + text + "\"}"))),
                  "outcome-unknown");
        EXPECT_EQ(code_of(client->ask(request(2, "ECHO"))), "");
    }
}

class Kept : public testing::TestWithParam<bool> {};

TEST_P(Kept, HomeOutlivesAKill)
{
    ServiceProcess service;
    const auto client = ready_client(service);
    const auto light = [&](const char *value) {
        return R"({"LedSwitch":"1","LedCoLor":"WHITE","LedLight":")" + std::string(value) + "\"}";
    };
    for (const char *value : {"31", "32"}) {
        EXPECT_EQ(client->ask_json(request(1, "SET_LED_STATUS", light(value)))["reply"]["Status"],
                  "0");
    }
    const bool is_worker = GetParam();
    if (is_worker) {
        EXPECT_EQ(client->ask(kSubscribe), kSubscribed);
        kill(service.worker(), SIGKILL);
        client->await_event("worker.started");
    } else {
        service.stop(SIGKILL);
        service.start();
    }
    EXPECT_EQ(service.client()->ask_json(request(2, "GET_LED_STATUS"))["reply"]["LedLight"], "32");
    service.stop(SIGTERM);
    EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::path(service.socket()).parent_path()))
        << "something is left behind";
}

INSTANTIATE_TEST_SUITE_P(Run, Kept, testing::Bool());

TEST(Run, RefusesSettingsThatCannotBeKept)
{
    ServiceProcess service;
    const auto client = ready_client(service);
    const auto set_light = [&](const std::string &value) {
        return client->ask_json(request(1, "SET_LED_STATUS",
                                        R"({"LedSwitch":"1","LedCoLor":"WHITE","LedLight":")" +
                                            value + "\"}"))["reply"]["Status"];
    };
    const auto light = [&] {
        return client->ask_json(request(2, "GET_LED_STATUS"))["reply"]["LedLight"];
    };
    EXPECT_EQ(set_light("30"), "0");
    rlimit before = {};
    prlimit(service.worker(), RLIMIT_FSIZE, nullptr, &before);
    const rlimit full = {4096, before.rlim_max}; // as a disk without room
    ASSERT_EQ(prlimit(service.worker(), RLIMIT_FSIZE, &full, nullptr), 0);
    EXPECT_EQ(set_light("31"), "1");
    EXPECT_EQ(light(), "30");
    ASSERT_EQ(prlimit(service.worker(), RLIMIT_FSIZE, &before, nullptr), 0);
    EXPECT_EQ(set_light("32"), "0");
    EXPECT_EQ(client->ask(kSubscribe), kSubscribed);
    kill(service.worker(), SIGKILL);
    client->await_event("worker.started");
    EXPECT_EQ(light(), "32");
}

// Settings one after the other, and now and then a kill in the middle of one. SERVICE_SETTINGS in
// the environment is how many.
TEST(Run, KeepsTheHomeWholeWhateverIsKilledWhen)
{
    const char *wanted = getenv("SERVICE_SETTINGS");
    const int settings = wanted != nullptr ? std::stoi(wanted) : 60;
    const unsigned seed = wanted != nullptr ? std::random_device()() : 1;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    ServiceProcess service;
    auto client = ready_client(service);
    int kept = -1; // the last acknowledged setting
    bool is_worker = false;
    for (int number = 0; number < settings; ++number) {
        const int value = number % 100;
        const std::string line = request(number, "SET_LED_STATUS",
                                         R"({"LedSwitch":"1","LedCoLor":"WHITE","LedLight":")" +
                                             std::to_string(value) + "\"}");
        client->send_line(line);
        if (random() % 8 == 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
            is_worker = !is_worker;
            if (is_worker) {
                kill(service.worker(), SIGKILL);
            } else {
                service.stop(SIGKILL);
                service.start();
            }
        }
        const std::string answer = client->read_line();
        if (answer.find(R"("Status":"0")") != std::string::npos) {
            kept = value;
            continue;
        }
        client = ready_client(service);
        const auto reply = client->ask_json(request(0, "GET_LED_STATUS"))["reply"];
        ASSERT_EQ(reply["Status"], "0") << reply;
        const int found = std::stoi(reply["LedLight"].get<std::string>());
        ASSERT_TRUE(kept == -1 || found == kept || found == value)
            << found << ", after " << kept << ", " << value;
        kept = found;
    }
}

TEST(Run, EndsWithAWorkerThatCannotStart)
{
    AgentProcess agent({"--device=/nonexistent.so", "run", "--socket=" + new_path("s")});
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_THAT(result.error, HasSubstr("/nonexistent.so"));
}

TEST(Run, RunsThePluginInItsOwnProcess)
{
    TimeLimit limit;
    ServiceProcess service({"--in-process", limit.option()}, kPlugin);
    const Gatepost gate;
    const auto client = service.client();
    EXPECT_EQ(pid_of(*client), service.process().process());
    const auto other = service.client();
    limit.send_overdue(service, *client, request(1, "WAIT", gate.params()));
    EXPECT_EQ(code_of(client->read_line()), "outcome-unknown");
    EXPECT_EQ(code_of(other->ask(request(2, "ECHO"))), "busy");
    gate.open();
    std::string code = "busy";
    while (code == "busy") { // until the thread has returned
        code = code_of(other->ask(request(3, "ECHO")));
    }
    EXPECT_EQ(code, "");
    EXPECT_EQ(service.stop(SIGTERM).exit_status, 0);
}

// ---- The socket ---------------------------------------------------------------------------------

TEST(Run, MakesASocketForItsUserAlone)
{
    const ServiceProcess service;
    struct stat status = {};
    ASSERT_EQ(stat(service.socket().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST(Run, ReplacesASocketThatWasLeftBehind)
{
    ServiceProcess service;
    service.stop(SIGKILL);
    ASSERT_TRUE(std::filesystem::exists(service.socket()));
    service.start();
    EXPECT_EQ(service.client()->ask(kQuestion), kAnswer);
}

TEST(Run, LeavesASocketWhereSomebodyAnswers)
{
    const ServiceProcess service;
    AgentProcess second({"run", "--socket=" + service.socket()});
    const AgentResult result = second.wait();
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_EQ(result.error, "hgagent: somebody answers at " + service.socket() + " already\n");
    EXPECT_EQ(service.client()->ask(kQuestion), kAnswer);
}

TEST(Run, LeavesWhatHasTakenItsPlace)
{
    ServiceProcess service;
    std::filesystem::remove(service.socket());
    std::ofstream(service.socket()) << "a file";
    EXPECT_EQ(service.stop(SIGTERM).exit_status, 0);
    EXPECT_TRUE(std::filesystem::is_regular_file(service.socket()));
}

TEST(Run, LeavesWhatIsNoSocket)
{
    const std::string path = test_file("no socket", "a file");
    AgentProcess service({"run", "--socket=" + path});
    const AgentResult result = service.wait();
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_EQ(result.error, "hgagent: " + path + " is there already, and is no socket\n");
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
}

// ---- Its end ------------------------------------------------------------------------------------

TEST(Run, FinishesTheRunningCommandWhenItStops)
{
    ServiceProcess service({}, kPlugin);
    const Gatepost gate;
    const auto running = ready_client(service);
    running->send_line(request(1, "WAIT", gate.params()));
    running->send_line(request(2, "ECHO"));
    const auto waiting = service.client();
    EXPECT_EQ(waiting->ask_json(R"({"hello":{}})")["result"], 0);
    waiting->send_line(request(3, "ECHO"));
    await_reading(service);
    service.process().signal(SIGTERM);
    EXPECT_EQ(code_of(waiting->read_line()), "busy");
    gate.open();
    EXPECT_EQ(code_of(running->read_line()), "");
    EXPECT_EQ(code_of(running->read_line()), "busy");
    EXPECT_EQ(running->read_line(), "");
    const AgentResult result = service.process().wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_FALSE(std::filesystem::exists(service.socket()));
}

} // namespace run_test
