// SPDX-License-Identifier: MIT
// The checks themselves. They run in the process that has the device library loaded.
#pragma once

#include "conformance/report.h"
#include "host/device_reasons.h"
#include "host/device_watch.h"
#include "host/plugin_host.h"

#include <functional>

namespace agent {

// Receives messages while a check runs. May be called from any thread.
struct CheckListener {
    std::function<void(const std::string &function)> calling; // a function of the device library
    std::function<void()> answered;
    std::function<void(const std::string &reason)> reason; // the library's reason for a failure
    std::function<void(const std::string &warning)> warning;
    std::function<void(const std::string &fault)> fault;
};

// The plug-in on top of the device library under test. A process can have only one.
class CheckedHost {
  public:
    // Throws HostError.
    CheckedHost(const HostOptions &options, CheckListener listener);
    ~CheckedHost();
    CheckedHost(const CheckedHost &) = delete;
    CheckedHost &operator=(const CheckedHost &) = delete;

    // The result excludes faults and warnings, which go to the listener.
    CheckResult run(const Check &check);

  private:
    DeviceWatcher watcher_;
    PluginHost host_;
    DeviceReasons reasons_;
};

} // namespace agent
