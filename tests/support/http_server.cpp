// SPDX-License-Identifier: MIT
#include "http_server.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void fail(int reason, const char *what)
{
    throw std::system_error(reason, std::generic_category(), what);
}

std::array<int, 2> make_pipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail(errno, "pipe2");
    }
    return ends;
}

std::vector<std::string> lines_of(const std::string &path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

HttpServer::HttpServer(const std::string &folder, Protocol protocol)
    : work_(std::filesystem::temp_directory_path() / "http_server.XXXXXX")
{
    if (mkdtemp(work_.data()) == nullptr) {
        fail(errno, "mkdtemp");
    }
    const std::array<int, 2> in = make_pipe();
    const std::array<int, 2> out = make_pipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    const bool secure = protocol == Protocol::kHttps;
    const std::array<const char *, 6> words = {HTTP_SERVER_PYTHON,
                                               HTTP_SERVER_SCRIPT,
                                               folder.c_str(),
                                               work_.c_str(),
                                               secure ? "--secure" : nullptr,
                                               nullptr};
    const int failure = posix_spawn(&process_, words[0], &actions, nullptr,
                                    const_cast<char *const *>(words.data()), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    if (failure != 0) {
        fail(failure, HTTP_SERVER_PYTHON);
    }
    // It prints its port once it listens.
    FILE *output = fdopen(out[0], "r");
    int port = 0;
    if (fscanf(output, "%d", &port) != 1) {
        fail(ECHILD, HTTP_SERVER_SCRIPT);
    }
    fclose(output);
    root_ = (secure ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port) + "/";
}

HttpServer::~HttpServer()
{
    close(input_);
    waitpid(process_, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(work_, ignored);
}

void HttpServer::release() const
{
    constexpr char command[] = "release\n";
    if (write(input_, command, sizeof(command) - 1) < 0) {
        fail(errno, "the server's input");
    }
}

std::vector<std::string> HttpServer::requests() const
{
    return lines_of(work_ + "/requests");
}

std::vector<HttpServer::Upload> HttpServer::uploads() const
{
    std::vector<Upload> uploads;
    for (const std::string &path : lines_of(work_ + "/uploads")) {
        std::ostringstream body;
        body << std::ifstream(work_ + "/upload_" + std::to_string(uploads.size() + 1)).rdbuf();
        uploads.push_back({path, body.str()});
    }
    return uploads;
}
