// SPDX-License-Identifier: MIT
// Control of the simulated gateway by the lines of serve, and the events of its trace.
#include "agent_commands.h"
#include "held_pipe.h"
#include "standing_clock.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

using Json = nlohmann::ordered_json;

namespace control_test {

std::string control(const std::string &value)
{
    return R"({"id":1,"control":)" + value + "}\n";
}

constexpr char kDone[] = R"({"id":1,"result":0,"reply":{}})";
constexpr char kQuery[] = R"({"id":2,"command":"GET_SN_INFO"})"
                          "\n";

std::string error(const std::string &text)
{
    return R"({"id":1,"error":)" + Json(text).dump() + R"(,"code":"bad-request"})";
}

TEST(Control, SetsAndLiftsFaults)
{
    const auto lines =
        lines_of(serve(control(R"({"faults":["devapi_get_sn_info=-1*2"]})") + kQuery +
                       control(R"({"faults":[]})") + kQuery + control(R"({"faults":["castle=1"]})"))
                     .output);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], kDone);
    EXPECT_THAT(lines[1], HasSubstr("get sn failed"));
    EXPECT_EQ(lines[2], kDone);
    EXPECT_THAT(lines[3], HasSubstr(R"("Status":"0")"));
    EXPECT_EQ(lines[4], error("fault \"castle=1\": there is no such device function"));
}

TEST(Control, ResetsTheHome)
{
    const std::string rename =
        R"({"id":2,"command":"SET_HG_BASE_INFO","params":{"Name":"Renamed"}})"
        "\n";
    const std::string name = R"({"id":3,"command":"GET_HG_BASE_INFO"})"
                             "\n";
    const std::string state = test_file("control.state");
    const std::vector<std::string> options = {"--scenario", "three_storey_house", "--state", state};
    const auto lines =
        lines_of(serve(rename + control(R"({"scenario":"three_storey_house"})") + name +
                           control(R"({"scenario":"operator_variant"})") + name,
                       options)
                     .output);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[1], kDone);
    EXPECT_THAT(lines[2], HasSubstr(R"("Name":"Lindenhof")"));
    EXPECT_THAT(lines[4], HasSubstr(R"("Name":"Casa Arven")"));
    EXPECT_THAT(serve(name, options).output, HasSubstr(R"("Name":"Casa Arven")"));
}

TEST(Control, MovesTheClock)
{
    const std::string show = control(R"({"show":{}})");
    const auto lines = lines_of(
        serve(control(R"({"clock":"2026-01-01T00:00:00"})") + control(R"({"clock":"+90"})") + show +
              control(R"({"clock":null})") + show + control(R"({"clock":"noon"})"))
            .output);
    ASSERT_EQ(lines.size(), 6U);
    const Json stopped = Json::parse(lines[2])["reply"];
    EXPECT_EQ(stopped["clock"], "2026-01-01T00:01:30");
    EXPECT_EQ(stopped["time"], "2026-01-01T00:01:30");
    EXPECT_EQ(Json::parse(lines[4])["reply"]["clock"], nullptr);
    EXPECT_THAT(lines[5], StartsWith(R"({"id":1,"error":"clock: \"noon\" is neither a time)"));
}

TEST(Control, ShowsTheSettings)
{
    const Json shown =
        Json::parse(serve(control(R"({"show":{}})"),
                          {"--scenario", "single_router", "--fault", "devapi_get_sn_info=-1*3@5ms"})
                        .output)["reply"];
    std::vector<std::string> names;
    for (const auto &[name, value] : shown.items()) {
        names.push_back(name);
    }
    EXPECT_THAT(names, ElementsAre("scenario", "scenarios", "faults", "fault_kinds", "clock",
                                   "time", "trace"));
    EXPECT_EQ(shown["scenario"], "single_router");
    EXPECT_THAT(shown["scenarios"], Contains("three_storey_house"));
    EXPECT_EQ(shown["faults"], Json({"devapi_get_sn_info=-1*3@5ms"}));
    EXPECT_EQ(shown["fault_kinds"]["form"], "FUNCTION=RESULT[*COUNT][@DELAYms]");
    EXPECT_THAT(shown["fault_kinds"]["functions"], Contains("devapi_get_sn_info"));
    EXPECT_EQ(shown["trace"], false);
}

TEST(Control, TracesTheCallsOfCommands)
{
    const auto lines = lines_of(
        serve(control(R"({"trace":true})") + kQuery + R"({"id":3,"command":"GET_ADMIN_INFO"})" +
                  "\n" + R"({"id":4,"report":"home-page"})" + "\n" + control(R"({"show":{}})") +
                  control(R"({"trace":false})") + kQuery,
              {}, {"--events"})
            .output);
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[0], kDone);
    const Json event = Json::parse(lines[1]);
    EXPECT_EQ(event["event"], "device.call");
    EXPECT_EQ(event["data"]["call"], "devapi_get_sn_info");
    EXPECT_EQ(event["data"]["command"], "GET_SN_INFO");
    EXPECT_EQ(event["data"]["result"], 0);
    EXPECT_THAT(
        event["data"]["text"].get<std::string>(),
        MatchesRegex(R"(\[[0-9]+\] devapi_get_sn_info\(info=\{MAC="3C:6A.*\) = 0 in .* us)"));
    EXPECT_THAT(lines[2], StartsWith(R"({"id":2,"result":0)"));
    EXPECT_THAT(lines[3], AllOf(HasSubstr("devapi_get_admin_info"), HasSubstr("Password=***"),
                                Not(HasSubstr("zaun"))));
    EXPECT_THAT(lines[4], HasSubstr("zaun")) << "the reply itself is unchanged";
    EXPECT_FALSE(Json::parse(lines[5])["data"].contains("command")) << lines[5];
    EXPECT_EQ(Json::parse(lines[7])["reply"]["trace"], true);
    EXPECT_EQ(lines[8], kDone);
    EXPECT_THAT(lines[9], StartsWith(R"({"id":2,"result":0)")) << "no further event";
}

TEST(Control, NeedsEventsForTheTrace)
{
    EXPECT_EQ(serve(control(R"({"trace":true})")).output,
              error("the trace consists of events, which need --events") + "\n");
}

TEST(Control, SaysWhatIsWrongWithAControl)
{
    const std::string needs_one = "\"control\" needs one of \"faults\", \"scenario\", \"clock\", "
                                  "\"trace\" and \"show\"";
    const std::pair<std::string, std::string> cases[] = {
        {"null", needs_one},
        {"[]", needs_one},
        {"\"show\"", needs_one},
        {"{}", needs_one},
        {R"({"castle":1})", needs_one},
        {R"({"Show":{}})", needs_one},
        {R"({"show":{},"show":{}})", needs_one},
        {R"({"faults":[],"trace":true})", needs_one},
        {R"({"faults":null})", "\"faults\" is no array of texts of at most 256 bytes"},
        {R"({"faults":{}})", "\"faults\" is no array of texts of at most 256 bytes"},
        {R"({"faults":["devapi_get_sn_info=1",7]})",
         "\"faults\" is no array of texts of at most 256 bytes"},
        {R"({"scenario":1})", "\"scenario\" is no text of at most 256 bytes"},
        {R"({"scenario":"/etc/passwd"})",
         "a scenario file can only be given when the gateway is opened"},
        {R"({"clock":1767225600})", "\"clock\" is neither a text of at most 256 bytes nor null"},
        {R"({"trace":"true"})", "\"trace\" is neither true nor false"},
        {R"({"show":true})", "\"show\" is no object"},
    };
    std::string input;
    std::vector<std::string> answers;
    for (const auto &[value, why] : cases) {
        input += control(value);
        answers.push_back(error(why));
    }
    EXPECT_EQ(lines_of(serve(input).output), answers);
}

TEST(Control, LimitsTextsAndNotTheirNumber)
{
    std::string faults;
    for (int count = 0; count < 20000; ++count) {
        faults += std::string(count > 0 ? "," : "") + R"("devapi_get_sn_info=-1*1")";
    }
    const std::string long_text(257, 'x');
    std::string umlauts;
    for (int count = 0; count < 128; ++count) {
        umlauts += "\u00e4";
    }
    const auto lines =
        lines_of(serve(control(R"({"faults":[)" + faults + "]}") +
                       control(R"({"faults":[")" + long_text + "\"]}") +
                       control(R"({"scenario":")" + std::string(500000, 'x') + "\"}") +
                       control(R"({"clock":")" + long_text + "\"}") +
                       control(R"({"scenario":")" + umlauts + "\"}"))
                     .output);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], kDone);
    EXPECT_EQ(lines[1], error("\"faults\" is no array of texts of at most 256 bytes"));
    EXPECT_EQ(lines[2], error("\"scenario\" is no text of at most 256 bytes"));
    EXPECT_EQ(lines[3], error("\"clock\" is neither a text of at most 256 bytes nor null"));
    EXPECT_THAT(lines[4],
                AllOf(HasSubstr("there is no scenario \\\"" + umlauts), HasSubstr("bad-request")));
}

TEST(Control, IsOnlyForTheSimulatedGateway)
{
    for (const char *value : {R"({"faults":[]})", R"({"scenario":"single_router"})",
                              R"({"clock":null})", R"({"trace":true})", R"({"show":{}})"}) {
        EXPECT_EQ(serve(control(value), {"--device", HOSTILE_DEVICE}, {"--events"}).output,
                  error("the device library is not the simulated gateway") + "\n");
    }
}

TEST(Control, IsRefusedDuringAReboot)
{
    const auto lines = lines_of(serve(R"({"id":2,"command":"RP_HG_REBOOT"})"
                                      "\n" +
                                          control(R"({"show":{}})"),
                                      {"--reboot-seconds", "3600"})
                                    .output);
    EXPECT_EQ(lines.back(), R"({"id":1,"error":"the gateway reboots","code":"rebooting"})");
}

TEST(Control, LeavesTheHomeToARunningWorker)
{
    HeldPipe pipe;
    AgentProcess agent({"--plugin", WORKER_PLUGIN, "serve", "--events"});
    agent.send(R"({"id":0,"command":"WORK","params":{"until":")" + pipe.path() + "\"}}\n");
    EXPECT_THAT(agent.read_line(), HasSubstr("background.started"));
    EXPECT_THAT(agent.read_line(), StartsWith(R"({"id":0,"result":0)"));
    agent.send(control(R"({"scenario":"single_router"})"));
    EXPECT_EQ(agent.read_line(),
              R"({"id":1,"error":"a worker of the plug-in is running","code":"busy"})");
    agent.send(control(R"({"faults":[]})"));
    EXPECT_EQ(agent.read_line(), kDone) << "other settings do not disturb it";
    pipe.release();
    EXPECT_THAT(agent.read_line(), HasSubstr("background.ended"));
    agent.send(control(R"({"scenario":"single_router"})"));
    EXPECT_EQ(agent.read_line(), kDone);
}

} // namespace control_test
