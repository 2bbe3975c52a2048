// SPDX-License-Identifier: MIT
// hgagent serve: one answer line for every input line, valid or not.
#include "agent_commands.h"
#include "invalid_lines.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace serve_test {

constexpr char kRequest[] = R"({"id":"last","command":"GET_SN_INFO"})";
constexpr char kAnswer[] = R"({"id":"last","result":0,"reply":{"Status":"0",)"
                           R"("MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1",)"
                           R"("DeviceType":"HGU-AX3000"}})";

TEST(Serve, AnswersWhileItsInputIsOpen)
{
    AgentProcess agent({"serve"});
    EXPECT_EQ(ask(agent, kRequest), kAnswer);
    EXPECT_EQ(ask(agent, "rubbish").find(R"({"id":null,"error":")"), 0U);
    EXPECT_EQ(ask(agent, kRequest), kAnswer);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.error, IsEmpty());
}

TEST(Serve, ContinuesAfterEveryInvalidLine)
{
    const std::vector<std::string> bad_lines = invalid_lines({
        R"({"id":1e999 1,"command":"GET_SN_INFO"})",
        R"({"id":[1e999,01],"command":"GET_SN_INFO"})",
        R"({"id":[1e999,1e],"command":"GET_SN_INFO"})",
        R"({"id":[1e999)",
        R"({"command":"GET_SN_INFO","params":{"id":1e999}})",
    });
    for (const std::string &bad : bad_lines) {
        const AgentResult result = serve(bad + "\n" + kRequest + "\n");
        EXPECT_EQ(result.exit_status, 0) << bad.substr(0, 100);
        EXPECT_THAT(lines_of(result.output),
                    ElementsAre(AllOf(StartsWith(R"({"id":null,"error":")"),
                                      EndsWith(R"(","code":"bad-request"})")),
                                kAnswer));
        EXPECT_LT(result.output.size(), 1000U);
    }
}

TEST(Serve, SkipsALineThatIsTooLong)
{
    const std::string fits =
        kRequest + std::string(1024 * 1024 - std::string(kRequest).size(), ' ');
    const AgentResult result = serve(fits + "\n" + fits + " \n" + kRequest + "\n");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(lines_of(result.output),
                ElementsAre(kAnswer,
                            R"({"id":null,"error":"the line is longer than 1048576 bytes",)"
                            R"("code":"too-large"})",
                            kAnswer));
}

TEST(Serve, DoesNotBufferALineThatIsTooLong)
{
    const size_t line = 512 * 1024 * 1024;
    AgentProcess agent({"serve"});
    const std::string part(1024 * 1024, 'x');
    for (size_t sent = 0; sent < line; sent += part.size()) {
        agent.send(part);
    }
    EXPECT_EQ(ask(agent, ""), R"({"id":null,"error":"the line is longer than 1048576 bytes",)"
                              R"("code":"too-large"})");
    EXPECT_LT(agent.finish().peak_kilobytes, static_cast<long>(line / 1024));
}

TEST(Serve, TakesTheLengthOfALineAsAnOption)
{
    const std::string size = std::to_string(std::string(kRequest).size());
    const AgentResult result = serve(std::string(kRequest) + "\n" + kRequest + " \n" +
                                         std::string(300000, 'x') + "\n" + kRequest,
                                     {}, {"--max-line", size});
    const std::string too_long = "{\"id\":null,\"error\":\"the line is longer than " + size +
                                 " bytes\",\"code\":\"too-large\"}";
    EXPECT_THAT(lines_of(result.output), ElementsAre(kAnswer, too_long, too_long, kAnswer));
}

TEST(Serve, ServesALastLineWithoutANewline)
{
    EXPECT_THAT(lines_of(serve(kRequest).output), ElementsAre(kAnswer));
    EXPECT_THAT(lines_of(serve("{}\n" + std::string(2000000, 'x')).output),
                ElementsAre(HasSubstr("command"), HasSubstr("the line is longer")));
}

TEST(Serve, EndsWithItsInput)
{
    const AgentResult result = serve("");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.error, IsEmpty());
}

TEST(Serve, ReturnsAnyId)
{
    for (const std::string id :
         {"1", "-0", "12345678901234567890123456789", "1.50", "1E2", "null", "true", "\"\"",
          R"("\u4e2d\"")", "[1, {\"a\":1,\"a\":2}]", "{}", "1e400", "-1E+999",
          R"([1e400,{"a":"1e400]}","b":[-2.5e999,1]},0])"}) {
        const AgentResult result = serve("{\"id\": " + id + " , \"command\": \"GET_SN_INFO\"}\n");
        EXPECT_THAT(result.output, StartsWith("{\"id\":" + id + ",\"result\":0,\"reply\":{"));
    }
    const std::string digits(1000, '7');
    EXPECT_THAT(serve("{\"id\":" + digits + ",\"command\":\"GET_SN_INFO\"}").output,
                StartsWith("{\"id\":" + digits + ",\"result\":0,"));
    EXPECT_THAT(serve(R"({"command":"GET_SN_INFO"})").output,
                StartsWith(R"({"id":null,"result":0,)"));
    EXPECT_THAT(serve(R"({"id":1,"id":2,"command":"GET_SN_INFO"})").output,
                StartsWith(R"({"id":1,"result":0,)"));
}

TEST(Serve, SaysWhatIsWrongWithARequest)
{
    const std::string no_command =
        R"("error":"\"command\" is missing or no text","code":"bad-request"})";
    const std::string no_object = R"("error":"\"params\" is no object","code":"bad-request"})";
    const std::pair<std::string, std::string> cases[] = {
        {"{}", "{\"id\":null," + no_command},
        {R"({"id":1})", "{\"id\":1," + no_command},
        {R"({"id":2,"command":null})", "{\"id\":2," + no_command},
        {R"({"id":3,"command":3})", "{\"id\":3," + no_command},
        {R"({"id":4,"command":["GET_SN_INFO"]})", "{\"id\":4," + no_command},
        {R"({"id":5,"Command":"GET_SN_INFO"})", "{\"id\":5," + no_command},
        {R"({"id":6,"command":"GET_SN_INFO","params":null})", "{\"id\":6," + no_object},
        {R"({"id":7,"command":"GET_SN_INFO","params":[]})", "{\"id\":7," + no_object},
        {R"({"id":8,"command":"GET_SN_INFO","params":"{}"})", "{\"id\":8," + no_object},
        {R"({"id":9,"report":"home-page","params":[]})", "{\"id\":9," + no_object},
        {R"({"id":10,"report":7})", R"({"id":10,"error":"\"report\" is no text",)"
                                    R"("code":"bad-request"})"},
        {R"({"id":11,"hello":true})", R"({"id":11,"error":"\"hello\" is no object",)"
                                      R"("code":"bad-request"})"},
        {R"({"id":12,"notice":{}})",
         R"({"id":12,"error":"\"notice\" needs the texts \"plugin_name\" and \"text\"",)"
         R"("code":"bad-request"})"},
    };
    std::string input;
    std::vector<std::string> answers;
    for (const auto &[request, answer] : cases) {
        input += request + "\n";
        answers.push_back(answer);
    }
    EXPECT_EQ(lines_of(serve(input).output), answers);
}

TEST(Serve, ReportsItsVersions)
{
    EXPECT_EQ(
        serve(R"({"id":1,"hello":{}})").output,
        "{\"id\":1,\"result\":0,\"reply\":{\"protocol\":\"1.0\",\"service\":\"" PROJECT_VERSION
        "\"}}\n");
}

TEST(Serve, TreatsALineWithACommandAsACommand)
{
    EXPECT_EQ(serve(R"({"hello":{},"report":"home-page","notice":{},"id":"last",)"
                    R"("command":"GET_SN_INFO"})")
                  .output,
              std::string(kAnswer) + "\n");
}

TEST(Serve, ReturnsTheParamsOfAnUnknownCommandUnchanged)
{
    for (const std::string name :
         {"", " ", "GET_SN_INFO ", "get_sn_info", "NO_SUCH", "\\u0001", "\u4e2d"}) {
        const AgentResult result =
            serve("{\"id\":1,\"command\":\"" + name + "\",\"params\":{\"b\":[1],\"a\":\"x\"}}");
        EXPECT_EQ(result.output, "{\"id\":1,\"result\":-3,\"reply\":{\"b\":[1],\"a\":\"x\"}}\n");
        EXPECT_EQ(result.exit_status, 0);
    }
}

TEST(Serve, ReturnsTheNumbersOfAnUnknownCommandUnchanged)
{
    const std::string params = R"({"a":12345678901234567890, "b":[1.50,-0], "c":"\u4e2d\/"})";
    EXPECT_EQ(serve(R"({"id":1,"command":"NO_SUCH","params":)" + params + "}").output,
              "{\"id\":1,\"result\":-3,\"reply\":" + params + "}\n");
    EXPECT_EQ(serve(R"({"id":1,"command":"NO_SUCH"})").output,
              "{\"id\":1,\"result\":-3,\"reply\":{}}\n");
}

TEST(Serve, KeepsRepeatedKeysAndTheirOrder)
{
    const AgentResult result =
        serve(R"({"extra":[],"params":{"VersionInfo":"1","b":2,"VersionInfo":"3"},)"
              R"("command":"RESPONSE_ROUTER_VERSION","id":9})");
    EXPECT_EQ(result.output, R"({"id":9,"result":0,"reply":{"VersionInfo":"1","b":2,)"
                             R"("VersionInfo":"3","Status":"0"}})"
                             "\n");
}

TEST(Serve, KeepsStateFromLineToLine)
{
    const std::string line = std::string(kRequest) + "\n";
    const AgentResult result = serve(line + line + line, {"--fault", "devapi_get_sn_info=5*2"});
    EXPECT_THAT(lines_of(result.output),
                ElementsAre(HasSubstr("get sn failed"), HasSubstr("get sn failed"), kAnswer));
}

TEST(Serve, EndsQuietlyWhenNobodyReads)
{
    AgentProcess agent({"serve"});
    EXPECT_EQ(ask(agent, kRequest), kAnswer);
    agent.close_output();
    agent.send(std::string(kRequest) + "\n");
    // The input stays open: the closed output ends the agent.
    const AgentResult result = agent.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.error, IsEmpty());
}

TEST(Serve, EndsOnASignal)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        const std::string state = test_file("signal" + std::to_string(signal) + ".json");
        AgentProcess agent({"--state", state, "serve"});
        EXPECT_EQ(ask(agent, kRequest), kAnswer);
        std::filesystem::remove(state);
        agent.signal(signal);
        const AgentResult result = agent.wait();
        EXPECT_EQ(result.exit_status, 128 + signal);
        EXPECT_TRUE(std::filesystem::exists(state)) << "the gateway was not closed";
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_THAT(result.error, IsEmpty());
    }
}

TEST(Serve, AnswersTheLineDuringWhichASignalArrives)
{
    const AgentResult result =
        run_agent({"--plugin", PROBE_PLUGIN, "serve"},
                  "{\"id\":1,\"command\":\"STOP\"}\n{\"id\":2,\"command\":\"STOP\"}\n");
    EXPECT_EQ(result.exit_status, 128 + SIGTERM);
    EXPECT_EQ(result.output, "{\"id\":1,\"result\":0,\"reply\":{}}\n");
}

TEST(Serve, EndsOnASignalThoughNobodyReads)
{
    AgentProcess agent({"serve"});
    // The answer is larger than the pipe's buffer, so the agent has to wait for a reader.
    const std::string report(300000, 'v');
    agent.send(R"({"command":"RESPONSE_ROUTER_VERSION","params":{"VersionInfo":")" + report +
               "\"}}\n");
    agent.signal(SIGTERM);
    agent.await_end();
    EXPECT_EQ(agent.finish().exit_status, 128 + SIGTERM);
}

TEST(Serve, KeepsWhatLibrariesPrintOutOfItsAnswers)
{
    const AgentResult result =
        run_agent({"--plugin", PROBE_PLUGIN, "serve"},
                  R"({"id":1,"command":"PRINT","params":{"text":"{\"id\":1}"}})");
    EXPECT_EQ(result.output, R"({"id":1,"result":0,"reply":{"text":"{\"id\":1}"}})"
                             "\n");
    EXPECT_EQ(result.error, "{\"id\":1}\n");
}

// Like ask(), for a plug-in whose commands are not in the protocol.
std::string ask_probe(AgentProcess &agent, const std::string &line)
{
    agent.send(line + "\n");
    return agent.read_line();
}

constexpr char kLost[] = " lines are missing here: they could not be written in time\n";

// What the agent writes to standard error until it reports lost lines.
std::string error_until_loss_is_reported(const AgentProcess &agent)
{
    std::string error;
    while (error.find(kLost) == std::string::npos) {
        const std::string more = agent.read_error();
        if (more.empty()) {
            break;
        }
        error += more;
    }
    return error;
}

TEST(Serve, IsNotBlockedByAnUnreadLog)
{
    constexpr size_t kRequests = 150;
    constexpr size_t kLines = 3; // of the log, for each request
    const std::string text(4000, 'x');
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve"}, OutputTo::kUnreadError);
    const std::string request = R"({"command":"LOG","params":{"text":")" + text + "\"}}";
    for (size_t count = 0; count < kRequests; ++count) {
        EXPECT_THAT(ask_probe(agent, request), HasSubstr("\"result\":0"));
    }

    const std::vector<std::string> lines = lines_of(error_until_loss_is_reported(agent));
    ASSERT_FALSE(lines.empty());
    for (size_t at = 0; at + 1 < lines.size(); ++at) {
        EXPECT_THAT(lines[at], StartsWith("<3> probe: ")) << "a part of a line";
    }
    EXPECT_EQ(lines.back(), "hgagent: " + std::to_string(kRequests * kLines - (lines.size() - 1)) +
                                " lines are missing here: they could not be written in time");
    EXPECT_THAT(ask_probe(agent, request), HasSubstr("\"result\":0"));
    EXPECT_THAT(agent.read_error(), StartsWith("<3> probe: error xxx"));
}

TEST(Serve, EndsOnASignalThoughNobodyReadsTheLog)
{
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve"}, OutputTo::kUnreadError);
    const std::string request =
        R"({"command":"LOG","params":{"text":")" + std::string(4000, 'x') + "\"}}";
    for (int count = 0; count < 30; ++count) { // more than the pipe holds
        ask_probe(agent, request);
    }
    agent.signal(SIGTERM);
    agent.await_end();
    EXPECT_EQ(agent.finish().exit_status, 128 + SIGTERM);
}

TEST(Serve, IsNotBlockedByUnreadPrintsOfALibrary)
{
    const std::string text(4000, 'x');
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve"}, OutputTo::kUnreadError);
    for (int count = 0; count < 30; ++count) { // more than the pipe holds
        EXPECT_THAT(ask_probe(agent, R"({"command":"PRINT","params":{"text":")" + text + "\"}}"),
                    HasSubstr("\"result\":0"));
    }
    // A program that a library runs has the same standard error.
    EXPECT_THAT(ask_probe(agent, R"({"command":"SYSTEM","params":{"command":"echo more >&2"}})"),
                HasSubstr("\"result\":0"));
    agent.signal(SIGTERM);
    agent.await_end();
    EXPECT_EQ(agent.finish().exit_status, 128 + SIGTERM);
}

TEST(Serve, IsNotBlockedByAnUnreadTrace)
{
    const std::string pipe = test_file("trace");
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    const int unread = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    for (const std::string &trace : {std::string("-"), pipe}) {
        AgentProcess agent({"--trace", trace, "serve"}, OutputTo::kUnreadError);
        for (int count = 0; count < 300; ++count) {
            EXPECT_THAT(ask(agent, R"({"command":"GET_AD_BASE_INFO"})"), HasSubstr("\"result\":0"));
        }
        if (trace == "-") {
            // Buffered lines are written with the next one.
            std::string error;
            while (error.find("trace: ") == std::string::npos) {
                ask(agent, kRequest);
                error += agent.read_error();
            }
            EXPECT_THAT(error, HasSubstr(kLost));
            for (const std::string &line : lines_of(error.substr(0, error.rfind('\n')))) {
                EXPECT_THAT(line, testing::AnyOf(StartsWith("["), StartsWith("trace: ")));
            }
        }
        agent.signal(SIGTERM);
        agent.await_end();
        EXPECT_EQ(agent.finish().exit_status, 128 + SIGTERM);
    }
    close(unread);
}

// How often the text occurs in the writable memory of the process.
size_t count_in_memory(pid_t process, const std::string &text)
{
    const std::string folder = "/proc/" + std::to_string(process);
    std::ifstream maps(folder + "/maps");
    std::ifstream memory(folder + "/mem", std::ios::binary);
    constexpr unsigned long kMostMapped = 1UL << 30; // what a sanitizer maps for itself is more
    size_t found = 0;
    for (std::string line; std::getline(maps, line);) {
        unsigned long begin = 0;
        unsigned long end = 0;
        char access[5] = "";
        // NOLINTNEXTLINE(cert-err34-c): the kernel wrote it
        if (sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, access) != 3 ||
            std::string_view(access).substr(0, 2) != "rw" || end - begin > kMostMapped) {
            continue;
        }
        std::string bytes(1UL << 20, '\0');
        for (; begin < end; begin += bytes.size()) {
            memory.clear();
            memory.seekg(static_cast<std::streamoff>(begin));
            memory.read(bytes.data(), static_cast<std::streamsize>(
                                          std::min<unsigned long>(end - begin, bytes.size())));
            const std::string_view read(bytes.data(), static_cast<size_t>(memory.gcount()));
            for (size_t at = read.find(text); at != std::string::npos;
                 at = read.find(text, at + 1)) {
                ++found;
            }
        }
    }
    return found;
}

TEST(Serve, WipesSecretsFromItsMemory)
{
    const std::string secret = "correct horse battery staple";
    AgentProcess agent({"--show-secrets", "serve"});
    EXPECT_EQ(ask(agent, kRequest), kAnswer);
    EXPECT_THAT(
        ask(agent, R"({"id":1,"command":"GET_SN_INFO","params":{"Password":")" + secret + "\"}}"),
        HasSubstr(secret));
    EXPECT_THAT(ask(agent, R"({"id":1,"command":"NO_SUCH","params":{"Password":")" + secret +
                               "\"},\"other\":[\"" + std::string(70000, 'x') + secret + "\"]}"),
                HasSubstr(secret));
    EXPECT_EQ(ask(agent, kRequest), kAnswer);
    EXPECT_EQ(count_in_memory(agent.process(), secret), 0U);
    EXPECT_GT(count_in_memory(agent.process(), "3C:6A:D2:10:4F:20"), 0U); // the gateway's own
}

TEST(Serve, LeavesNoCoreDump)
{
    const std::string request = R"({"id":1,"command":"DUMPABLE"})";
    EXPECT_THAT(run_agent({"--plugin", PROBE_PLUGIN, "serve"}, request).output,
                HasSubstr("\"dumpable\":0"));
    EXPECT_THAT(run_agent({"--plugin", PROBE_PLUGIN, "--show-secrets", "serve"}, request).output,
                HasSubstr("\"dumpable\":1"));
}

} // namespace serve_test
