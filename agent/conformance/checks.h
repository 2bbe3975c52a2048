// SPDX-License-Identifier: MIT
// The checks themselves. They run in the process that has the device library loaded.
#pragma once

#include "conformance/report.h"
#include "host/device_reasons.h"
#include "host/device_watch.h"
#include "host/plugin_host.h"

#include <functional>

namespace agent {

// What is told while a check runs. May be called from any thread.
struct CheckListener {
    std::function<void(const std::string &function)> calling; // a function of the device library
    std::function<void()> answered;
    std::function<void(const std::string &reason)> reason; // what the library says of a failure
    std::function<void(const std::string &warning)> warning;
    std::function<void(const std::string &fault)> fault;
};

// The plug-in on top of a device library that is looked at. There can be one in a process.
class CheckedHost {
  public:
    // Throws HostError.
    CheckedHost(const HostOptions &options, CheckListener listener);
    ~CheckedHost();
    CheckedHost(const CheckedHost &) = delete;
    CheckedHost &operator=(const CheckedHost &) = delete;

    // Faults and warnings that were told to the listener are no part of the result.
    CheckResult run(const Check &check);

  private:
    DeviceWatcher watcher_;
    PluginHost host_;
    DeviceReasons reasons_;
};

} // namespace agent
