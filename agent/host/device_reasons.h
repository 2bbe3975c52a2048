// SPDX-License-Identifier: MIT
// What a device library says of calls that it refuses: by the report of the simulated gateway, and
// in the errors that any library logs.
#pragma once

#include "host/plugin_host.h"

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace agent {

// Listens for as long as it lives; there may be one at a time.
class DeviceReasons {
  public:
    // Gets one line, "FUNCTION: REASON" or "MODULE: REASON". Called on the thread of the device
    // call, by one thread at a time.
    using Listener = std::function<void(const std::string &reason)>;

    // refused gets the commands that the library wanted run by system(). Without it they are
    // reasons like any other.
    DeviceReasons(const PluginHost &host, Listener listener, Listener refused = nullptr);
    ~DeviceReasons();
    DeviceReasons(const DeviceReasons &) = delete;
    DeviceReasons &operator=(const DeviceReasons &) = delete;

  private:
    void (*set_)(void (*)(const char *, const char *, void *), void *);
};

// Sorts what is told on the thread that runs the commands by command.
class CommandReasons {
  public:
    // Made on the thread that runs the commands. late gets what is told on any other.
    CommandReasons(const PluginHost &host, DeviceReasons::Listener late);

    // What has been told since the last time.
    std::vector<std::string> take() { return std::exchange(told_, {}); }

  private:
    std::vector<std::string> told_;
    DeviceReasons reasons_;
};

// For the log service: an error that some library has logged. Those of the plug-in are none of the
// device library's.
void take_logged_error(const char *module, const char *format, va_list arguments);

// For what stands in place of system(): a command that was not run.
void take_refused_command(const char *command);

} // namespace agent
