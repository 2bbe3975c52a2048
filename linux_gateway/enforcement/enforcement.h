// SPDX-License-Identifier: MIT
// Puts rules into the kernel and keeps them there: it applies periods in time, and puts back what
// other programs remove.
#pragma once

#include "enforcement/download_limits.h"
#include "enforcement/kernel_watch.h"
#include "enforcement/packet_filter.h"
#include "enforcement/rules.h"
#include "enforcement/time_zone.h"
#include "system/files.h"
#include "system/flow_tables.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace linux_gateway {

// The time in seconds since 1970.
using Clock = std::function<int64_t()>;
int64_t system_time();
// The flow tables of the machine.
using FlowTables = std::function<std::set<std::string>()>;

class Enforcement {
  public:
    // The zone is that of periods; the machine's if it is empty. Throws an Error if there is no
    // such zone.
    explicit Enforcement(const std::string &time_zone = "", Clock clock = system_time,
                         FlowTables find_flow_tables = linux_gateway::find_flow_tables);
    ~Enforcement();
    Enforcement(const Enforcement &) = delete;
    Enforcement &operator=(const Enforcement &) = delete;

    // Replaces the rules in force. Returns the reason if they cannot be applied, in which case the
    // previous ones stay; empty on success. The first rules are those of an earlier process: what
    // cannot be applied is logged, and tried again later. If nobody is blocked and nothing is
    // limited, nothing remains in the kernel.
    //
    // Flow tables of other programs that have been added since the first rules are logged while
    // rules are in force.
    //
    // Rules that newly block the management host are refused; rules that do so from the start, or
    // because it is a different host now, apply to all others.
    std::string apply(const Rules &rules);

    // Ends the thread. The rules stay in the kernel.
    void stop();

  private:
    using SteadyTime = std::chrono::steady_clock::time_point;

    std::string refusal(const Rules &rules) const;
    void apply_first(const Rules &rules);
    void replace(const Rules &rules);
    void put_limits(const Rules &rules);
    void put_blocks(const Rules &rules);
    void start_thread_for(const Rules &rules);

    // Of the thread
    void run();
    void wait(std::unique_lock<std::mutex> &lock);
    void note(const KernelChanges &changes);
    void follow_clock();
    void check_kernel();
    void report_new_flow_tables();
    void log_failure(const std::string &text);

    const TimeZone zone_;
    const Clock clock_;
    const FlowTables find_flow_tables_;
    std::mutex mutex_; // guards everything below
    PacketFilter filter_;
    DownloadLimits limits_;
    std::optional<KernelWatch> watch_;
    std::thread thread_;
    FileDescriptor wake_; // for events
    bool is_stopping_ = false;

    std::optional<Rules> rules_;
    std::set<std::string> own_addresses_; // as in the packet filter
    std::set<Mac> restricted_;            // by a period
    std::optional<int64_t> next_change_;  // of a period
    int64_t clock_time_ = 0;              // when periods were last applied, by the two clocks
    SteadyTime steady_time_;

    bool blocks_failed_ = false; // and are to be put into the kernel again
    bool limits_failed_ = false;
    std::optional<SteadyTime> check_at_; // when to compare the kernel's state
    SteadyTime checked_at_;
    std::string logged_failure_;
    std::set<std::string> flow_tables_; // of other programs, when they were last listed
    bool flow_tables_changed_ = false;
};

} // namespace linux_gateway
