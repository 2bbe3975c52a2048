// SPDX-License-Identifier: MIT
// The reasons of a device library for refused calls: from the simulated gateway's report, and from
// the errors that any library logs.
#pragma once

#include "host/plugin_host.h"

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace agent {

// Listens during its lifetime; only one instance may exist at a time.
class DeviceReasons {
  public:
    // Receives one line, "FUNCTION: REASON" or "MODULE: REASON". Called on the thread of the device
    // call, by one thread at a time.
    using Listener = std::function<void(const std::string &reason)>;

    // refused receives the commands that the library passed to system(). Without it they are
    // reported as reasons.
    DeviceReasons(const PluginHost &host, Listener listener, Listener refused = nullptr);
    ~DeviceReasons();
    DeviceReasons(const DeviceReasons &) = delete;
    DeviceReasons &operator=(const DeviceReasons &) = delete;

  private:
    void (*set_)(void (*)(const char *, const char *, void *), void *);
};

// Assigns reasons to commands by the thread that runs the commands.
class CommandReasons {
  public:
    // Constructed on the thread that runs the commands. late receives the reasons from any other
    // thread.
    CommandReasons(const PluginHost &host, DeviceReasons::Listener late);

    // The reasons since the last call.
    std::vector<std::string> take() { return std::exchange(pending_, {}); }

  private:
    std::vector<std::string> pending_;
    DeviceReasons reasons_;
};

// Called by the log service for each error that a library logs. Errors of the plug-in are ignored:
// they are not the device library's.
void take_logged_error(const char *module, const char *format, va_list arguments);

// Called by the replacement of system() for a command that was not run.
void take_refused_command(const char *command);

} // namespace agent
