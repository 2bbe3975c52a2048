// SPDX-License-Identifier: MIT
#include "service/common/service_manager.h"

#include "io/text.h"

#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <systemd/sd-daemon.h>

namespace agent::service {

namespace {

template <class Function> Function *function_of(void *library, const char *name)
{
    return library != nullptr ? reinterpret_cast<Function *>(dlsym(library, name)) : nullptr;
}

} // namespace

ServiceManager::ServiceManager()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): before any thread
    if (getenv("NOTIFY_SOCKET") == nullptr && getenv("LISTEN_FDS") == nullptr) {
        return;
    }
    // NOLINTEND(concurrency-mt-unsafe)
    library_ = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) {
        print_error("started by systemd, and libsystemd.so.0 cannot be loaded");
    }
}

void ServiceManager::notify(const std::string &state) const
{
    if (const auto send = function_of<decltype(sd_notify)>(library_, "sd_notify")) {
        send(0, state.c_str());
    }
}

std::vector<int> ServiceManager::take_sockets() const
{
    std::vector<int> sockets;
    if (const auto count = function_of<decltype(sd_listen_fds)>(library_, "sd_listen_fds")) {
        const int end = SD_LISTEN_FDS_START + count(1);
        for (int socket = SD_LISTEN_FDS_START; socket < end; ++socket) {
            sockets.push_back(socket);
        }
    }
    return sockets;
}

std::chrono::microseconds ServiceManager::watchdog() const
{
    uint64_t interval = 0;
    const auto ask = function_of<decltype(sd_watchdog_enabled)>(library_, "sd_watchdog_enabled");
    const bool is_wanted = ask != nullptr && ask(0, &interval) > 0;
    return std::chrono::microseconds(is_wanted ? interval : 0);
}

} // namespace agent::service
