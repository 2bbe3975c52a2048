// SPDX-License-Identifier: MIT
// The parts of the MQTT transport that need no broker: addresses, topics, payloads, pauses, files.
#include "config_files.h"
#include "service/config.h"
#include "service/ways_in/mqtt/backoff.h"
#include "service/ways_in/mqtt/broker_address.h"
#include "service/ways_in/mqtt/broker_connection.h"
#include "service/ways_in/mqtt/credentials.h"
#include "service/ways_in/mqtt/requests.h"
#include "service/ways_in/mqtt/topics.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace agent::service {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using Kind = Topics::Target::Kind;

// ---- Addresses of brokers -----------------------------------------------------------------------

std::string url_of(const std::string &text)
{
    return parse_broker(text).url();
}

TEST(BrokerAddress, HasTheUsualPorts)
{
    EXPECT_EQ(url_of("mqtt://broker.example"), "mqtt://broker.example:1883");
    EXPECT_EQ(url_of("mqtts://broker.example"), "mqtts://broker.example:8883");
    EXPECT_EQ(url_of("mqtts://broker.example:443"), "mqtts://broker.example:443");
    EXPECT_EQ(url_of("mqtt://192.0.2.7:65535"), "mqtt://192.0.2.7:65535");
    EXPECT_EQ(url_of("mqtt://[2001:db8::7]"), "mqtt://[2001:db8::7]:1883");
    EXPECT_EQ(url_of("mqtts://[::1]:1"), "mqtts://[::1]:1");
}

TEST(BrokerAddress, RefusesWhatIsNone)
{
    for (const char *text : {"",
                             "broker",
                             "tcp://broker",
                             "MQTT://broker",
                             "mqtt:broker",
                             "mqtt://",
                             "mqtt://:1883",
                             "mqtt://a b",
                             "mqtt://user@broker",
                             "mqtt://broker/path",
                             "mqtt://broker:",
                             "mqtt://broker:0",
                             "mqtt://broker:65536",
                             "mqtt://broker:18a",
                             "mqtt://broker:-1",
                             "mqtt://[::1",
                             "mqtt://[]",
                             "mqtt://[broker]",
                             "mqtt://[::1]1883",
                             "mqtt://::1",
                             "mqtts://br\xc3\xb6ker"}) {
        EXPECT_THROW(parse_broker(text), std::invalid_argument) << text;
    }
    EXPECT_NO_THROW(parse_broker("mqtt://" + std::string(253, 'a')));
    EXPECT_THROW(parse_broker("mqtt://" + std::string(254, 'a')), std::invalid_argument);
}

TEST(BrokerAddress, KnowsThisMachine)
{
    for (const char *host : {"localhost", "127.0.0.1", "127.8.9.10", "[::1]"}) {
        EXPECT_TRUE(parse_broker(std::string("mqtt://") + host).is_local()) << host;
    }
    for (const char *host : {"localhost.example", "128.0.0.1", "127.0.0.1.example", "[::2]",
                             "0.0.0.0", "Localhost", "127.1"}) {
        EXPECT_FALSE(parse_broker(std::string("mqtt://") + host).is_local()) << host;
    }
}

// ---- Topics -------------------------------------------------------------------------------------

const Topics kTopics("gateway", "gw1", {"platform/answers/", "platform/one"});

TEST(Topics, NamesWhatAMessageIsFor)
{
    const auto is = [](const char *topic, Kind kind, const char *name) {
        const Topics::Target target = kTopics.target_of(topic);
        return target.kind == kind && target.name == name;
    };
    EXPECT_TRUE(is("gateway/gw1/command/GET_SN_INFO", Kind::kCommand, "GET_SN_INFO"));
    EXPECT_TRUE(is("gateway/gw1/report/topology", Kind::kReport, "topology"));
    EXPECT_TRUE(is("gateway/gw1/request/app-7", Kind::kLine, "app-7"));
    EXPECT_TRUE(is("gateway/gw1/state/get", Kind::kState, ""));
    for (const char *topic :
         {"", "gateway", "gateway/gw1/", "gateway/gw1/command", "gateway/gw1/command/",
          "gateway/gw1/command/a/b", "gateway/gw1/command/a\"b", "gateway/gw2/command/GET_SN_INFO",
          "gateway/gw1/state", "gateway/gw1/reply/me", "gateway/gw1/event/notice",
          "x/gateway/gw1/command/GET_SN_INFO", "Gateway/gw1/command/GET_SN_INFO"}) {
        EXPECT_EQ(kTopics.target_of(topic).kind, Kind::kNone) << topic;
    }
}

TEST(Topics, AnswersOnlyWhereItMay)
{
    for (const char *topic : {"gateway/gw1/reply/me", "gateway/gw1/reply/a/b/c",
                              "platform/answers/7", "platform/one", "gateway/gw1/reply/\xc3\xb6"}) {
        EXPECT_TRUE(kTopics.may_answer_at(topic)) << topic;
    }
    for (const std::string &topic : std::vector<std::string>{"",
                                                             "gateway/gw1/reply/",
                                                             "gateway/gw1/reply",
                                                             "gateway/gw1/command/REBOOT",
                                                             "gateway/gw1/state",
                                                             "gateway/gw1/event/notice",
                                                             "gateway/gw1/request/me",
                                                             "gateway/gw2/reply/me",
                                                             "gateway/gw2/command/REBOOT",
                                                             "platform/answers/",
                                                             "platform/ones",
                                                             "platform/one/two",
                                                             "$SYS/broker",
                                                             "gateway/gw1/reply/+",
                                                             "gateway/gw1/reply/#",
                                                             "gateway/gw1/reply/a+b",
                                                             "platform/answers/#",
                                                             "gateway/gw1/reply/a\nb",
                                                             "gateway/gw1/reply/\xff",
                                                             "gateway/gw1/reply/a/b/c/d/e/f"}) {
        EXPECT_FALSE(kTopics.may_answer_at(topic)) << topic;
    }
    const std::string begin = "gateway/gw1/reply/";
    EXPECT_TRUE(kTopics.may_answer_at(begin + std::string(256 - begin.size(), 'a')));
    EXPECT_FALSE(kTopics.may_answer_at(begin + std::string(257 - begin.size(), 'a')));
    EXPECT_FALSE(kTopics.may_answer_at(begin + std::string(1, '\0')));
}

// Also what the configuration allows: it cannot name the gateway's own topics.
TEST(Topics, NeverAnswersOnItsOwnCommands)
{
    const Topics topics("gateway", "gw1", {"gateway/", "$SYS/", "gateway/gw1/command/REBOOT"});
    EXPECT_FALSE(topics.may_answer_at("gateway/gw1/command/REBOOT"));
    EXPECT_FALSE(topics.may_answer_at("$SYS/x"));
    EXPECT_TRUE(topics.may_answer_at("gateway/gw2/reply/me"));
}

TEST(Topics, SubscribesToWhatItUnderstands)
{
    EXPECT_THAT(kTopics.subscriptions(),
                ElementsAre("gateway/gw1/command/+", "gateway/gw1/report/+",
                            "gateway/gw1/request/+", "gateway/gw1/state/get"));
    EXPECT_EQ(kTopics.state(), "gateway/gw1/state");
    EXPECT_EQ(kTopics.event("update.failed"), "gateway/gw1/event/update.failed");
    EXPECT_EQ(kTopics.reply("me"), "gateway/gw1/reply/me");
}

TEST(Topics, MakeAClientIdentifierPerRoot)
{
    EXPECT_EQ(client_identifier("gateway", "gw"), "gw");
    EXPECT_EQ(client_identifier("lab", "gw"), "gw@lab");
    EXPECT_EQ(client_identifier("lab/second-floor", "gw"), "gw@lab@second-floor");
    const std::string id(64, 'a');
    EXPECT_EQ(problem_of_client_identifier("gateway", id), "");
    EXPECT_EQ(problem_of_client_identifier(std::string(63, 'b'), id), "");
    EXPECT_EQ(problem_of_client_identifier(std::string(64, 'b'), id),
              "the client identifier " + id + "@" + std::string(64, 'b') +
                  " has more than 128 bytes: choose a shorter root or id");
}

TEST(Topics, ChecksNames)
{
    for (const std::string &id :
         std::vector<std::string>{"gw", "3C:6A:D2:10:4F:20", "a.b_c-d", std::string(64, 'a')}) {
        EXPECT_EQ(problem_of_gateway_id(id), "") << id;
    }
    for (const std::string &id :
         std::vector<std::string>{"", "a/b", "+", "#", "$a", "a b", "\xc3\xb6", "a\n"}) {
        EXPECT_NE(problem_of_gateway_id(id), "") << id;
    }
    EXPECT_NE(problem_of_gateway_id(std::string(65, 'a')), "");
    for (const std::string &root :
         std::vector<std::string>{"gateway", "a/b/c/d", std::string(96, 'a')}) {
        EXPECT_EQ(problem_of_topic_root(root), "") << root;
    }
    for (const std::string &root :
         std::vector<std::string>{"", "/", "a/", "/a", "a//b", "a/+", "#", "$SYS", "a/b/c/d/e"}) {
        EXPECT_NE(problem_of_topic_root(root), "") << root;
    }
    EXPECT_NE(problem_of_topic_root(std::string(97, 'a')), "");
    for (const std::string &topic : std::vector<std::string>{"a", "a/", "a/b/c"}) {
        EXPECT_EQ(problem_of_response_topic(topic), "") << topic;
    }
    for (const std::string &topic : std::vector<std::string>{"", "a/#", "+/a", "$SYS/", "a\n"}) {
        EXPECT_NE(problem_of_response_topic(topic), "") << topic;
    }
}

// ---- Payloads -----------------------------------------------------------------------------------

Request command(std::string_view payload)
{
    return request_of({Kind::kCommand, "GET_SN_INFO"}, payload);
}

TEST(MqttRequest, MakesALineOfAPayload)
{
    for (const char *payload : {"{}", "", " ", "\n{}\r\n"}) {
        const Request request = command(payload);
        EXPECT_EQ(request.code, Code::kNone) << payload;
        EXPECT_EQ(request.line, R"({"id":null,"command":"GET_SN_INFO","params":{}})") << payload;
        EXPECT_EQ(request.subject, Subject::kCommand);
        EXPECT_EQ(request.name, "GET_SN_INFO");
        EXPECT_EQ(request.params(), "{}");
    }
    const Request report = request_of({Kind::kReport, "topology"}, R"({"a":[1,"}"]})");
    EXPECT_EQ(report.line, R"({"id":null,"report":"topology","params":{"a":[1,"}"]}})");
    EXPECT_EQ(report.subject, Subject::kReport);
    EXPECT_EQ(command("{\"a\":\n\t{\n}}").line,
              "{\"id\":null,\"command\":\"GET_SN_INFO\",\"params\":{\"a\": \t{ }}}");
}

TEST(MqttRequest, TakesNothingButOneObject)
{
    for (const std::string &payload : std::vector<std::string>{
             "[]", "null", "7", "\"text\"", "rubbish", "{", "}", "{}}", "{} {}", "{},{}",
             R"({},"command":"REBOOT")", R"({},"id":1)", R"({},"params":{"a":1})",
             R"({},"hello":{})", R"({"a":1},"comm\u0061nd":"REBOOT")", "{\"a\":\"b\nc\"}",
             "{\"a\":\"b\n"}) {
        const Request request = command(payload);
        // The worker refuses what is not JSON, since it reads the whole line.
        if (request.code == Code::kNone) {
            EXPECT_EQ(request.name, "GET_SN_INFO") << payload;
            EXPECT_EQ(request.params(), payload) << payload;
        } else {
            EXPECT_EQ(request.code, Code::kBadRequest) << payload;
            EXPECT_EQ(request.id, "null") << payload;
        }
    }
    for (const std::string &payload :
         std::vector<std::string>{"[]", R"({},"command":"REBOOT")", R"({},"id":1)", "{}}", "{} {}",
                                  "{\"a\":\"b\nc\"}"}) {
        EXPECT_EQ(command(payload).code, Code::kBadRequest) << payload;
    }
}

TEST(MqttRequest, ReadsLinesOfClients)
{
    const auto line = [](std::string_view payload) {
        return request_of({Kind::kLine, "app"}, payload);
    };
    const Request request = line("{\"id\":7,\n\"command\":\"GET_SN_INFO\"}\n");
    EXPECT_EQ(request.code, Code::kNone);
    EXPECT_EQ(request.id, "7");
    EXPECT_EQ(request.line, R"({"id":7, "command":"GET_SN_INFO"})");
    EXPECT_EQ(line(R"({"id":7,"hello":{}})").code, Code::kNone);
    EXPECT_EQ(line(R"({"id":7,"subscribe":"*"})").code, Code::kBadRequest);
    EXPECT_EQ(line("").code, Code::kBadRequest);
    EXPECT_EQ(line("{}").code, Code::kBadRequest);
}

TEST(MqttRequest, RemovesTheIdFromAnswers)
{
    EXPECT_EQ(answer_payload(R"({"id":null,"result":0,"reply":{}})"), R"({"result":0,"reply":{}})");
    EXPECT_EQ(answer_payload(error_answer("null", Code::kBusy, "later")),
              R"({"error":"later","code":"busy"})");
}

TEST(MqttRequest, TakesEventsApart)
{
    const EventParts event = parts_of_event(R"({"event":"notice","data":{"a":"}"}})");
    EXPECT_EQ(event.name, "notice");
    EXPECT_EQ(event.data, R"({"a":"}"})");
    for (const char *line : {"", "{}", R"({"event":"notice"})", R"({"event":"notice)",
                             R"({"data":{},"event":"notice"})", R"({"event":"a","data":{})"}) {
        const EventParts none = parts_of_event(line);
        EXPECT_TRUE(none.name.empty() || none.data == "{") << line;
    }
}

TEST(MqttRequest, KnowsTheSizeOfAPacket)
{
    PublishedMessage message;
    message.topic = "a/b";
    message.payload = "xyz";
    EXPECT_EQ(packet_size(message), 2 + 2 + 3 + 1 + 3);
    message.qos = 1;
    EXPECT_EQ(packet_size(message), 2 + 2 + 3 + 2 + 1 + 3);
    message.correlation = "1234";
    EXPECT_EQ(packet_size(message), 2 + 2 + 3 + 2 + 1 + (1 + 2 + 4) + 3);
    message.is_gzip = true; // content-encoding: gzip
    EXPECT_EQ(packet_size(message), 2 + 2 + 3 + 2 + 1 + (1 + 2 + 4) + (1 + 2 + 16 + 2 + 4) + 3);
    message.payload.resize(200);
    EXPECT_EQ(packet_size(message), 3 + 2 + 3 + 2 + 1 + 7 + 25 + 200);
}

// ---- Pauses -------------------------------------------------------------------------------------

TEST(Backoff, DoublesUpToALimit)
{
    Backoff backoff;
    std::vector<int64_t> pauses;
    for (int count = 0; count < 9; ++count) {
        pauses.push_back(backoff.next(1).count());
    }
    EXPECT_THAT(pauses, ElementsAre(1000, 2000, 4000, 8000, 16000, 32000, 60000, 60000, 60000));
    EXPECT_EQ(backoff.next(0).count(), 30000);
    backoff.reset();
    EXPECT_EQ(backoff.next(0.5).count(), 750);
}

// ---- Files --------------------------------------------------------------------------------------

class CredentialsFile : public testing::Test {
  protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "credentialsXXXXXX";
        folder_ = mkdtemp(name.data());
        path_ = folder_ + "/file";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void write(const std::string &text, mode_t mode = 0600) const
    {
        std::ofstream(path_, std::ios::binary) << text;
        chmod(path_.c_str(), mode);
    }
    std::string problem() const
    {
        try {
            read_credentials(path_);
            return "";
        } catch (const std::runtime_error &problem) {
            return problem.what();
        }
    }

    std::string folder_;
    std::string path_;
};

TEST_F(CredentialsFile, HasUserAndPassword)
{
    for (const char *text : {"gw\ns3 cret", "gw\ns3 cret\n", "gw\r\ns3 cret\r\n"}) {
        write(text);
        const Credentials credentials = read_credentials(path_);
        EXPECT_EQ(credentials.user, "gw");
        EXPECT_EQ(credentials.password, "s3 cret");
    }
    write("gw\n");
    EXPECT_EQ(read_credentials(path_).password, "");
}

TEST_F(CredentialsFile, IsNotReadableByOthers)
{
    for (const mode_t mode : {0640, 0604, 0620, 0602, 0666}) {
        write("gw\ns3cret\n", mode);
        EXPECT_THAT(problem(), EndsWith("others may read it: chmod 600")) << mode;
    }
    write("gw\ns3cret\n", 0400);
    EXPECT_EQ(problem(), "");
}

TEST_F(CredentialsFile, MayComeFromSystemd)
{
    setenv("CREDENTIALS_DIRECTORY", folder_.c_str(), 1);
    write("gw\ns3cret\n", 0440);
    EXPECT_EQ(problem(), "");
    write("gw\ns3cret\n", 0444);
    EXPECT_NE(problem(), "");
    setenv("CREDENTIALS_DIRECTORY", (folder_ + "/fil").c_str(), 1);
    write("gw\ns3cret\n", 0440);
    EXPECT_NE(problem(), "");
    unsetenv("CREDENTIALS_DIRECTORY");
}

TEST_F(CredentialsFile, IsCheckedInWhole)
{
    EXPECT_THAT(problem(), EndsWith("No such file or directory"));
    for (const std::string &text :
         std::vector<std::string>{"", "\n", "\nsecret\n", "a\nb\nc\n", "a\nb\n\n", "a\xff\nb\n"}) {
        write(text);
        EXPECT_THAT(problem(), EndsWith("is not a user and a password, each on a line")) << text;
    }
    write(std::string("a\0b\nc\n", 6));
    EXPECT_THAT(problem(), HasSubstr("is not a user"));
    write(std::string(5000, 'a'));
    EXPECT_THAT(problem(), HasSubstr("is not a user"));
    path_ = folder_;
    EXPECT_THAT(problem(), EndsWith("is not a regular file"));
    path_ = folder_ + "/pipe";
    mkfifo(path_.c_str(), 0600);
    EXPECT_THAT(problem(), EndsWith("is not a regular file"));
}

// ---- Settings -----------------------------------------------------------------------------------

std::string mqtt_problems(const std::string &lines)
{
    return problems_of([&] { parse_config("[mqtt]\n" + lines, "hgagent.toml"); });
}

constexpr char kRole[] =
    "\n[roles.platform]\nmembers = [\"topic-root:gateway\"]\nallow = [\"*\"]\n";

TEST(MqttSettings, AreRead)
{
    const ServiceConfig config = parse_config(
        R"([mqtt]
brokers = ["mqtts://one.example", "mqtts://two.example:443"]
id = "gw1"
root = "fleet/7"
response-topics = ["platform/"]
credentials = "user"
ca = "/etc/ca.pem"
certificate = "gw.pem"
key = "gw.key"
alpn = "mqtt"
server-name = "brokers.example"
keep-alive-seconds = 30
session-seconds = 60
max-packet = 131072
)" + std::string(kRole),
        "etc/hgagent.toml");
    EXPECT_THAT(config.mqtt.brokers, ElementsAre("mqtts://one.example", "mqtts://two.example:443"));
    EXPECT_EQ(config.mqtt.id, "gw1");
    EXPECT_EQ(config.mqtt.root, "fleet/7");
    EXPECT_THAT(config.mqtt.response_topics, ElementsAre("platform/"));
    EXPECT_EQ(config.mqtt.credentials, "etc/user");
    EXPECT_EQ(config.mqtt.ca, "/etc/ca.pem");
    EXPECT_EQ(config.mqtt.certificate, "etc/gw.pem");
    EXPECT_EQ(config.mqtt.key, "etc/gw.key");
    EXPECT_EQ(config.mqtt.alpn, "mqtt");
    EXPECT_EQ(config.mqtt.server_name, "brokers.example");
    EXPECT_EQ(config.mqtt.keep_alive_seconds, 30);
    EXPECT_EQ(config.mqtt.session_seconds, 60);
    EXPECT_EQ(config.mqtt.max_packet, 131072);
    EXPECT_FALSE(config.mqtt.is_local());
}

TEST(MqttSettings, AreCheckedOneByOne)
{
    EXPECT_EQ(mqtt_problems("brokers = [\"mqtt://localhost\", \"broker\"]\nid = \"a/b\"\n"
                            "root = \"a/#\"\nresponse-topics = [\"$SYS/\"]\nalpn = \"\"\n"
                            "session-seconds = 28801\nkeep-alive-seconds = 1161\n"),
              "hgagent.toml:2: mqtt.brokers: \"broker\": it has to be mqtt://HOST[:PORT] or "
              "mqtts://HOST[:PORT]\n"
              "hgagent.toml:3: mqtt.id: the id of a gateway has letters, digits, - _ . and :\n"
              "hgagent.toml:4: mqtt.root: the root of the topics has levels of letters, digits, - "
              "_ . and :\n"
              "hgagent.toml:5: mqtt.response-topics: it has to be a topic without wildcards and $, "
              "or the beginning of such topics, with a slash at its end\n"
              "hgagent.toml:6: mqtt.alpn: has to have from 1 to 255 bytes\n"
              "hgagent.toml:7: mqtt.session-seconds: has to be from 0 to 28800\n"
              "hgagent.toml:8: mqtt.keep-alive-seconds: has to be from 5 to 1160");
}

TEST(MqttSettings, AreCheckedTogether)
{
    const auto problem = [](const std::string &lines) {
        return mqtt_problems("id = \"gw1\"\n" + lines);
    };
    EXPECT_EQ(mqtt_problems("brokers = [\"mqtt://localhost\"]\n"),
              "hgagent.toml: a gateway on a broker needs a name: --id, or id in [mqtt]");
    EXPECT_EQ(problem("brokers = [\"mqtt://localhost\"]\ncertificate = \"a\"\n"),
              "hgagent.toml: a certificate and its key are given together");
    EXPECT_EQ(problem("brokers = [\"mqtt://localhost\"]\n"), "");
    EXPECT_EQ(problem("brokers = [\"mqtt://[::1]\"]\ntrust = true\n"), "");
    EXPECT_EQ(problem("brokers = [\"mqtt://localhost\", \"mqtt://broker.example\"]\n"),
              "hgagent.toml: mqtt://broker.example:1883 is on another machine: use mqtts://, or "
              "--insecure to do without TLS");
    EXPECT_EQ(
        problem("brokers = [\"mqtts://broker.example\"]\ntrust = true\n" + std::string(kRole)),
        "hgagent.toml: mqtts://broker.example:8883 is on another machine: --trust is for "
        "local brokers only");
    EXPECT_EQ(problem("brokers = [\"mqtts://broker.example\"]\n"),
              "hgagent.toml: mqtts://broker.example:8883 is on another machine: a policy has to "
              "say what it may do, with members = [\"topic-root:gateway\"] in a role");
    EXPECT_EQ(problem("brokers = [\"mqtts://broker.example\"]\n" + std::string(kRole)), "");
    EXPECT_EQ(
        problem("brokers = [\"mqtt://broker.example\"]\ninsecure = true\n" + std::string(kRole)),
        "");
    // Without a broker nothing is needed.
    EXPECT_EQ(mqtt_problems("certificate = \"a\"\n"), "");
}

} // namespace

} // namespace agent::service
