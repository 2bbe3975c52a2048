// SPDX-License-Identifier: MIT
// A service as a process, and clients of its socket.
#pragma once

#include "agent_process.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One connection. Lines that the test does not read stay unread.
class TestClient {
  public:
    explicit TestClient(const std::string &path);
    ~TestClient();
    TestClient(const TestClient &) = delete;
    TestClient &operator=(const TestClient &) = delete;

    void send(std::string_view text) const; // as it is
    void send_line(std::string_view line) const { send(std::string(line) + "\n"); }
    // The next line without its end; an empty text when the service has closed the connection.
    std::string read_line();
    std::string ask(std::string_view line);
    nlohmann::json ask_json(std::string_view line) { return nlohmann::json::parse(ask(line)); }
    // The data of the next event of the name; lines before it are skipped.
    nlohmann::json await_event(std::string_view name);
    void end_output() const;
    void close();
    int descriptor() const { return socket_; }

  private:
    int socket_;
    std::string unread_;
};

// `hgagent [options] run --socket … [run options]`, in a separate directory; it is already
// listening.
class ServiceProcess {
  public:
    explicit ServiceProcess(std::vector<std::string> run_options = {},
                            std::vector<std::string> options = {});
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess &) = delete;
    ServiceProcess &operator=(const ServiceProcess &) = delete;

    const std::string &socket() const { return socket_; }
    AgentProcess &process() { return *process_; }
    std::unique_ptr<TestClient> client() const { return std::make_unique<TestClient>(socket_); }
    // The child that runs the commands.
    int worker() const;
    // Ends it by a signal.
    AgentResult stop(int signal);
    // Starts it again, with the same options.
    void start();

  private:
    std::vector<std::string> words_;
    std::string socket_;
    std::unique_ptr<AgentProcess> process_;
};

// The time limit of a service's commands. It is short only for the one command that is to exceed
// it: on a slow machine, others may take as long.
class TimeLimit {
  public:
    TimeLimit();
    // For hgagent run.
    std::string option() const { return "--config=" + path_; }
    // Sends the line of a command that does not end within its time, a second.
    void send_overdue(ServiceProcess &service, const TestClient &client, std::string_view line);

  private:
    void set(ServiceProcess &service, int seconds);

    const std::string path_;
    int reloads_ = 0;
};

// Until the service has read what others have sent.
void await_reading(const ServiceProcess &service);

// A path in the test's own directory where no file exists.
std::string new_path(const std::string &name);

// A named pipe: a command or a worker of the test's plug-in waits until it is opened.
class Gatepost {
  public:
    Gatepost();
    const std::string &path() const { return path_; }
    std::string params() const { return R"({"until":")" + path_ + "\"}"; }
    // Waits for a waiting process or thread and releases it.
    void open() const;

  private:
    std::string path_;
};

// {"id": ID, "command": NAME, "params": PARAMS}
std::string request(int id, const std::string &command, const std::string &params = "{}");
