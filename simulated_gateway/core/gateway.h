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
    std::optional<HomeNumber> home; // else as the scenario has it
    FetchLimits fetch_limits;
};

// The router of the state, as images are for it.
FirmwareStore::Router router_of(const State &state);

class Gateway {
  public:
    // Throws an Error when the settings do not hold.
    explicit Gateway(const Settings &settings);

    // Run a device call, by what its body works on (device_call.h): the state that it looks at, the
    // state that it changes, or the gateway, without its lock.
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(const State &)> &body);
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);
    int32_t run(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(Gateway &)> &body);

    // For the bodies of long work: the state at this moment, and a step of change as in a setting,
    // which throws an Error when the change did not take effect.
    State state();
    void change(const std::function<void(State &)> &body);
    // Lets the time pass that something takes, unless the clock stands still; throws an Error when
    // the gateway is closed meanwhile.
    void wait(std::chrono::milliseconds time);
    FirmwareStore &firmware() { return *firmware_; }
    const WebLimits &web_limits() const { return web_limits_; }
    // Lets downloads and uploads fail from now on, those that are under way as well.
    void end_transfers();
    void warn(const std::string &text);
    // What it did last, as lines.
    std::string recent() { return trace_.recent(); }

    // The settings that the host may change while the gateway is open.
    // Throws an Error that quotes the first wrong fault; then the plan is as before.
    void set_faults(const std::vector<std::string> &faults);
    std::vector<std::string> faults();
    // Replaces the home by that of a built-in scenario, or by its own factory state if the scenario
    // is the current one. Throws an Error, also while long work is running.
    void load(const std::string &scenario);
    std::string scenario();

    void power_cycle();
    std::string bridge_mac();

    // Lets every call fail from now on, and waits for the long work that is under way to end.
    void end_calls();
    // Saves the state and lets go of its file. No long work may be under way.
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
    bool has_rebooted_ = false; // and the host has not been told yet
    int long_calls_ = 0;        // under way
    FaultPlan faults_;
    std::optional<StateFile> state_file_;
    std::optional<FirmwareStore> firmware_; // has a lock of its own
    State state_;
};

} // namespace simulated_gateway
