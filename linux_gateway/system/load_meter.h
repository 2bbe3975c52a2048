// SPDX-License-Identifier: MIT
// How busy the machine and its network interfaces are.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace linux_gateway {

struct Rates {
    int64_t received_kbps = 0;
    int64_t sent_kbps = 0;
};

struct Load {
    int64_t cpu_percent = 0;
    int64_t memory_percent = 0;
    std::map<std::string, Rates> rates; // by interface

    Rates rates_of(const std::string &interface) const;
};

// The counters that a load is computed from.
struct LoadCounters {
    struct Interface {
        uint64_t received_bytes = 0;
        uint64_t sent_bytes = 0;
    };

    uint64_t busy_ticks = 0; // of all processors
    uint64_t all_ticks = 0;
    std::map<std::string, Interface> interfaces;
};

// From the texts of /proc/stat and /proc/net/dev.
LoadCounters load_counters(std::string_view processors, std::string_view interfaces);
// From the text of /proc/meminfo.
int64_t memory_percent(std::string_view memory);
// Between two readings; what has been reset in between counts as 0.
Load load_between(const LoadCounters &before, const LoadCounters &after,
                  std::chrono::milliseconds time);

class LoadMeter {
  public:
    LoadMeter();

    // The load since the last call, at most ten seconds ago. If there was none, it is measured for
    // a fifth of a second.
    std::shared_ptr<const Load> load();

  private:
    using Clock = std::chrono::steady_clock;

    void read();

    std::mutex mutex_; // guards everything below
    LoadCounters counters_;
    Clock::time_point read_time_;
    std::shared_ptr<const Load> load_; // the last answer
};

} // namespace linux_gateway
