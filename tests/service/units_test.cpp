// SPDX-License-Identifier: MIT
// hgagent run with systemd, with a worker in a separate unit, with a policy, and during a reboot.
#include "service_process.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <grp.h>
#include <map>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace units_test {

constexpr char kQuestion[] = R"({"id":1,"command":"GET_SN_INFO"})";
constexpr char kAnswer[] = R"({"id":1,"result":0,"reply":{"Status":"0")";
constexpr char kSubscribe[] = R"({"id":"s","subscribe":"*"})";
constexpr char kSubscribed[] = R"({"id":"s","result":0})";

const std::vector<std::string> kPlugin = {"--plugin=" SERVICE_PLUGIN};

// A socket at a path, of either kind.
class OpenSocket {
  public:
    OpenSocket(const std::string &path, int type) : socket_(::socket(AF_UNIX, type, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
        if (type == SOCK_STREAM) {
            EXPECT_EQ(listen(socket_, 10), 0);
        }
    }
    ~OpenSocket() { close(socket_); }
    OpenSocket(const OpenSocket &) = delete;
    OpenSocket &operator=(const OpenSocket &) = delete;

    std::string receive() const
    {
        char text[1000];
        const ssize_t count = recv(socket_, text, sizeof(text), 0);
        return {text, count > 0 ? static_cast<size_t>(count) : 0};
    }
    int descriptor() const { return socket_; }

  private:
    int socket_;
};

class Variable {
  public:
    Variable(const char *name, const std::string &value) : name_(name)
    {
        setenv(name, value.c_str(), 1);
    }
    ~Variable() { unsetenv(name_); }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

  private:
    const char *name_;
};

TEST(Systemd, IsNotifiedOfWhatTheServiceDoes)
{
    const std::string path = new_path("notify");
    const OpenSocket manager(path, SOCK_DGRAM);
    const Variable address("NOTIFY_SOCKET", path);
    const Variable watchdog("WATCHDOG_USEC", "200000");
    ServiceProcess service;
    const auto await = [&](const std::string &wanted) {
        std::string said = manager.receive();
        while (said.rfind(wanted, 0) != 0) {
            said = manager.receive();
        }
    };
    await("WATCHDOG=1");
    await("READY=1");
    await("WATCHDOG=1");
    await("WATCHDOG=1");
    service.process().signal(SIGHUP);
    await("RELOADING=1\nMONOTONIC_USEC=");
    await("READY=1");
    service.process().signal(SIGTERM);
    await("STOPPING=1");
    EXPECT_EQ(service.process().wait().exit_status, 0);
}

TEST(Systemd, HandsOverASocket)
{
    const std::string path = new_path("handed.sock");
    const OpenSocket socket(path, SOCK_STREAM);
    const pid_t child = fork();
    if (child == 0) {
        dup2(socket.descriptor(), 3);
        setenv("LISTEN_FDS", "1", 1);
        setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
        setenv("RUNTIME_DIRECTORY", std::string(path, 0, path.rfind('/')).c_str(), 1);
        execl(HGAGENT_PATH, "hgagent", "run", nullptr);
        _exit(127);
    }
    {
        TestClient client(path); // waits in the socket's own queue until the service is there
        EXPECT_THAT(client.ask(kQuestion), StartsWith(kAnswer));
    }
    kill(child, SIGTERM);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    struct stat left = {};
    EXPECT_EQ(lstat(path.c_str(), &left), 0) << "the socket is systemd's";
}

// What hgagent run writes to a standard error that the environment names as the journal's, or, with
// another number, as another file. It cannot listen.
std::string log_of_run(int file_number_off_by)
{
    int pipe_ends[2];
    EXPECT_EQ(pipe(pipe_ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        struct stat info = {};
        fstat(pipe_ends[1], &info);
        setenv("JOURNAL_STREAM",
               (std::to_string(info.st_dev) + ":" +
                std::to_string(info.st_ino + static_cast<ino_t>(file_number_off_by)))
                   .c_str(),
               1);
        dup2(pipe_ends[1], STDERR_FILENO);
        close(pipe_ends[0]);
        execl(HGAGENT_PATH, "hgagent", "run", "--socket=/dev/null/socket", nullptr);
        _exit(127);
    }
    close(pipe_ends[1]);
    std::string log(1000, '\0');
    const ssize_t count = read(pipe_ends[0], log.data(), log.size());
    close(pipe_ends[0]);
    waitpid(child, nullptr, 0);
    log.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return log;
}

TEST(Systemd, GetsTheLevelsOfLogLines)
{
    EXPECT_THAT(log_of_run(0), StartsWith("<3>hgagent: "));
    EXPECT_THAT(log_of_run(1), StartsWith("hgagent: "));
}

TEST(UnitWorker, ServesTheServiceAndIsStartedAgain)
{
    const std::string path = new_path("worker.sock");
    const auto start_worker = [&](const std::string &plugin) {
        return std::make_unique<AgentProcess>(
            std::vector<std::string>{plugin, "serve", "--events", "--listen=unix:" + path});
    };
    auto worker = start_worker(kPlugin[0]);
    TimeLimit limit;
    ServiceProcess service({"--worker=unix:" + path, limit.option()});
    const auto client = service.client();
    EXPECT_EQ(client->ask_json(request(0, "PID"))["reply"]["pid"], worker->process());

    // A command that never returns: the connection is closed, and the worker ends by itself.
    const Gatepost gate;
    limit.send_overdue(service, *client, request(1, "WAIT", gate.params()));
    EXPECT_EQ(nlohmann::json::parse(client->read_line())["code"], "timeout");
    EXPECT_EQ(worker->wait().exit_status, 0);

    worker = start_worker(kPlugin[0]);
    EXPECT_EQ(client->ask_json(request(2, "PID"))["reply"]["pid"], worker->process());
    EXPECT_EQ(client->ask_json(request(3, "ABORT"))["code"], "outcome-unknown");
    worker->wait();

    worker = start_worker(kPlugin[0]);
    EXPECT_EQ(client->ask_json(request(4, "ECHO"))["result"], 0);
    EXPECT_EQ(service.stop(SIGTERM).exit_status, 0);
    EXPECT_EQ(worker->wait().exit_status, 0);
}

TEST(UnitWorker, IsReportedIfItDoesNotCome)
{
    const std::string path = new_path("worker.sock");
    ServiceProcess service({"--worker=unix:" + path});
    EXPECT_TRUE(service.process().await_error("hgagent: the worker at " + path +
                                              " cannot be reached: No such file or directory"));
    EXPECT_EQ(service.stop(SIGTERM).exit_status, 0);
}

TEST(UnitWorker, MayBeAnything)
{
    const std::string path = new_path("worker.sock");
    const OpenSocket listener(path, SOCK_STREAM);
    ServiceProcess service({"--worker=unix:" + path});
    const auto client = service.client();
    client->send_line(kQuestion);
    // The fake worker: each connection writes different garbage, the last one answers.
    for (const char *text : {"rubbish\n", "{\"id\":", "", "{\"event\":\"", "\n"}) {
        const int connection = accept(listener.descriptor(), nullptr, nullptr);
        ASSERT_GE(connection, 0);
        send(connection, text, strlen(text), MSG_NOSIGNAL);
        shutdown(connection, SHUT_WR);
        char line[1000];
        while (recv(connection, line, sizeof(line), 0) > 0) { // until the service closes
        }
        close(connection);
    }
    EXPECT_EQ(client->ask_json(kQuestion)["code"], "busy") << "it backs off by now";
    service.stop(SIGTERM);
}

TEST(Reload, KeepsWhatIsRightAndClients)
{
    const std::string config = new_path("config.toml");
    std::ofstream(config) << "[limits]\nline = 1000\n";
    ServiceProcess service({"--config=" + config});
    const auto client = service.client();
    const std::string long_line = std::string(200, ' ') + kQuestion;
    EXPECT_THAT(client->ask(long_line), StartsWith(kAnswer));

    std::ofstream(config) << "[limits]\nline = \"many\"\n";
    service.process().signal(SIGHUP);
    EXPECT_TRUE(service.process().await_error("the configuration stays as it was"));
    EXPECT_THAT(client->ask(long_line), StartsWith(kAnswer));

    std::ofstream(config) << "[limits]\nqueue = 1\nclients = 1\n";
    service.process().signal(SIGHUP);
    EXPECT_TRUE(service.process().await_error("the configuration is loaded again"));
    EXPECT_THAT(client->ask(long_line), StartsWith(kAnswer));
    EXPECT_THAT(service.client()->read_line(), HasSubstr("the service has 1 clients already"));
}

TEST(Reboot, IsReportedAndLasts)
{
    const ServiceProcess service({"--reboot-seconds=2"});
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    const auto client = service.client();
    EXPECT_EQ(client->ask_json(R"({"id":1,"command":"RP_HG_REBOOT"})")["result"], 0);
    watcher->await_event("reboot.begun");
    const auto refused = client->ask_json(kQuestion);
    EXPECT_EQ(refused["code"], "rebooting");
    EXPECT_EQ(client->ask_json(R"({"hello":{}})")["result"], 0);
    watcher->await_event("reboot.ended");
    EXPECT_THAT(client->ask(kQuestion), StartsWith(kAnswer));
}

// The answers to a client of another user.
class Stranger {
  public:
    // Runs the lines as the user with the number, whose group has the same one if none is given,
    // and returns the answers; "no connection" if there is none.
    static std::vector<std::string> ask(const std::string &path, uid_t user,
                                        const std::vector<std::string> &lines,
                                        std::optional<gid_t> group = std::nullopt)
    {
        int pipe_ends[2];
        EXPECT_EQ(pipe(pipe_ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            std::string answers;
            if (setgroups(0, nullptr) == 0 && setgid(group.value_or(user)) == 0 &&
                setuid(user) == 0) {
                try {
                    TestClient client(path);
                    for (const std::string &line : lines) {
                        answers += client.ask(line) + "\n";
                    }
                } catch (const std::system_error &) {
                    answers = "no connection\n";
                }
            }
            _exit(write(pipe_ends[1], answers.data(), answers.size()) < 0 ? 1 : 0);
        }
        close(pipe_ends[1]);
        std::vector<std::string> answers(1);
        char letter = 0;
        while (read(pipe_ends[0], &letter, 1) == 1) {
            if (letter == '\n') {
                answers.emplace_back();
            } else {
                answers.back() += letter;
            }
        }
        answers.pop_back();
        close(pipe_ends[0]);
        waitpid(child, nullptr, 0);
        return answers;
    }
};

// So that other users reach the socket.
void open_folders_of(const ServiceProcess &service)
{
    const std::string folder(service.socket(), 0, service.socket().rfind('/'));
    for (const std::string &each : {folder, std::string(folder, 0, folder.rfind('/'))}) {
        ASSERT_EQ(chmod(each.c_str(), 0755), 0);
    }
}

TEST(Policy, HoldsForOtherUsers)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    constexpr uid_t kUser = 54321;
    const std::string config = new_path("config.toml");
    std::ofstream(config) << "[socket]\nmode = \"0666\"\n[roles.guest]\nmembers = [\"uid:54321\"]\n"
                             "allow = [\"GET_*\", \"event:update.*\"]\ndeny = [\"GET_SN_INFO\"]\n"
                             "rate = 0.001\nburst = 7\n";
    const std::string audit = new_path("audit");
    ServiceProcess service({"--config=" + config, "--audit=" + audit});
    open_folders_of(service);
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(kSubscribe), kSubscribed);
    EXPECT_THAT(watcher->await_event("worker.started")["starts"], 1);

    const auto answers = Stranger::ask(
        service.socket(), kUser,
        {R"({"id":1,"command":"GET_WIFI_INFO","params":{"SSIDIndex":"1"}})",
         R"({"id":2,"command":"GET_SN_INFO"})", R"({"id":3,"command":"SET_LED_STATUS"})",
         R"({"id":4,"subscribe":"*"})", R"({"id":5,"subscribe":"update.*"})",
         R"({"id":6,"command":"GET_HG_BASE_INFO"})", R"({"id":7,"command":"GET_HG_BASE_INFO"})",
         R"({"id":8,"command":"GET_HG_BASE_INFO"})"});
    ASSERT_EQ(answers.size(), 8U);
    const auto one = nlohmann::json::parse(answers[0]);
    EXPECT_EQ(one["reply"]["Status"], "0");
    EXPECT_EQ(one["reply"]["PWD"], "***") << answers[0];
    for (const size_t denied : {1U, 2U, 3U}) {
        const auto answer = nlohmann::json::parse(answers[denied]);
        EXPECT_EQ(answer["code"], "denied");
        EXPECT_FALSE(answer.contains("reply"));
    }
    EXPECT_THAT(nlohmann::json::parse(answers[1])["rule"].get<std::string>(),
                HasSubstr("GET_SN_INFO"));
    EXPECT_EQ(answers[4], R"({"id":5,"result":0})");
    EXPECT_EQ(nlohmann::json::parse(answers[7])["code"], "rate-limited");
    EXPECT_EQ(watcher->await_event("policy.refused")["who"], "uid:54321");

    service.stop(SIGTERM);
    std::ifstream lines(audit);
    std::vector<nlohmann::json> records;
    for (std::string line; std::getline(lines, line);) {
        records.push_back(nlohmann::json::parse(line));
    }
    ASSERT_GE(records.size(), 7U);
}

TEST(Policy, OpensTheSocketToItsGroup)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    constexpr uid_t kUser = 54321;
    const group *known = getgrnam("daemon");
    if (known == nullptr) {
        GTEST_SKIP() << "there is no group daemon";
    }
    const gid_t number = known->gr_gid;
    const std::string config = new_path("config.toml");
    std::ofstream(config) << "[socket]\ngroup = \"daemon\"\nmode = \"0660\"\n[roles.group]\n"
                             "members = [\"group:daemon\"]\nallow = [\"GET_SN_INFO\"]\n";
    const ServiceProcess service({"--config=" + config});
    open_folders_of(service);
    struct stat status = {};
    ASSERT_EQ(stat(service.socket().c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, number);
    EXPECT_EQ(status.st_mode & 07777, 0660U);
    EXPECT_THAT(Stranger::ask(service.socket(), kUser, {kQuestion}, number),
                ElementsAre(StartsWith(kAnswer)));
    EXPECT_THAT(Stranger::ask(service.socket(), kUser, {kQuestion}), ElementsAre("no connection"));
}

TEST(Policy, LimitsAFloodOfDeniedRequests)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    constexpr uid_t kUser = 54321;
    constexpr size_t kCount = 1000;
    const std::string config = new_path("config.toml");
    std::ofstream(config) << "[socket]\nmode = \"0666\"\n[roles.guest]\n"
                             "members = [\"uid:54321\"]\nallow = [\"GET_*\"]\n"
                             "rate = 0.001\nburst = 50\n";
    const ServiceProcess service({"--config=" + config});
    open_folders_of(service);
    const auto watcher = service.client();
    EXPECT_EQ(watcher->ask(R"({"id":"s","subscribe":"policy.*"})"), kSubscribed);
    const auto count_codes = [&](uid_t user) {
        const std::vector<std::string> lines(kCount, R"({"id":3,"command":"SET_LED_STATUS"})");
        std::map<std::string, size_t> codes;
        for (const std::string &answer : Stranger::ask(service.socket(), user, lines)) {
            ++codes[nlohmann::json::parse(answer).value("code", "")];
        }
        return codes;
    };
    const std::map<std::string, size_t> expected = {{"denied", 50}, {"rate-limited", kCount - 50}};
    EXPECT_EQ(count_codes(kUser), expected);
    // Clients without a role share a limit, which fills while the test runs.
    EXPECT_GE(count_codes(kUser + 1)["denied"], 40U);

    // The first refusals raise an event each, and later ones now and then.
    size_t refusals = 0;
    for (int event = 0; event < 10; ++event) {
        const auto data = watcher->await_event("policy.refused");
        EXPECT_EQ(data["who"], "uid:54321");
        EXPECT_FALSE(data.contains("omitted"));
    }
    for (std::string who = "uid:54321"; who == "uid:54321"; ++refusals) {
        who = watcher->await_event("policy.refused")["who"];
    }
    EXPECT_LT(refusals, 40U);
}

} // namespace units_test
