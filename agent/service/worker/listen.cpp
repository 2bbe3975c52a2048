// SPDX-License-Identifier: MIT
#include "service/worker/listen.h"

#include "io/exit_status.h"
#include "service/common/service_manager.h"
#include "service/common/sockets.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace agent::service {

namespace {

int listen_at(const std::string &path)
{
    unlink(path.c_str()); // left by the previous worker: only one runs at a time
    Descriptor listener(bind_socket(path));
    if (listen(listener.get(), 1) != 0) {
        throw std::runtime_error(system_problem("cannot listen at " + path));
    }
    return listener.release();
}

// Exits without waiting for the running command: a call of a device library may never return.
void end_with(int connection)
{
    pollfd one = {connection, 0, 0};
    while (poll(&one, 1, -1) < 0 || (one.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0) {
    }
    _exit(kSuccess);
}

} // namespace

void wait_for_service(const std::string &address)
{
    const auto handed_over = ServiceManager().take_sockets();
    if (handed_over.empty() && !address.starts_with(kUnixPrefix)) {
        throw std::runtime_error("--listen needs unix:PATH");
    }
    const int listener =
        handed_over.empty() ? listen_at(address.substr(kUnixPrefix.size())) : handed_over.front();
    int connection = -1;
    do {
        connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    } while (connection < 0 && (errno == EINTR || errno == ECONNABORTED));
    if (connection < 0) {
        throw std::runtime_error(system_problem("cannot accept the service"));
    }
    close(listener);
    dup2(connection, STDIN_FILENO);
    dup2(connection, STDOUT_FILENO);
    // Signals are handled by the thread that runs commands.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    std::thread(end_with, connection).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace agent::service
