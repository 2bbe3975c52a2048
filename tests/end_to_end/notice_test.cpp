// SPDX-License-Identifier: MIT
// Notices to the app: hgagent notice, and what serve shows of them.
#include "agent_commands.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdlib>
#include <ctime>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Json = nlohmann::ordered_json;

namespace notice_test {

constexpr char kText[] = "A new phone is in the home";
constexpr char kEncoded[] = "QSBuZXcgcGhvbmUgaXMgaW4gdGhlIGhvbWU=";

std::string local_time()
{
    const time_t now = time(nullptr);
    struct tm local;
    localtime_r(&now, &local);
    char text[32];
    strftime(text, sizeof(text), "%Y%m%d%H%M%S", &local);
    return text;
}

void expect_envelope(const Json &envelope, const std::string &plugin_name)
{
    std::vector<std::string> keys;
    for (const auto &[key, value] : envelope.items()) {
        keys.push_back(key);
    }
    EXPECT_THAT(keys, ElementsAre("RPCMethod", "Plugin_Name", "time", "MD5", "mac", "Message"));
    EXPECT_EQ(envelope["RPCMethod"], "Push");
    EXPECT_EQ(envelope["Plugin_Name"], plugin_name);
    EXPECT_EQ(envelope["MD5"], "6bcb66baf01b64bac5f2455fa74231a8"); // of the encoded text
    EXPECT_EQ(envelope["mac"], "3C6AD2104F20");
    EXPECT_EQ(envelope["Message"], kEncoded);
}

AgentResult notice(std::vector<std::string> options, const std::string &text,
                   std::string_view input = "")
{
    options.insert(options.end(), {"notice", "--plugin-name", "parental_control", text});
    return run_agent(options, input);
}

// A request line for serve that triggers a notice.
std::string request(const std::string &id, const std::string &members)
{
    return "{\"id\":" + id + ",\"notice\":" + members + "}\n";
}

TEST(Notice, PrintsTheEnvelope)
{
    setenv("TZ", "XYZ-5:30", 1);
    tzset();
    const std::string before = local_time();
    const AgentResult result = notice({}, kText);
    const std::string after = local_time();
    unsetenv("TZ");
    tzset();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_EQ(lines_of(result.output).size(), 1U);
    const Json envelope = Json::parse(result.output);
    expect_envelope(envelope, "parental_control");
    EXPECT_GE(envelope["time"], before);
    EXPECT_LE(envelope["time"], after);
}

TEST(Notice, TakesItsTextFromStandardInput)
{
    const AgentResult result = notice({}, "-", "\u4f60\u597d, \"phone\"\n");
    EXPECT_EQ(result.exit_status, 0);
    const Json envelope = Json::parse(result.output);
    EXPECT_EQ(envelope["Message"], "5L2g5aW9LCAicGhvbmUiCg==");
    EXPECT_EQ(envelope["MD5"], "d5ae6098a4a6e67634879db4c61a3dc5");
}

TEST(Notice, HasAnyTextUpToAMegabyte)
{
    EXPECT_EQ(Json::parse(notice({}, "").output)["Message"], "");
    EXPECT_EQ(Json::parse(notice({}, "-", "\xff\x01").output)["Message"], "/wE=");
    const std::string most(1024 * 1024, 'x');
    const AgentResult longest = notice({}, "-", most);
    EXPECT_EQ(longest.exit_status, 0);
    EXPECT_EQ(Json::parse(longest.output)["Message"].get<std::string>().size(),
              (most.size() + 2) / 3 * 4);
    const AgentResult too_long = notice({}, "-", most + "x");
    EXPECT_EQ(too_long.exit_status, 5);
    EXPECT_EQ(too_long.error, "hgagent: standard input is longer than 1048576 bytes\n");
}

TEST(Notice, SaysWhatCannotBeSent)
{
    const AgentResult nul = notice({}, "-", std::string("a\0b", 3));
    EXPECT_EQ(nul.exit_status, 2);
    EXPECT_EQ(nul.error, "hgagent: bad notice: a NUL byte would end its text\n");
    EXPECT_EQ(error_of({"notice", "--plugin-name", "\xd6\xd0", "text"}, 2),
              "hgagent: bad notice: the plug-in's name is not UTF-8\n");
}

TEST(Notice, FailsWhenItIsRefused)
{
    for (const std::string result : {"1", "-7", "2147483647"}) {
        const std::string error =
            error_of({"--refuse-notices", result, "notice", "--plugin-name", "p", kText}, 1);
        EXPECT_THAT(lines_of(error), ElementsAre("<3> libtsiotAgtd: kaa_device_notice failed!!!",
                                                 "hgagent: the notice was refused with " + result));
    }
}

TEST(Notice, PrecedesTheAnswerOfServe)
{
    const AgentResult result =
        run_agent({"serve"}, request(R"("a")", R"({"plugin_name":"first","text":")" +
                                                   std::string(kText) + R"("})") +
                                 R"({"id":2,"command":"GET_SN_INFO"})");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.error, IsEmpty());
    const std::vector<std::string> lines = lines_of(result.output);
    ASSERT_EQ(lines.size(), 3U);
    const Json line = Json::parse(lines[0]);
    EXPECT_EQ(line.size(), 1U);
    expect_envelope(line["notice"], "first");
    EXPECT_EQ(lines[1], R"({"id":"a","result":0})");
    EXPECT_THAT(lines[2], StartsWith(R"({"id":2,"result":0,"reply":{"Status":"0")"));
}

TEST(Notice, IsRefusedInServe)
{
    const AgentResult result = run_agent({"--refuse-notices", "-7", "serve"},
                                         request("1", R"({"plugin_name":"p","text":"t"})"));
    EXPECT_EQ(result.output, "{\"id\":1,\"result\":-7}\n");
    EXPECT_EQ(result.error, "<3> libtsiotAgtd: kaa_device_notice failed!!!\n");
}

TEST(Notice, OfServeNeedsItsTexts)
{
    const std::string error =
        R"("error":"\"notice\" needs the texts \"plugin_name\" and \"text\"","code":"bad-request"})";
    std::string input;
    std::vector<std::string> answers;
    for (const std::string bad :
         {"null", "[]", "\"text\"", "{}", R"({"plugin_name":"p"})", R"({"text":"t"})",
          R"({"plugin_name":1,"text":"t"})", R"({"plugin_name":"p","text":null})"}) {
        input += request(std::to_string(answers.size()), bad);
        answers.push_back("{\"id\":" + std::to_string(answers.size()) + "," + error);
    }
    EXPECT_EQ(lines_of(run_agent({"serve"}, input).output), answers);
    EXPECT_EQ(run_agent({"--plugin", PROBE_PLUGIN, "serve"},
                        request("[1]", R"({"plugin_name":"p","text":"t"})"))
                  .output,
              "{\"id\":[1],\"error\":\"the plug-in " PROBE_PLUGIN
              " does not export json_msg_notice_to_app\",\"code\":\"bad-request\"}\n");
}

TEST(Notice, OfAnotherPluginNeedNotBeJson)
{
    const AgentResult result =
        run_agent({"--plugin", PROBE_PLUGIN, "serve"},
                  R"({"id":1,"command":"NOTICE","params":{"text":"say \"hi\""}})"
                  "\n"
                  R"({"id":2,"command":"NOTICE","params":{"text":"[1, {\"a\":2}]"}})");
    EXPECT_THAT(lines_of(result.output),
                ElementsAre(R"({"notice":"say \"hi\""})",
                            R"({"id":1,"result":0,"reply":{"text":"say \"hi\"","result":0}})",
                            R"({"notice":[1,{"a":2}]})", StartsWith(R"({"id":2,)")));
}

TEST(Notice, FromAThreadIsWrittenBetweenAnswers)
{
    constexpr int kCount = 200;
    const std::string text(20000, 'n'); // more than is written atomically
    const std::string long_answer(20000, 'a');
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve"});
    agent.send(R"({"command":"NOTICES","params":{"text":")" + text + "\",\"count\":\"" +
               std::to_string(kCount) + "\"}}\n");
    int notices = 0;
    int answers = 0;
    // Sends requests until both threads have ended, so that notices and answers are written
    // concurrently.
    for (bool asked = true; notices < kCount || asked;) {
        const Json line = Json::parse(agent.read_line());
        if (line.contains("notice")) {
            EXPECT_EQ(line["notice"], text);
            ++notices;
        } else {
            EXPECT_EQ(line["result"], answers == 0 ? 0 : -3);
            ++answers;
            asked = notices < kCount;
            if (asked) {
                agent.send(R"({"command":"NONE","params":{"a":")" + long_answer + "\"}}\n");
            }
        }
    }
    EXPECT_GT(answers, 1);
    EXPECT_EQ(agent.finish().exit_status, 0);
}

TEST(Notice, DoesNotDelayTheEndOnASignal)
{
    AgentProcess agent({"--plugin", PROBE_PLUGIN, "serve"});
    agent.send(R"({"command":"NOTICES","params":{"count":"100","text":")" +
               std::string(300000, 'n') + "\"}}\n");
    agent.read_line(); // a thread keeps writing what nobody reads
    agent.signal(SIGTERM);
    agent.await_end();
    EXPECT_EQ(agent.finish().exit_status, 128 + SIGTERM);
}

TEST(Notice, IsRefusedWhereNobodyReceivesIt)
{
    const AgentResult result = run_agent({"--plugin", PROBE_PLUGIN, "call", "NOTICE", "text={}"});
    EXPECT_THAT(result.output, HasSubstr(R"("result":-1)"));
    EXPECT_EQ(result.error, "<3> hgagent: nobody receives notices\n");
}

} // namespace notice_test
