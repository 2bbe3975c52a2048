// SPDX-License-Identifier: MIT
#include "shell/shell_signals.h"

#include <cerrno>
#include <csignal>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace agent {

ShellSignals::ShellSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGWINCH, SIGCONT}) {
        sigaddset(&signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    }
}

ShellSignals::~ShellSignals()
{
    close(descriptor_);
}

int ShellSignals::take() const
{
    signalfd_siginfo signal = {};
    return read(descriptor_, &signal, sizeof(signal)) == sizeof(signal)
               ? static_cast<int>(signal.ssi_signo)
               : 0;
}

} // namespace agent
