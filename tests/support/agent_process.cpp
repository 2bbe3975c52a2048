// SPDX-License-Identifier: MIT
#include "agent_process.h"

#include "traffic.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <pty.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

// The result of a system call; its failure fails the test.
int checked(int result, const char *what)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

std::string content_of(int file)
{
    const off_t size = lseek(file, 0, SEEK_END);
    if (size < 0 && errno == ESPIPE) { // the writer of the pipe has ended
        std::string content;
        std::array<char, 65536> buffer;
        ssize_t count = 0;
        while ((count = read(file, buffer.data(), buffer.size())) > 0) {
            content.append(buffer.data(), static_cast<size_t>(count));
        }
        return content;
    }
    std::string content(static_cast<size_t>(checked(static_cast<int>(size), "lseek")), '\0');
    checked(static_cast<int>(pread(file, content.data(), content.size(), 0)), "pread");
    return content;
}

} // namespace

// All complete lines.
static void record_session(const std::string &output)
{
    size_t begin = 0;
    for (size_t end = 0; (end = output.find('\n', begin)) != std::string::npos; begin = end + 1) {
        record_session_line(std::string_view(output).substr(begin, end - begin));
    }
}

AgentProcess::AgentProcess(const std::vector<std::string> &arguments, OutputTo output)
    : is_serving_(std::ranges::find(arguments, "serve") != arguments.end())
{
    std::signal(SIGPIPE, SIG_IGN);
    // The leak check guesses where a library keeps thread-local data. It sometimes guesses wrong
    // and crashes.
    setenv("ASAN_OPTIONS", "intercept_tls_get_addr=0", 0);
    std::array<int, 2> error = {};
    if (output == OutputTo::kUnreadError) {
        checked(pipe2(error.data(), O_CLOEXEC), "pipe2");
    } else {
        error[0] = checked(memfd_create("standard error", MFD_CLOEXEC), "memfd_create");
        error[1] = checked(dup(error[0]), "dup");
    }
    error_ = error[0];
    std::array<int, 2> in = {};
    std::array<int, 2> out = {};
    checked(pipe2(in.data(), O_CLOEXEC), "pipe2");
    if (output == OutputTo::kTerminal || output == OutputTo::kOneTerminal) {
        checked(openpty(&out[0], &out[1], nullptr, nullptr, nullptr), "openpty");
    } else if (output == OutputTo::kFullDevice) {
        out = {checked(open("/dev/null", O_RDONLY | O_CLOEXEC), "/dev/null"),
               checked(open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full")};
    } else {
        checked(pipe2(out.data(), O_CLOEXEC), "pipe2");
    }
    input_ = in[1];
    output_ = out[0];
    start(arguments, in[0], out[1], output == OutputTo::kOneTerminal ? out[1] : error[1]);
    close(in[0]);
    close(out[1]);
    close(error[1]);
}

AgentProcess::~AgentProcess()
{
    if (process_ > 0) {
        finish();
    }
    close(error_);
}

void AgentProcess::start(const std::vector<std::string> &arguments, int input, int output,
                         int error)
{
    std::vector<char *> words = {const_cast<char *>(HGAGENT_PATH)};
    for (const std::string &argument : arguments) {
        words.push_back(const_cast<char *>(argument.c_str()));
    }
    words.push_back(nullptr);

    process_ = checked(fork(), "fork");
    if (process_ == 0) {
        dup2(input, STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(error, STDERR_FILENO);
        std::signal(SIGPIPE, SIG_DFL); // ignoring it would be inherited
        execv(words[0], words.data());
        _exit(127);
    }
}

void AgentProcess::send(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(input_, text.data(), text.size());
        if (written < 0) {
            return;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
}

void AgentProcess::close_input()
{
    if (input_ >= 0) {
        close(input_);
        input_ = -1;
    }
}

bool AgentProcess::read_more()
{
    std::array<char, 65536> buffer;
    // A terminal whose other side is closed reports an error instead of end of file.
    const ssize_t count = output_ >= 0 ? read(output_, buffer.data(), buffer.size()) : 0;
    if (count > 0) {
        unread_.append(buffer.data(), static_cast<size_t>(count));
    }
    return count > 0;
}

std::string AgentProcess::read_line()
{
    size_t end = unread_.find('\n');
    while (end == std::string::npos && read_more()) {
        end = unread_.find('\n');
    }
    const std::string line = unread_.substr(0, end);
    if (is_serving_ && end != std::string::npos) {
        record_session_line(line);
    }
    unread_.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

void AgentProcess::close_output()
{
    if (output_ >= 0) {
        close(output_);
        output_ = -1;
    }
}

bool AgentProcess::has_ended() const
{
    siginfo_t info = {};
    checked(waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOWAIT | WNOHANG),
            "waitid");
    return info.si_pid != 0;
}

bool AgentProcess::await_error(std::string_view text, int times) const
{
    bool ended = false;
    for (;;) {
        const std::string written = content_of(error_);
        size_t at = written.find(text);
        for (int more = times - 1; more > 0 && at != std::string::npos; --more) {
            at = written.find(text, at + 1);
        }
        if (at != std::string::npos) {
            return true;
        }
        if (ended) {
            return false;
        }
        ended = has_ended(); // then reads what it wrote before that
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::string AgentProcess::read_error() const
{
    std::string text(65536, '\0');
    text.resize(static_cast<size_t>(
        checked(static_cast<int>(read(error_, text.data(), text.size())), "read")));
    return text;
}

void AgentProcess::signal(int number)
{
    checked(kill(process_, number), "kill");
}

void AgentProcess::await_end() const
{
    siginfo_t info;
    checked(waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOWAIT), "waitid");
}

AgentResult AgentProcess::finish()
{
    close_input();
    return wait();
}

AgentResult AgentProcess::wait()
{
    while (read_more()) {
    }
    close_output();
    if (is_serving_) {
        record_session(unread_);
    }
    int status = 0;
    rusage usage = {};
    checked(wait4(process_, &status, 0, &usage), "wait4");
    process_ = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), std::move(unread_),
            content_of(error_), usage.ru_maxrss};
}

AgentResult run_agent(const std::vector<std::string> &arguments, std::string_view input)
{
    AgentProcess agent(arguments);
    // The agent answers while it reads, so the answers must be read while this writes.
    std::thread writer([&] {
        agent.send(input);
        agent.close_input();
    });
    AgentResult result = agent.wait();
    writer.join();
    return result;
}

std::string test_file(const std::string &name)
{
    static const struct Folder {
        std::filesystem::path path = std::filesystem::temp_directory_path() / "agent_test.XXXXXX";
        Folder()
        {
            std::string made = path;
            if (mkdtemp(made.data()) == nullptr) {
                throw std::system_error(errno, std::generic_category(), made);
            }
            path = made;
        }
        ~Folder() { std::filesystem::remove_all(path); }
    } folder;
    return folder.path / name;
}

std::string test_file(const std::string &name, std::string_view content)
{
    const std::string path = test_file(name);
    std::ofstream(path, std::ios::binary) << content;
    return path;
}
