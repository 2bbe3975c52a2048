// One simulated gateway: its state, its fault plan, its trace.
#pragma once

#include "device_call.h"
#include "fault_plan.h"
#include "state_file.h"
#include "trace.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace simulated_gateway {

struct Settings {
    std::optional<std::string> scenario;
    std::optional<std::string> state_file;
    std::vector<std::string> faults;
    std::optional<std::string> trace;
    bool show_secrets = false;
    std::optional<int64_t> fixed_time; // seconds since 1970, else the clock runs
};

class Gateway {
  public:
    // Throws an Error when the settings do not hold.
    explicit Gateway(const Settings &settings);

    // As query() and setting() in device_call.h.
    int32_t query(const char *function, std::initializer_list<Argument> arguments,
                  const std::function<int32_t(const State &)> &body);
    int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                    const std::function<int32_t(State &)> &body);

    void power_cycle();

    // Saves the state and lets go of its file. Calls that are still under way fail.
    void close();

  private:
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t()> &body);
    void keep(State changed);
    int64_t uptime() const;

    Trace trace_;
    std::mutex mutex_; // guards everything below
    std::condition_variable closing_;
    bool closed_ = false;
    FaultPlan faults_;
    std::optional<StateFile> state_file_;
    State state_;
};

} // namespace simulated_gateway
