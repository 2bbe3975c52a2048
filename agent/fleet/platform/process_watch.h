// SPDX-License-Identifier: MIT
// The processor time and memory of processes and their children, from /proc. A separate thread
// reads them: ten thousand children take longer than a request may wait.
#pragma once

#include "fleet/platform/platform_options.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace agent::fleet::platform {

class ProcessWatch {
  public:
    explicit ProcessWatch(std::vector<WatchedProcess> processes);
    ~ProcessWatch();
    ProcessWatch(const ProcessWatch &) = delete;
    ProcessWatch &operator=(const ProcessWatch &) = delete;

    struct Use {
        std::string name;
        double processor = 0; // seconds since the watch began
        double share = 0;     // of one processor, between the last two readings
        double memory = 0;    // bytes; shared ones divided among those that share them
        size_t processes = 0;
    };
    // As of the last reading.
    std::vector<Use> uses() const;

  private:
    void run();

    const std::vector<WatchedProcess> processes_;
    mutable std::mutex mutex_;
    std::condition_variable ends_;
    bool has_ended_ = false;
    std::vector<Use> uses_;
    std::thread thread_;
};

} // namespace agent::fleet::platform
