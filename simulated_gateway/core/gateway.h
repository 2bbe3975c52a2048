// SPDX-License-Identifier: MIT
// One simulated gateway: its state, its fault plan, its trace.
#pragma once

#include "core/arguments.h"
#include "core/fault_plan.h"
#include "core/trace.h"
#include "firmware/store.h"
#include "model/individual.h"
#include "model/model.h"
#include "model/state_file.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <initializer_list>
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
    std::optional<int64_t> fixed_time;       // seconds since 1970, else the clock runs
    std::optional<std::string> firmware_key; // file
    int32_t reboot_seconds = 0;
    std::optional<HomeNumber> home; // else the home of the scenario, unchanged
    FetchLimits fetch_limits;
};

// The router that an image has to be for.
FirmwareStore::Router router_of(const State &state);

class Gateway {
  public:
    // Throws an Error if the settings are invalid.
    explicit Gateway(const Settings &settings);

    // Run a device call whose body reads the state, changes it, or uses the gateway without its
    // lock (device_call.h).
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(const State &)> &body);
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(Gateway &)> &body);

    // For the bodies of long work: a copy of the state, and a change as in a setting, which throws
    // an Error if it did not take effect.
    State state();
    void change(const std::function<void(State &)> &body);
    // Waits, unless the clock is stopped. Throws an Error if the gateway is closed meanwhile.
    void wait(std::chrono::milliseconds time);
    FirmwareStore &firmware() { return *firmware_; }
    const WebLimits &web_limits() const { return web_limits_; }
    // Makes running and later downloads and uploads fail.
    void end_transfers();
    void warn(const std::string &text);
    // The last lines of the trace.
    std::string recent() { return trace_.recent(); }

    // The settings that the host may change while the gateway is open.
    // Throws an Error that quotes the first invalid fault, with the plan unchanged.
    void set_faults(const std::vector<std::string> &faults);
    std::vector<std::string> faults();
    // Replaces the home by that of a built-in scenario, or by its own factory state if the scenario
    // is the current one. Throws an Error, also while long work is running.
    void load(const std::string &scenario);
    std::string scenario();

    void power_cycle();
    std::string bridge_mac();

    // Makes every later call fail, and waits for running long work to end.
    void end_calls();
    // Saves the state and unlocks its file. No long work may be running.
    void close();

  private:
    using Lock = std::unique_lock<std::mutex>;
    int32_t run_locked(const char *function, std::initializer_list<Argument> arguments,
                       const std::function<int32_t(Lock &)> &body);
    void keep(State changed);
    std::string start_firmware(State &changed);
    int64_t uptime() const;
    void end_change(Lock &lock);

    Trace trace_;
    const WebLimits web_limits_;
    const int32_t reboot_seconds_;
    const std::optional<HomeNumber> home_;
    std::mutex mutex_; // guards everything below
    std::condition_variable closing_;
    bool closed_ = false;
    bool has_rebooted_ = false; // not yet reported to the host
    int long_calls_ = 0;        // running
    FaultPlan faults_;
    std::optional<StateFile> state_file_;
    std::optional<FirmwareStore> firmware_; // has its own lock
    State state_;
};

} // namespace simulated_gateway
