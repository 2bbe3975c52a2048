// SPDX-License-Identifier: MIT
// hgagent serve --events: events, and requests during a reboot.
#include "agent_commands.h"
#include "firmware_test.h"
#include "held_pipe.h"

#include <gmock/gmock.h>

#include <algorithm>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

using Json = nlohmann::ordered_json;

namespace events_test {

constexpr char kReboot[] = R"({"id":1,"command":"RP_HG_REBOOT"})";
constexpr char kQuery[] = R"({"id":2,"command":"GET_SN_INFO"})";
constexpr char kRebooted[] = R"({"id":1,"result":0,"reply":{"Status":"0"}})";
constexpr char kRefused[] = R"({"id":2,"error":"the gateway reboots","code":"rebooting"})";
constexpr char kBegun[] = R"({"event":"reboot.begun","data":{"seconds":0}})";
constexpr char kBegunForAnHour[] = R"({"event":"reboot.begun","data":{"seconds":3600}})";
constexpr char kEnded[] = R"({"event":"reboot.ended","data":{}})";

std::vector<std::string> serve_events(const std::string &input,
                                      const std::vector<std::string> &options = {})
{
    return lines_of(serve(input, options, {"--events"}).output);
}

std::string of_worker(const std::string &event, const std::string &worker)
{
    return R"({"event":"background.)" + event + R"(","data":{"worker":")" + worker + R"("}})";
}

// Reads until a line begins with the text. Result: all lines up to it.
std::vector<std::string> read_until(AgentProcess &agent, const std::string &beginning)
{
    std::vector<std::string> lines;
    do {
        lines.push_back(agent.read_line());
    } while (!lines.back().empty() && !lines.back().starts_with(beginning));
    return lines;
}

TEST(Events, ReplaceNotices)
{
    const std::string raise =
        R"({"id":1,"notice":{"plugin_name":"parental_control","text":"A new phone"}})";
    const std::vector<std::string> lines = serve_events(raise);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0], StartsWith(R"({"event":"notice","data":{"RPCMethod":"Push",)"));
    EXPECT_EQ(lines[1], R"({"id":1,"result":0})");

    const std::vector<std::string> without = lines_of(serve(raise).output);
    ASSERT_EQ(without.size(), 2U);
    EXPECT_THAT(without[0], StartsWith(R"({"notice":{"RPCMethod":"Push",)"));
}

TEST(Events, HaveAnObjectForEveryPush)
{
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve", "--events"});
    agent.send(R"({"command":"NOTICE","params":{"text":"no \"JSON\""}})"
               "\n");
    EXPECT_EQ(agent.read_line(), R"({"event":"notice","data":{"value":"no \"JSON\""}})");
}

TEST(Events, ReplaceProgress)
{
    EXPECT_THAT(
        serve_events(R"({"id":1,"command":"HG_IMAGE_DOWNLOAD","params":{"UpdateUrl":"x"}})",
                     {"--device", HOSTILE_DEVICE}),
        ElementsAre(
            R"({"event":"update.progress","data":{"task":"image\n\u001b[31m","percent":0}})",
            R"({"event":"update.progress","data":{"task":"","percent":50}})",
            R"({"event":"update.progress","data":{"task":"image","percent":100}})",
            R"({"event":"update.progress","data":{"task":"image","percent":3}})",
            StartsWith(R"({"id":1,"result":0,)")));
}

// ---- Workers ------------------------------------------------------------------------------------

// A worker that runs until the test releases it, and an agent that serves with it.
class WorkerEvents : public testing::Test {
  protected:
    WorkerEvents()
    {
        agent_.send(R"({"id":1,"command":"WORK","params":{"until":")" + pipe_.path() + "\"}}\n");
    }

    void release() { pipe_.release(); }

  private:
    HeldPipe pipe_; // outlives the agent, which waits for its worker

  protected:
    AgentProcess agent_{{"--plugin", WORKER_PLUGIN, "serve", "--events"}};
};

TEST_F(WorkerEvents, ReportTheStartBeforeTheAnswer)
{
    EXPECT_EQ(agent_.read_line(), of_worker("started", "wifi-batch"));
    EXPECT_THAT(agent_.read_line(), StartsWith(R"({"id":1,"result":0,)"));
    agent_.send("{\"id\":2,\"hello\":{}}\n");
    EXPECT_THAT(agent_.read_line(), StartsWith(R"({"id":2,"result":0,)")) << "reported only once";
    release();
}

TEST_F(WorkerEvents, ReportTheEndWithoutFurtherInput)
{
    read_until(agent_, R"({"id":1)");
    release();
    EXPECT_EQ(agent_.read_line(), of_worker("ended", "wifi-batch"));
    EXPECT_THAT(agent_.finish().output, IsEmpty());
}

TEST_F(WorkerEvents, ReportTheEndAfterTheEndOfInput)
{
    read_until(agent_, R"({"id":1)");
    agent_.close_input();
    EXPECT_TRUE(agent_.await_error("waiting for the Wi-Fi settings to be applied"));
    release();
    EXPECT_EQ(agent_.wait().output, of_worker("ended", "wifi-batch") + "\n");
}

// ---- Updates ------------------------------------------------------------------------------------

class UpdateEvents : public FirmwareTest {
  protected:
    std::string download(const std::string &from) const
    {
        return Json{{"id", 1},
                    {"command", "IMAGE_DOWNLOAD"},
                    {"params", {{"MainRouter", {{"UpdateUrl", from}}}}}}
                   .dump() +
               "\n";
    }
    // All lines of an agent that runs the complete update.
    std::vector<std::string> update(const std::string &from,
                                    const std::vector<std::string> &options = {}) const
    {
        std::vector<std::string> all = {"--state", state_};
        all.insert(all.end(), options.begin(), options.end());
        return serve_events(download(from), all);
    }
};

std::string failed(const std::string &reason)
{
    return R"({"event":"update.failed","data":{"reason":")" + reason + R"("}})";
}

TEST_F(UpdateEvents, ReportWhyAnUpdateFailed)
{
    serve_broken_image("broken.image");
    EXPECT_THAT(update(address("missing.image")),
                Contains(failed("the server answers with HTTP status 404")));
    EXPECT_THAT(update(address("broken.image")),
                Contains(StartsWith(R"({"event":"update.failed","data":{"reason":")")));
    EXPECT_THAT(update(address("new.image"), {"--fault", "devapi_flash_update_image=-1"}),
                Contains(failed("fault")));
    const std::vector<std::string> lines = update("ftp://127.0.0.1/new.image");
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string &line) {
                                return line.find("update.failed") != std::string::npos;
                            }),
              1);
    EXPECT_THAT(lines, Not(Contains(HasSubstr("reboot."))));
    expect_version(kOldVersion);
}

TEST_F(UpdateEvents, ReportEachStepOfASuccessfulUpdate)
{
    AgentProcess agent({"--state", state_, "serve", "--events"});
    agent.send(download(address("hold/new.image")));
    EXPECT_THAT(read_until(agent, R"({"id":1,)"), Contains(of_worker("started", "firmware")));
    agent.send(download(address("new.image")));
    EXPECT_THAT(read_until(agent, R"({"id":1,)").back(), HasSubstr("dev is dowing image now"));
    server_.release();

    std::vector<std::string> lines = read_until(agent, of_worker("ended", "firmware"));
    std::erase_if(lines, [](const std::string &line) {
        return line.starts_with(R"({"event":"update.progress",)");
    });
    EXPECT_THAT(lines, ElementsAre(R"({"event":"update.succeeded","data":{"version":"V9.1.4"}})",
                                   kBegun, kEnded, of_worker("ended", "firmware")));
    EXPECT_THAT(agent.finish().output, IsEmpty());
    expect_version(kNewVersion);
}

TEST_F(UpdateEvents, ReportTheStepsThatCommandsWaitFor)
{
    const std::string url = Json{{"UpdateUrl", address("new.image")}}.dump();
    std::vector<std::string> lines = serve_events(
        R"({"id":1,"command":"HG_IMAGE_UPDATE","params":{"Update":"1"}})"
        "\n"
        R"({"id":2,"command":"HG_IMAGE_DOWNLOAD","params":)" +
            url + "}\n" + R"({"id":3,"command":"HG_IMAGE_UPDATE","params":{"Update":"1"}})",
        {"--state", state_});
    std::erase_if(lines, [](const std::string &line) {
        return line.starts_with(R"({"event":"update.progress",)");
    });
    EXPECT_THAT(lines, ElementsAre(StartsWith(R"({"event":"update.failed","data":{"reason":")"),
                                   StartsWith(R"({"id":1,)"), StartsWith(R"({"id":2,)"),
                                   R"({"event":"update.succeeded","data":{"version":"V9.1.4"}})",
                                   StartsWith(R"({"id":3,)")));
}

TEST_F(UpdateEvents, AreTheSameForAnUpgradeThatAReportStarts)
{
    const auto upgrade = [](const std::string &url) {
        return R"({"id":1,"report":"image-upgrade","params":{"url":")" + url + "\"}}\n";
    };
    AgentProcess agent({"--state", state_, "serve", "--events"});
    agent.send(upgrade(address("hold/new.image")));
    EXPECT_THAT(read_until(agent, R"({"id":1,)").back(), R"({"id":1,"result":0,"reply":{}})");
    agent.send(upgrade(address("new.image")));
    EXPECT_EQ(read_until(agent, R"({"id":1,)").back(),
              R"({"id":1,"error":"an image is being fetched or flashed already","code":"busy"})");
    server_.release();
    EXPECT_THAT(read_until(agent, of_worker("ended", "firmware")),
                Contains(R"({"event":"update.succeeded","data":{"version":"V9.1.4"}})"));
    agent.send(upgrade(std::string(256, 'x')));
    EXPECT_EQ(agent.read_line(),
              R"({"id":1,"error":"the address is longer than 255 bytes","code":"bad-request"})");
}

// ---- Reboots ------------------------------------------------------------------------------------

TEST(Reboot, IsReportedWithItsEnd)
{
    EXPECT_THAT(serve_events(std::string(kReboot) + "\n" + kQuery),
                ElementsAre(kBegun, kEnded, kRebooted, StartsWith(R"({"id":2,"result":0,)")));
    EXPECT_THAT(serve_events(R"({"id":1,"command":"HG_LOCAL_RECOVERY"})"),
                ElementsAre(kBegun, kEnded, kRebooted));
    EXPECT_EQ(serve(kReboot).output, std::string(kRebooted) + "\n");
}

TEST(Reboot, KeepsRequestsFromThePlugin)
{
    const std::string trace = test_file("reboot.trace");
    const std::string notice = R"({"id":2,"notice":{"plugin_name":"x","text":"y"}})";
    const std::string input = std::string(kReboot) + "\n" + kQuery + "\n" +
                              R"({"id":2,"report":"home-page"})" + "\n" + notice + "\n" +
                              R"({"id":2,"command":"NO_SUCH"})" + "\n" + kReboot + "\n" +
                              R"({"id":3,"hello":{}})" + "\nrubbish\n";
    const std::vector<std::string> options = {"--reboot-seconds", "3600", "--trace", trace};
    const std::string refused_reboot =
        R"({"id":1,"error":"the gateway reboots","code":"rebooting"})";
    EXPECT_THAT(serve_events(input, options),
                ElementsAre(kBegunForAnHour, kRebooted, kRefused, kRefused, kRefused, kRefused,
                            refused_reboot, StartsWith(R"({"id":3,"result":0,)"),
                            HasSubstr(R"("code":"bad-request")")));
    EXPECT_THAT(content_of(trace), MatchesRegex("[^\n]*devapi_reboot\\([^\n]*\n"));

    EXPECT_THAT(lines_of(serve(input, options).output),
                ElementsAre(kRebooted, kRefused, kRefused, kRefused, kRefused, refused_reboot,
                            StartsWith(R"({"id":3,)"), HasSubstr("bad-request")));
}

TEST(Reboot, EndsAfterItsTimeWithoutFurtherInput)
{
    AgentProcess agent({"--reboot-seconds", "1", "serve", "--events"});
    agent.send(std::string(kReboot) + "\n");
    EXPECT_EQ(agent.read_line(), R"({"event":"reboot.begun","data":{"seconds":1}})");
    EXPECT_EQ(agent.read_line(), kRebooted);
    EXPECT_EQ(agent.read_line(), kEnded);
    EXPECT_THAT(ask(agent, kQuery), StartsWith(R"({"id":2,"result":0,)"));
}

TEST(Reboot, EndsForRepeatedRequests)
{
    AgentProcess agent({"--reboot-seconds", "1", "serve"});
    EXPECT_EQ(ask(agent, kReboot), kRebooted);
    std::string answer;
    while ((answer = ask(agent, kQuery)) == kRefused) {
    }
    EXPECT_THAT(answer, StartsWith(R"({"id":2,"result":0,)"));
}

class RebootOfAStandingClock : public GatewayTest {};

TEST_F(RebootOfAStandingClock, TakesNoTime)
{
    EXPECT_THAT(serve_events(std::string(kReboot) + "\n" + kQuery, {"--reboot-seconds", "3600"}),
                ElementsAre(kBegun, kEnded, kRebooted, StartsWith(R"({"id":2,"result":0,)")));
}

TEST_F(UpdateEvents, ReportTheRebootIntoNewFirmware)
{
    unsetenv("SIMULATED_GATEWAY_TIME");
    AgentProcess agent({"--state", state_, "--reboot-seconds", "3600", "serve", "--events"});
    agent.send(download(address("new.image")));
    EXPECT_THAT(read_until(agent, kBegunForAnHour),
                Contains(R"({"event":"update.succeeded","data":{"version":"V9.1.4"}})"));
    agent.send(std::string(kQuery) + "\n");
    EXPECT_EQ(read_until(agent, R"({"id":2,)").back(), kRefused);
}

TEST(Reboot, HasALimitedDuration)
{
    for (const std::string seconds : {"-1", "x", "86401", ""}) {
        EXPECT_EQ(run_agent({"--reboot-seconds", seconds, "serve"}).exit_status, 2) << seconds;
    }
    // Another device library decides on its duration itself.
    EXPECT_EQ(run_agent({"--device", MINIMAL_DEVICE, "--reboot-seconds", "9", "serve", "--events"})
                  .exit_status,
              0);
}

} // namespace events_test
