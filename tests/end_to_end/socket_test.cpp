// SPDX-License-Identifier: MIT
// The subcommands that query a running service, which is hgagent serve or the test itself.
#include "gateway_test.h"
#include "standing_clock.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace socket_test {

int checked(int result, const char *what)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

// Listens as a service does, and serves one client at a time.
class StandIn {
  public:
    StandIn() : path_(test_file("service.sock"))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, path_.c_str(), sizeof(address.sun_path) - 1);
        unlink(path_.c_str());
        listener_ = checked(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
        checked(bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof(address)), "bind");
        checked(listen(listener_, 5), "listen");
    }
    ~StandIn()
    {
        close_client();
        close(listener_);
        unlink(path_.c_str());
    }
    StandIn(const StandIn &) = delete;
    StandIn &operator=(const StandIn &) = delete;

    const std::string &path() const { return path_; }

    void accept_client()
    {
        client_ = checked(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC), "accept");
    }
    void close_client()
    {
        if (client_ >= 0) {
            close(client_);
            client_ = -1;
        }
    }

    // Runs "hgagent [options] serve --events" for the client until it ends.
    void serve(const std::vector<std::string> &options)
    {
        accept_client();
        std::vector<char *> words = {const_cast<char *>(HGAGENT_PATH)};
        for (const std::string &option : options) {
            words.push_back(const_cast<char *>(option.c_str()));
        }
        words.insert(words.end(),
                     {const_cast<char *>("serve"), const_cast<char *>("--events"), nullptr});
        const pid_t process = checked(fork(), "fork");
        if (process == 0) {
            dup2(client_, STDIN_FILENO);
            dup2(client_, STDOUT_FILENO);
            execv(words[0], words.data());
            _exit(127);
        }
        close_client();
        int status = 0;
        checked(waitpid(process, &status, 0), "waitpid");
        EXPECT_EQ(status, 0);
    }

    // The next line of the client; empty when it has disconnected.
    std::string read_line()
    {
        std::string line;
        char letter = 0;
        while (read(client_, &letter, 1) == 1 && letter != '\n') {
            line += letter;
        }
        return line;
    }
    void send(const std::string &text) const
    {
        EXPECT_EQ(write(client_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

  private:
    const std::string path_;
    int listener_ = -1;
    int client_ = -1;
};

class Socket : public GatewayTest {
  protected:
    std::vector<std::string> with_socket(std::vector<std::string> words) const
    {
        words.insert(words.begin() + 1, {"--socket", service_.path()});
        return words;
    }
    // Runs the subcommand through a service with this test's gateway, and directly on the gateway.
    AgentResult ask_service(const std::vector<std::string> &words)
    {
        AgentProcess client(with_socket(words));
        service_.serve({"--state", state_});
        return client.wait();
    }
    AgentResult ask_here(const std::vector<std::string> &words) const
    {
        std::vector<std::string> all = {"--state", state_};
        all.insert(all.end(), words.begin(), words.end());
        return run_agent(all);
    }
    // The result of the subcommand for these answers, one for each of its requests.
    AgentResult answered(const std::vector<std::string> &words,
                         const std::vector<std::string> &answers)
    {
        AgentProcess client(with_socket(words));
        service_.accept_client();
        for (const std::string &answer : answers) {
            requests_.push_back(service_.read_line());
            service_.send(answer + "\n");
        }
        AgentResult result = client.wait();
        service_.close_client();
        return result;
    }

    StandIn service_;
    std::vector<std::string> requests_;
};

TEST_F(Socket, GivesTheSameResultAsTheGateway)
{
    const StandingClock clock; // of the plug-in, too
    const std::vector<std::vector<std::string>> all = {
        {"call", "GET_AD_BASE_INFO"},
        {"call", "RESPONSE_ROUTER_VERSION", "extra=1", "VersionInfo=app \"5\"", "extra=2"},
        {"call", "SET_UPNP_STATE", "Enable=up"},
        {"call", "NO_SUCH_COMMAND", "a=1"},
        {"hosts"},
        {"topology", "--ascii"},
        {"topology", "--dot"},
        {"report", "home-page"},
        {"report", "mesh"},
        {"report", "stations"},
        {"report", "stations", "--path", "InternetGatewayDevice.WiFi.MultiAP.APDevice.2."},
        {"notice", "--plugin-name", "x", "A new \"phone\""},
    };
    for (const std::vector<std::string> &words : all) {
        const AgentResult here = ask_here(words);
        const AgentResult there = ask_service(words);
        EXPECT_EQ(there.exit_status, here.exit_status) << words[0];
        EXPECT_EQ(there.output, here.output) << words[0];
        EXPECT_THAT(there.error, EndsWith(here.error)) << words[0];
    }
}

TEST_F(Socket, KeepsTheOrderOfARequest)
{
    answered({"call", "X", "b=1", "a=2", "b=3"}, {R"({"id":1,"result":0,"reply":{}})"});
    EXPECT_EQ(requests_.front(), R"({"id":1,"command":"X","params":{"b":"1","a":"2","b":"3"}})");
}

TEST_F(Socket, PrintsTheNoticeThatItTriggered)
{
    const AgentResult result =
        answered({"notice", "--plugin-name", "x", "hello"},
                 {R"({"id":1,"result":0})", R"({"event":"notice","data":{"b":1,"a":2}})"
                                            "\n"
                                            R"({"event":"other","data":{}})"
                                            "\n"
                                            R"({"id":2,"result":0})"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.output, "{\"b\":1,\"a\":2}\n");
    EXPECT_THAT(requests_,
                testing::ElementsAre(R"({"id":1,"subscribe":"notice"})",
                                     R"({"id":2,"notice":{"plugin_name":"x","text":"hello"}})"));
    EXPECT_EQ(answered({"notice", "--plugin-name", "x", "hello"},
                       {R"({"id":1,"error":"no","code":"denied"})", R"({"id":2,"result":-7})"})
                  .exit_status,
              1);
    const AgentResult no_text = run_agent(with_socket({"notice", "--plugin-name", "x", "\xff"}));
    EXPECT_EQ(no_text.exit_status, 2);
    EXPECT_THAT(no_text.error, HasSubstr("not UTF-8"));
}

TEST_F(Socket, SaysWhyTheServiceRefuses)
{
    const std::vector<std::vector<std::string>> all = {
        {"call", "GET_SN_INFO"}, {"hosts"}, {"topology"}, {"report", "home-page"}};
    for (const std::vector<std::string> &words : all) {
        const AgentResult denied = answered(
            words, {R"({"id":1,"error":"not for you","code":"denied","rule":"a.toml:3"})"});
        EXPECT_EQ(denied.exit_status, 1);
        EXPECT_EQ(denied.error, "hgagent: the service refuses: not for you (denied): a.toml:3\n");
        EXPECT_THAT(denied.output, IsEmpty());
    }
    EXPECT_EQ(
        answered({"hosts"}, {R"({"id":1,"error":"the gateway reboots","code":"rebooting"})"}).error,
        "hgagent: the service refuses: the gateway reboots (rebooting)\n");
}

TEST_F(Socket, SaysThatTheServiceHasGone)
{
    AgentProcess client(with_socket({"hosts"}));
    service_.accept_client();
    service_.read_line();
    service_.close_client();
    const AgentResult result = client.wait();
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_THAT(result.error, HasSubstr("has closed the connection"));
    EXPECT_EQ(answered({"hosts"}, {"rubbish"}).exit_status, 4);

    const AgentResult none = run_agent({"hosts", "--socket", test_file("nobody.sock")});
    EXPECT_EQ(none.exit_status, 4);
    EXPECT_THAT(none.error, StartsWith("hgagent: cannot reach the service at unix:"));
}

TEST_F(Socket, ReportsAGatewayThatReturnsNoData)
{
    for (const char *answer :
         {R"({"id":1,"result":0,"reply":{}})", R"({"id":1,"result":0})", R"({"id":1})",
          R"({"id":1,"result":0,"reply":{"topology":7,"tree":[],"devices":"x"}})",
          R"({"id":1,"result":-3,"reply":{"Status":"0"}})"}) {
        EXPECT_EQ(answered({"topology"}, {answer}).exit_status, 1) << answer;
    }
}

TEST_F(Socket, WaitsForAnUpgrade)
{
    const std::vector<std::string> words = {"report", "image-upgrade", "--url", "http://x/y"};
    const std::string subscribed = R"({"id":1,"result":0})";
    const std::string subscribed_again = R"({"id":2,"result":0})";
    const std::string started = R"({"id":3,"result":0,"reply":{}})"
                                "\n"
                                R"({"event":"update.progress","data":{"percent":7}})"
                                "\n";
    const AgentResult failed =
        answered(words, {subscribed, subscribed_again,
                         started + R"({"event":"update.failed","data":{"reason":"no luck"}})"});
    EXPECT_EQ(failed.exit_status, 1);
    EXPECT_EQ(failed.error, "hgagent: the firmware was not installed: no luck\n");
    EXPECT_EQ(requests_.back(),
              R"({"id":3,"report":"image-upgrade","params":{"url":"http://x/y"}})");
    EXPECT_EQ(answered(words, {subscribed, subscribed_again,
                               started + R"({"event":"update.succeeded","data":{"version":"V2"}})"})
                  .exit_status,
              0);
    EXPECT_EQ(answered(words, {subscribed, subscribed_again,
                               started + R"({"event":"background.lost","data":{}})"})
                  .exit_status,
              1);
    const AgentResult untold = answered(
        words, {R"({"id":1,"error":"no","code":"denied"})", R"({"id":2,"result":0,"reply":{}})"});
    EXPECT_EQ(untold.exit_status, 0);
    EXPECT_THAT(untold.error, HasSubstr("does not report how it ends"));
}

TEST(SocketUsage, LeavesTheLibrariesToTheService)
{
    const std::vector<std::vector<std::string>> all = {
        {"--state", "x", "call", "--socket", "y", "GET_SN_INFO"},
        {"--fault", "x=1", "hosts", "--socket", "y"},
        {"--reboot-seconds", "1", "topology", "--socket", "y"},
        {"--record", "x", "call", "--socket", "y", "GET_SN_INFO"},
        {"--mask-key", "x", "shell", "--socket", "y"},
        {"call", "--socket", "y", "--reasons", "GET_SN_INFO"},
        {"--scenario", "single_router", "shell", "--socket", "y"},
        {"--device", "x", "shell"}};
    for (const std::vector<std::string> &words : all) {
        const AgentResult result = run_agent(words);
        EXPECT_EQ(result.exit_status, 2) << words[0];
        EXPECT_THAT(result.error, HasSubstr("excludes")) << words[0];
    }
    EXPECT_EQ(run_agent({"report", "--socket", "y", "no-such"}).exit_status, 3);
}

} // namespace socket_test
