// SPDX-License-Identifier: MIT
#include "process_fixture.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

GatewayProcess::GatewayProcess(std::vector<std::string> arguments)
{
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::vector<char *> argv = {const_cast<char *>(GATEWAY_PROCESS)};
    for (std::string &argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    if (posix_spawn(&pid_, GATEWAY_PROCESS, &actions, nullptr, argv.data(), environ) != 0) {
        throw std::runtime_error("no process");
    }
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
}

GatewayProcess::~GatewayProcess()
{
    if (pid_ != 0) {
        kill();
    }
    close(output_);
}

bool GatewayProcess::wait_for(int dots) const
{
    for (char dot; dots > 0; --dots) {
        if (read(output_, &dot, 1) != 1) {
            return false;
        }
    }
    return true;
}

void GatewayProcess::kill()
{
    ::kill(pid_, SIGKILL);
    end();
}

int GatewayProcess::end()
{
    close(input_);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = 0;
    return status;
}
