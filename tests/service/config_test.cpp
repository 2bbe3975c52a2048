// SPDX-License-Identifier: MIT
// The configuration: file, command line, and what is wrong with either.
#include "config_files.h"
#include "service/config.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace agent::service {

namespace {

using testing::ElementsAre;

const Identity kMember = {"socket", "user:alice", {"user:alice"}, false};

constexpr char kRoles[] = "[roles.support]\nmembers = [\"user:alice\"]\nallow = [\"*\"]\n";

std::string config_problems(const std::string &toml)
{
    return problems_of([&] { parse_config(toml, "hgagent.toml"); });
}

RunOptions given(const char *key, const char *option, std::vector<std::string> values)
{
    RunOptions options;
    options.given.push_back({key, option, std::move(values)});
    return options;
}

class ConfigFile : public testing::Test {
  protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "configXXXXXX";
        folder_ = mkdtemp(name.data());
        options_.config = folder_ + "/hgagent.toml";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void write(const std::string &name, const std::string &text) const
    {
        std::ofstream(folder_ + "/" + name) << text;
    }
    std::string problems() const
    {
        return problems_of([&] { load_config(options_); });
    }

    std::string folder_;
    RunOptions options_;
};

TEST(Config, HasDefaults)
{
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    const ServiceConfig config = load_config({});
    EXPECT_EQ(config.socket.path, "/run/user/7/hgagent.sock");
    EXPECT_EQ(config.socket.group, "");
    EXPECT_EQ(config.socket.mode_bits(), 0600U);
    EXPECT_EQ(config.worker.kind, "child");
    EXPECT_FALSE(config.worker.in_process());
    EXPECT_EQ(config.worker.unit_socket(), "");
    EXPECT_EQ(config.worker.reboot_seconds, 45);
    EXPECT_EQ(config.worker.command_seconds, 30);
    EXPECT_EQ(config.limits.clients, 256);
    EXPECT_EQ(config.limits.line, 1048576);
    EXPECT_EQ(config.limits.queue, 16);
    EXPECT_EQ(config.limits.answers, 16384);
    EXPECT_EQ(config.limits.answer_bytes, 8388608);
    EXPECT_EQ(config.audit, "");
    EXPECT_EQ(config.log_level, 3);
    EXPECT_FALSE(config.policy.decide(kMember, Subject::kCommand, "GET_SN_INFO").allowed);
    for (const char *folder : {"", "relative"}) {
        setenv("XDG_RUNTIME_DIR", folder, 1);
        EXPECT_EQ(load_config({}).socket.path, "");
    }
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(load_config({}).socket.path, "");
}

TEST(Config, TakesEveryKeyOfTheFile)
{
    const ServiceConfig config = parse_config(R"(
audit = "/var/log/audit.jsonl"
log-level = 6
[socket]
path = "/run/hgagent/socket"
group = "root"
mode = "0660"
[worker]
kind = "unix:/run/worker"
plugin = "/lib/plugin.so"
device = "/lib/device.so"
scenario = "operator_variant"
state = "/var/lib/home.json"
faults = ["a=1", "b=2"]
trace = "-"
firmware-folder = "/srv/images"
firmware-key = "/etc/key.pem"
show-secrets = true
verbose = true
refuse-notices = -1
raw-bytes = true
reasons = true
reboot-seconds = 0
command-seconds = 2
background-seconds = 3
[limits]
clients = 4
line = 5
pending-output = 6
idle-seconds = 7
queue = 8
answers = 9
answer-bytes = 10
)" + std::string(kRoles),
                                              "/etc/hgagent.toml");
    EXPECT_EQ(config.audit, "/var/log/audit.jsonl");
    EXPECT_EQ(config.log_level, 6);
    EXPECT_EQ(config.socket.path, "/run/hgagent/socket");
    EXPECT_EQ(config.socket.group, "root");
    EXPECT_EQ(config.socket.mode_bits(), 0660U);
    EXPECT_EQ(config.worker.unit_socket(), "/run/worker");
    EXPECT_EQ(config.worker.host.plugin, "/lib/plugin.so");
    EXPECT_EQ(config.worker.host.device, "/lib/device.so");
    EXPECT_EQ(config.worker.host.scenario, "operator_variant");
    EXPECT_EQ(config.worker.host.state, "/var/lib/home.json");
    EXPECT_THAT(config.worker.host.faults, ElementsAre("a=1", "b=2"));
    EXPECT_EQ(config.worker.host.trace, "-");
    EXPECT_EQ(config.worker.host.firmware_folder, "/srv/images");
    EXPECT_EQ(config.worker.host.firmware_key, "/etc/key.pem");
    EXPECT_TRUE(config.worker.host.show_secrets);
    EXPECT_TRUE(config.worker.host.verbose);
    EXPECT_EQ(config.worker.refuse_notices, -1);
    EXPECT_TRUE(config.worker.raw_bytes);
    EXPECT_TRUE(config.worker.reasons);
    EXPECT_EQ(config.worker.reboot_seconds, 0);
    EXPECT_EQ(config.worker.command_seconds, 2);
    EXPECT_EQ(config.worker.background_seconds, 3);
    EXPECT_EQ(config.limits.clients, 4);
    EXPECT_EQ(config.limits.line, 5);
    EXPECT_EQ(config.limits.pending_output, 6);
    EXPECT_EQ(config.limits.idle_seconds, 7);
    EXPECT_EQ(config.limits.queue, 8);
    EXPECT_EQ(config.limits.answers, 9);
    EXPECT_EQ(config.limits.answer_bytes, 10);
    EXPECT_TRUE(config.policy.decide(kMember, Subject::kCommand, "GET_SN_INFO").allowed);
}

TEST(Config, StartsRelativePathsFromTheFilesFolder)
{
    const ServiceConfig config =
        parse_config("audit = \"audit.jsonl\"\n[socket]\npath = \"../socket\"\n"
                     "[worker]\nkind = \"unix:worker\"\nscenario = \"one_router\"\nstate = \"s\"\n",
                     "/etc/hg/hgagent.toml");
    EXPECT_EQ(config.audit, "/etc/hg/audit.jsonl");
    EXPECT_EQ(config.socket.path, "/etc/hg/../socket");
    EXPECT_EQ(config.worker.unit_socket(), "/etc/hg/worker");
    EXPECT_EQ(config.worker.host.scenario, "one_router"); // may be the name of a built-in one
    EXPECT_EQ(config.worker.host.state, "/etc/hg/s");
}

TEST(Config, ReportsUnknownKeysAndTables)
{
    EXPECT_EQ(
        config_problems("log_level = 3\n[limits]\nqueu = 1\n[queue]\nbroker = \"x\"\n[other]\n"),
        "hgagent.toml:1: log_level: there is no such key\n"
        "hgagent.toml:3: limits.queu: there is no such key\n"
        "hgagent.toml:4: queue: there is no such key\n"
        "hgagent.toml:6: other: there is no such key");
}

TEST(Config, ReportsWrongTypes)
{
    EXPECT_EQ(config_problems("log-level = \"3\"\nlimits = 1\n[worker]\nstate = 1\nfaults = \"a\"\n"
                              "verbose = 0\n[[socket]]\n"),
              "hgagent.toml:1: log-level: has to be a whole number, and is a text\n"
              "hgagent.toml:2: limits: has to be a table, and is a number\n"
              "hgagent.toml:4: worker.state: has to be a text, and is a number\n"
              "hgagent.toml:5: worker.faults: has to be a list of texts, and is a text\n"
              "hgagent.toml:6: worker.verbose: has to be true or false, and is a number\n"
              "hgagent.toml:7: socket: has to be a table, and is a list");
}

TEST(Config, ReportsNumbersOutOfRange)
{
    EXPECT_EQ(config_problems("log-level = 8\n[limits]\nqueue = 0\nclients = 100001\n"
                              "idle-seconds = -1\n[worker]\ncommand-seconds = 0\n"),
              "hgagent.toml:1: log-level: has to be from 0 to 7\n"
              "hgagent.toml:3: limits.queue: has to be from 1 to 100000\n"
              "hgagent.toml:4: limits.clients: has to be from 1 to 100000\n"
              "hgagent.toml:5: limits.idle-seconds: has to be from 0 to 604800\n"
              "hgagent.toml:7: worker.command-seconds: has to be from 1 to 604800");
}

TEST(Config, ReportsTextsThatDoNotFit)
{
    const auto problem = [](const std::string &table, const std::string &line) {
        return config_problems("[" + table + "]\n" + line);
    };
    const std::string mode = "hgagent.toml:2: socket.mode: ";
    for (const char *text : {"", "66", "1660", "00660", "rw", "0680"}) {
        EXPECT_EQ(problem("socket", std::string("mode = '") + text + "'"),
                  mode + "\"" + text + "\" is not a mode such as 0660");
    }
    EXPECT_EQ(problem("socket", "mode = '0466'"),
              mode + "\"0466\" does not let the service itself read and write");
    EXPECT_EQ(problem("socket", "mode = '600'"), "");
    EXPECT_EQ(problem("socket", "group = 'no such group'"),
              "hgagent.toml:2: socket.group: there is no group \"no such group\"");
    EXPECT_EQ(problem("socket", "path = ''"), "hgagent.toml:2: socket.path: names no file");
    EXPECT_EQ(problem("socket", "path = '/" + std::string(106, 'x') + "'"), "");
    EXPECT_EQ(problem("socket", "path = '/" + std::string(107, 'x') + "'"),
              "hgagent.toml:2: socket.path: the path of a socket has at most 107 bytes");
    EXPECT_EQ(problem("worker", "state = ''"), "hgagent.toml:2: worker.state: names no file");
    EXPECT_EQ(problem("worker", "state = \"a\\u0000b\""),
              "hgagent.toml:2: worker.state: has a NUL in it");
    const std::string kind = "hgagent.toml:2: worker.kind: ";
    EXPECT_EQ(problem("worker", "kind = 'tcp:1'"),
              kind + "\"tcp:1\" is not child, in-process or unix:PATH");
    EXPECT_EQ(problem("worker", "kind = 'unix:/" + std::string(107, 'x') + "'"),
              kind + "the path of a socket has at most 107 bytes");
    EXPECT_EQ(problem("worker", "kind = 'unix:'"), kind + "names no file");
}

TEST(Config, ReportsProblemsOfRolesAsOfAPolicy)
{
    EXPECT_EQ(config_problems("[limits]\nqueue = 0\n[roles.a]\nmembers = [\"x\"]\n"),
              "hgagent.toml:2: limits.queue: has to be from 1 to 100000\n"
              "hgagent.toml:4: roles.a.members: \"x\" is not user:NAME, uid:NUMBER, group:NAME, "
              "gid:NUMBER, http-user:NAME, topic-root:ROOT or way-in:NAME");
}

TEST(Config, ReportsRolesBesideAPolicyFile)
{
    EXPECT_EQ(config_problems("policy = \"policy.toml\"\n" + std::string(kRoles)),
              "hgagent.toml:1: policy: there are roles in this file as well");
}

TEST(CommandLine, ComesBeforeTheFile)
{
    ServiceConfig config = load_config(given("limits.queue", "--max-queue", {"3"}));
    EXPECT_EQ(config.limits.queue, 3);
    config = load_config(given("worker.faults", "--fault", {"a=1", "b=2"}));
    EXPECT_THAT(config.worker.host.faults, ElementsAre("a=1", "b=2"));
    config = load_config(given("worker.reasons", "--reasons", {"true"}));
    EXPECT_TRUE(config.worker.reasons);
    config = load_config(given("worker.state", "--state", {"home.json"}));
    EXPECT_EQ(config.worker.host.state, "home.json");
}

TEST(CommandLine, IsCheckedAsTheFileIs)
{
    const auto problem = [](const char *key, const char *option, const char *value) {
        return problems_of([&] { load_config(given(key, option, {value})); });
    };
    for (const char *text : {"", "x", "1x", "1.5", "99999999999999999999"}) {
        EXPECT_EQ(problem("limits.queue", "--max-queue", text),
                  std::string("command line: --max-queue: \"") + text + "\" is not a whole number");
    }
    EXPECT_EQ(problem("limits.queue", "--max-queue", "0"),
              "command line: --max-queue: has to be from 1 to 100000");
    EXPECT_EQ(problem("socket.mode", "--socket-mode", "rw"),
              "command line: --socket-mode: \"rw\" is not a mode such as 0660");
    EXPECT_EQ(problem("policy", "--policy", "/no/such/file"),
              "command line: --policy: /no/such/file: cannot be opened: No such file or directory");
}

TEST_F(ConfigFile, NamesItsPolicy)
{
    write("hgagent.toml", "policy = \"policy.toml\"\n");
    write("policy.toml", kRoles);
    const auto verdict =
        load_config(options_).policy.decide(kMember, Subject::kCommand, "GET_SN_INFO");
    EXPECT_TRUE(verdict.allowed);
    EXPECT_EQ(verdict.rule, folder_ + "/policy.toml:3: allow \"*\"");
    write("policy.toml", "[limits]\n[roles.a]\nmembers = []");
    EXPECT_EQ(problems(), folder_ + "/policy.toml:1: limits: there is no such key\n" + folder_ +
                              "/policy.toml:2: roles.a: the role has no members");
    std::filesystem::remove(folder_ + "/policy.toml");
    EXPECT_EQ(problems(), folder_ + "/hgagent.toml:1: policy: " + folder_ +
                              "/policy.toml: cannot be opened: No such file or directory");
}

TEST_F(ConfigFile, HasToBeARegularFile)
{
    EXPECT_EQ(problems(), options_.config + ": cannot be opened: No such file or directory");
    ASSERT_EQ(mkfifo(options_.config.c_str(), 0600), 0);
    EXPECT_EQ(problems(), options_.config + ": is not a regular file");
    std::filesystem::remove(options_.config);
    std::filesystem::create_directory(options_.config);
    EXPECT_EQ(problems(), options_.config + ": is not a regular file");
    options_.config = "/dev/zero";
    EXPECT_EQ(problems(), "/dev/zero: is not a regular file");
    options_.config = "/proc/self/mem"; // a file by its type, and cannot be read
    EXPECT_EQ(problems(), "/proc/self/mem: cannot be read: Input/output error");
}

TEST_F(ConfigFile, MayNotBeTooLong)
{
    write("hgagent.toml", std::string(300000, '\n'));
    EXPECT_EQ(problems(), options_.config + ": the file is longer than 262144 bytes");
}

TEST_F(ConfigFile, StaysAsItWasWhenTheNewOneIsWrong)
{
    write("hgagent.toml", "log-level = 5\n[limits]\nqueue = 3\n");
    const ServiceConfig old = load_config(options_);
    std::string said;
    write("hgagent.toml", "log-level = 5\n[limits]\nqueue = 0\nline = 0\n");
    EXPECT_FALSE(reload_config(options_, old, said));
    EXPECT_EQ(said, "the configuration stays as it was, because " + options_.config +
                        ":3: limits.queue: has to be from 1 to 100000 (and 1 more)");
    write("hgagent.toml", "log-level = 9");
    EXPECT_FALSE(reload_config(options_, old, said));
    EXPECT_EQ(said, "the configuration stays as it was, because " + options_.config +
                        ":1: log-level: has to be from 0 to 7");
}

TEST_F(ConfigFile, ReportsWhatOnlyARestartTakes)
{
    write("hgagent.toml", "[limits]\nqueue = 3\n");
    const ServiceConfig old = load_config(options_);
    std::string said;
    write("hgagent.toml", "[limits]\nqueue = 4\n");
    const auto loaded = reload_config(options_, old, said);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->limits.queue, 4);
    EXPECT_EQ(said, "the configuration is loaded again");
    write("hgagent.toml", "[socket]\nmode = '0660'\n[worker]\nkind = 'in-process'");
    ASSERT_TRUE(reload_config(options_, old, said));
    EXPECT_EQ(said, "the configuration is loaded again; only a restart takes socket.mode, "
                    "worker.kind");
}

// A service that is still connected to a broker elsewhere must not take it for a local one, which
// needs no policy.
TEST_F(ConfigFile, KeepsWhatOnlyARestartTakes)
{
    write("hgagent.toml", "[mqtt]\nbrokers = ['mqtts://broker.example']\nid = 'one'\n"
                          "[roles.platform]\nmembers = ['topic-root:gateway']\n");
    const ServiceConfig old = load_config(options_);
    write("hgagent.toml", "[mqtt]\nbrokers = ['mqtt://localhost']\nid = 'one'\n");
    std::string said;
    const auto loaded = reload_config(options_, old, said);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(said, "the configuration is loaded again; only a restart takes mqtt.brokers");
    EXPECT_EQ(loaded->mqtt.brokers, old.mqtt.brokers);
    EXPECT_FALSE(loaded->policy.has_roles());
}

TEST(Worker, IsGivenWhatConcernsIt)
{
    EXPECT_THAT(worker_arguments(load_config({})),
                ElementsAre("--log-level=3", "--record-limit=67108864", "--refuse-notices=0",
                            "serve", "--max-line=1048576"));
    const ServiceConfig config = parse_config(
        "audit = \"/a\"\nlog-level = 7\n[worker]\nscenario = \"\"\nstate = \"/s\"\nfaults = "
        "[\"x=-1\", \"y=1\"]\nshow-secrets = true\nreasons = true\n[limits]\nline = 99\n",
        "/etc/hgagent.toml");
    EXPECT_THAT(worker_arguments(config),
                ElementsAre("--log-level=7", "--scenario=", "--state=/s", "--fault=x=-1",
                            "--fault=y=1", "--record-limit=67108864", "--show-secrets",
                            "--refuse-notices=0", "serve", "--max-line=99", "--reasons"));
}

TEST(Settings, HaveKeysAndOptionsOfTheirOwn)
{
    std::set<std::string> keys;
    std::set<std::string> options;
    for (const Setting &setting : settings()) {
        EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
        EXPECT_TRUE(options.insert(setting.option).second) << setting.option;
    }
}

} // namespace

} // namespace agent::service
