// SPDX-License-Identifier: MIT
// Progress of long operations.
#pragma once

#include "host/plugin_host.h"

#include <functional>
#include <optional>
#include <string>

namespace agent {

// Reports progress during its lifetime, if the device library supports it.
class Progress {
  public:
    // Called on the thread that does the work.
    using Report = std::function<void(const std::string &task, int32_t percent)>;

    Progress(const PluginHost &host, Report report);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

  private:
    static void receive(const char *task, int32_t percent, void *progress);

    Report report_;
    void (*set_)(void (*)(const char *, int32_t, void *), void *);
};

// A bar on standard error, when that is a terminal.
class ProgressBar {
  public:
    explicit ProgressBar(const PluginHost &host);
    ~ProgressBar();
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;

  private:
    std::optional<Progress> progress_;
};

} // namespace agent
