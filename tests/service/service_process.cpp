// SPDX-License-Identifier: MIT
#include "service_process.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace {

int required(int result, const char *what)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

} // namespace

std::string new_path(const std::string &name)
{
    static std::atomic<int> count = 0;
    const std::string folder = test_file("service-" + std::to_string(++count));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder + "/" + name;
}

std::string request(int id, const std::string &command, const std::string &params)
{
    return R"({"id":)" + std::to_string(id) + R"(,"command":")" + command + R"(","params":)" +
           params + "}";
}

TestClient::TestClient(const std::string &path)
    : socket_(required(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"))
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    required(connect(socket_, reinterpret_cast<sockaddr *>(&address), sizeof(address)), "connect");
}

TestClient::~TestClient()
{
    close();
}

void TestClient::close()
{
    if (socket_ >= 0) {
        ::close(socket_);
        socket_ = -1;
    }
}

void TestClient::send(std::string_view text) const
{
    while (!text.empty()) {
        const ssize_t sent = ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
        if (sent < 0) {
            return; // the service has closed the connection; reading will show it
        }
        text.remove_prefix(static_cast<size_t>(sent));
    }
}

std::string TestClient::read_line()
{
    for (;;) {
        const size_t end = unread_.find('\n');
        if (end != std::string::npos) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return line;
        }
        char buffer[65536];
        const ssize_t count = recv(socket_, buffer, sizeof(buffer), 0);
        if (count <= 0) {
            return "";
        }
        unread_.append(buffer, static_cast<size_t>(count));
    }
}

std::string TestClient::ask(std::string_view line)
{
    send_line(line);
    return read_line();
}

nlohmann::json TestClient::await_event(std::string_view name)
{
    for (;;) {
        const std::string line = read_line();
        if (line.empty()) {
            throw std::runtime_error("no event " + std::string(name));
        }
        const auto event = nlohmann::json::parse(line);
        if (event.value("event", "") == name) {
            return event["data"];
        }
    }
}

void TestClient::end_output() const
{
    shutdown(socket_, SHUT_WR);
}

ServiceProcess::ServiceProcess(std::vector<std::string> run_options,
                               std::vector<std::string> options)
    : words_(std::move(options)), socket_(new_path("s.sock"))
{
    words_.emplace_back("run");
    words_.push_back("--socket=" + socket_);
    words_.insert(words_.end(), run_options.begin(), run_options.end());
    start();
}

ServiceProcess::~ServiceProcess()
{
    if (process_ != nullptr && process_->process() > 0) {
        process_->signal(SIGTERM);
        process_->signal(SIGTERM);
    }
}

void ServiceProcess::start()
{
    process_ = std::make_unique<AgentProcess>(words_);
    if (!process_->await_error("listening on unix:" + socket_)) {
        throw std::runtime_error("the service has ended: " + process_->wait().error);
    }
}

int ServiceProcess::worker() const
{
    const std::string process = std::to_string(process_->process());
    int child = 0;
    std::ifstream("/proc/" + process + "/task/" + process + "/children") >> child;
    return child;
}

AgentResult ServiceProcess::stop(int signal)
{
    process_->signal(signal);
    return process_->wait();
}

void await_reading(const ServiceProcess &service)
{
    for (int count = 0; count < 3; ++count) {
        if (service.client()->ask_json(R"({"hello":{}})")["result"] != 0) {
            throw std::runtime_error("the service does not answer");
        }
    }
}

TimeLimit::TimeLimit() : path_(new_path("config.toml"))
{
    std::ofstream(path_) << "";
}

void TimeLimit::send_overdue(ServiceProcess &service, const TestClient &client,
                             std::string_view line)
{
    service.client()->ask(request(0, "NO_SUCH_COMMAND")); // the worker is idle then
    set(service, 1);
    client.send_line(line);
    await_reading(service); // the command has its time
    set(service, 3600);
}

void TimeLimit::set(ServiceProcess &service, int seconds)
{
    std::ofstream(path_) << "[worker]\ncommand-seconds = " << seconds << "\n";
    service.process().signal(SIGHUP);
    if (!service.process().await_error("the configuration is loaded again", ++reloads_)) {
        throw std::runtime_error("the service has ended");
    }
}

Gatepost::Gatepost() : path_(new_path("pipe"))
{
    required(mkfifo(path_.c_str(), S_IRUSR | S_IWUSR), "mkfifo");
}

void Gatepost::open() const
{
    ::close(required(::open(path_.c_str(), O_WRONLY | O_CLOEXEC), "open"));
}
