// SPDX-License-Identifier: MIT
#include "core/gateway.h"

#include "core/call_report.h"
#include "core/fields.h"
#include "core/refusal.h"
#include "core/update_report.h"
#include "io/clock.h"
#include "model/check.h"
#include "model/scenario.h"
#include "simulation/life_cycle.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace simulated_gateway {
namespace {

constexpr char kClosed[] = "the gateway was closed";

State new_state(const std::string &scenario, const Home &home)
{
    State state;
    state.scenario = scenario_name(scenario);
    state.home = home;
    state.factory = home;
    state.firmware.slot(1) = {state.home.identity.software_version,
                              state.home.identity.firmware_date, "", 0};
    boot(state);
    return state;
}

// Result: whether the fault has filled all reply arguments. A text that is not in a record stays
// unset, since its width is unknown.
bool apply(const Fault &fault, std::initializer_list<Argument> arguments)
{
    if (fault.kind == Fault::Kind::kCrash) {
        std::abort();
    }
    if (fault.kind == Fault::Kind::kResult) {
        return false;
    }
    for (const Argument &argument : arguments) {
        if (argument.spoil != nullptr && argument.value != nullptr) {
            argument.spoil(argument.value);
        }
    }
    return std::ranges::all_of(arguments, [](const Argument &argument) {
        return !argument.is_reply || argument.spoil != nullptr;
    });
}

Home home_of(const std::string &scenario, const std::optional<HomeNumber> &which)
{
    Home home = load_scenario(scenario);
    if (which) {
        make_individual(home, *which);
    }
    return home;
}

} // namespace

FirmwareStore::Router router_of(const State &state)
{
    return {state.home.identity.device_type, state.firmware.slot(state.firmware.running).rollback};
}

Gateway::Gateway(const Settings &settings)
    : web_limits_(settings.fetch_limits), reboot_seconds_(settings.reboot_seconds),
      home_(settings.home)
{
    fix_clock(settings.fixed_time);
    for (const std::string &fault : settings.faults) {
        faults_.add(fault);
    }
    if (settings.trace) {
        trace_.open(*settings.trace, settings.show_secrets);
    }
    std::optional<State> kept;
    if (settings.state_file) {
        state_file_.emplace(*settings.state_file);
        kept = state_file_->load();
    }
    firmware_.emplace(state_file_ ? std::optional(state_file_->path() + ".firmware") : std::nullopt,
                      settings.fetch_limits,
                      settings.firmware_key
                          ? std::make_shared<const VerificationKey>(*settings.firmware_key)
                          : nullptr);
    if (!kept) {
        const std::string scenario = settings.scenario.value_or(kDefaultScenario);
        keep(new_state(scenario, home_of(scenario, home_)));
        has_rebooted_ = false; // it was switched on
        return;
    }
    if (settings.scenario && scenario_name(*settings.scenario) != kept->scenario &&
        scenario_name(*settings.scenario) != kept->opened_as) {
        throw Error(*settings.state_file + ": holds the home of scenario " +
                    in_quotes(kept->scenario) + ", not of " +
                    in_quotes(scenario_name(*settings.scenario)));
    }
    state_ = std::move(*kept);
}

int32_t Gateway::run(const char *function, std::initializer_list<Argument> arguments,
                     const std::function<int32_t(const State &)> &body)
{
    return run_locked(function, arguments, [&](Lock &) {
        let_time_pass(state_);
        return body(state_);
    });
}

int32_t Gateway::run(const char *function, std::initializer_list<Argument> arguments,
                     const std::function<int32_t(State &)> &body)
{
    return run_locked(function, arguments, [&](Lock &) {
        State changed = state_;
        let_time_pass(changed);
        const int32_t result = body(changed);
        if (result == 0) {
            keep(std::move(changed));
        }
        return result;
    });
}

int32_t Gateway::run(const char *function, std::initializer_list<Argument> arguments,
                     const std::function<int32_t(Gateway &)> &body)
{
    return run_locked(function, arguments, [&](Lock &lock) {
        // Releases the lock during its lifetime.
        struct LongCall {
            LongCall(Gateway &gateway, Lock &lock) : gateway_(gateway), lock_(lock)
            {
                ++gateway_.long_calls_;
                lock_.unlock();
            }
            ~LongCall()
            {
                lock_.lock();
                --gateway_.long_calls_;
                gateway_.closing_.notify_all();
            }
            Gateway &gateway_;
            Lock &lock_;
        } long_call(*this, lock);
        return body(*this);
    });
}

State Gateway::state()
{
    const std::lock_guard lock(mutex_);
    return state_;
}

void Gateway::change(const std::function<void(State &)> &body)
{
    const std::lock_guard lock(mutex_);
    if (closed_) {
        throw Error(kClosed);
    }
    State changed = state_;
    let_time_pass(changed);
    body(changed);
    keep(std::move(changed));
}

void Gateway::wait(std::chrono::milliseconds time)
{
    Lock lock(mutex_);
    if (clock_runs() && closing_.wait_for(lock, time, [&] { return closed_; })) {
        throw Error(kClosed);
    }
}

int32_t Gateway::run_locked(const char *function, std::initializer_list<Argument> arguments,
                            const std::function<int32_t(Lock &)> &body)
{
    const auto start = std::chrono::steady_clock::now();
    Trace::Call call = {function, arguments, false, -1, {}, {}};
    Lock lock(mutex_);
    if (closed_) {
        call.note = kClosed;
    } else if (const std::optional<Fault> fault = faults_.next(function)) {
        // Without the lock; closing the gateway ends the wait.
        closing_.wait_for(lock, fault->delay, [&] { return closed_; });
        call.result = fault->result;
        call.note = "fault";
        call.filled = apply(*fault, arguments);
    } else if (std::ranges::any_of(arguments, [](auto &it) { return it.value == nullptr; })) {
        call.note = "an argument is null";
    } else {
        try {
            call.result = body(lock);
            call.filled = true;
        } catch (const std::exception &failure) {
            call.note = failure.what();
            for (const Argument &argument : arguments) {
                if (!argument.fail_reason.empty()) {
                    put_text(argument.fail_reason, call.note);
                }
            }
        }
    }
    const int64_t up = uptime();
    end_change(lock);

    call.duration = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - start);
    trace_.call(up, call);
    if (is_call_reported()) {
        report_call(function, call.result, Trace::masked_line(up, call));
    }
    if (call.result != 0 && !call.note.empty()) {
        report_refusal(function, call.note);
        report_failed_update(function, call.note);
    }
    return call.result;
}

void Gateway::keep(State changed)
{
    const std::string started = start_firmware(changed);
    check(changed);
    // Sets the end of what has just begun, so that the file contains it.
    let_time_pass(changed);
    if (state_file_) {
        state_file_->save(changed);
    }
    has_rebooted_ = has_rebooted_ || changed.boot_count != state_.boot_count;
    state_ = std::move(changed);
    if (!started.empty()) {
        trace_.event(uptime(), started.c_str());
    }
}

// After a restart with the other slot: if its image is invalid, the router starts the firmware that
// ran before. Result: what happened, for the trace; empty if the slot is the same.
std::string Gateway::start_firmware(State &changed)
{
    Firmware &firmware = changed.firmware;
    if (firmware.running == state_.firmware.running) {
        return {};
    }
    const FirmwareSlot &started = firmware.slot(firmware.running);
    const std::string name = "firmware " + started.version;
    try {
        firmware_->check(firmware.running, started, router_of(state_));
        return name + " starts";
    } catch (const Error &failure) {
        firmware.next = state_.firmware.running;
        simulated_gateway::start_firmware(changed);
        return name + " does not start, " + failure.what();
    }
}

int64_t Gateway::uptime() const
{
    return seconds_since(state_.boot_time);
}

// Releases the lock and reports to the host what must not be reported under it.
void Gateway::end_change(Lock &lock)
{
    const bool has_rebooted = std::exchange(has_rebooted_, false);
    lock.unlock();
    if (has_rebooted) {
        report_reboot(clock_runs() ? reboot_seconds_ : 0);
    }
}

void Gateway::set_faults(const std::vector<std::string> &faults)
{
    FaultPlan plan;
    for (const std::string &fault : faults) {
        plan.add(fault);
    }
    const std::lock_guard lock(mutex_);
    faults_ = std::move(plan);
}

std::vector<std::string> Gateway::faults()
{
    const std::lock_guard lock(mutex_);
    return faults_.texts();
}

void Gateway::load(const std::string &scenario)
{
    const std::lock_guard lock(mutex_);
    if (closed_) {
        throw Error(kClosed);
    }
    if (long_calls_ > 0) {
        throw Error("a device call is running");
    }
    const bool is_current = scenario == state_.scenario;
    if (!is_current && is_scenario_file(scenario)) {
        throw Error("a scenario file can only be given when the gateway is opened");
    }
    State fresh = new_state(scenario, is_current ? state_.factory : home_of(scenario, home_));
    // The next process to open the state may still name the scenario of its first start.
    const std::string &opened_as = state_.opened_as.empty() ? state_.scenario : state_.opened_as;
    fresh.opened_as = opened_as != scenario ? opened_as : "";
    let_time_pass(fresh);
    check(fresh);
    if (state_file_) {
        state_file_->save(fresh);
    }
    state_ = std::move(fresh);
    trace_.event(uptime(), "scenario", scenario.c_str());
}

std::string Gateway::scenario()
{
    const std::lock_guard lock(mutex_);
    return state_.scenario;
}

void Gateway::power_cycle()
{
    Lock lock(mutex_);
    if (closed_) {
        return;
    }
    try {
        State changed = state_;
        boot(changed);
        keep(std::move(changed));
        trace_.event(uptime(), "power cycle");
    } catch (const std::exception &failure) {
        trace_.event(uptime(), "power cycle failed", failure.what());
    }
    end_change(lock);
}

void Gateway::end_transfers()
{
    const std::lock_guard lock(mutex_);
    if (firmware_) {
        firmware_->stop();
    }
}

void Gateway::warn(const std::string &text)
{
    const std::lock_guard lock(mutex_);
    trace_.event(uptime(), "warning", text.c_str());
}

// The main router has one MAC address for its bridge and for itself.
std::string Gateway::bridge_mac()
{
    const std::lock_guard lock(mutex_);
    return state_.home.identity.mac;
}

void Gateway::end_calls()
{
    Lock lock(mutex_);
    closed_ = true;
    if (firmware_) {
        firmware_->stop();
    }
    closing_.notify_all();
    closing_.wait(lock, [&] { return long_calls_ == 0; });
}

void Gateway::close()
{
    const std::lock_guard lock(mutex_);
    try {
        keep(state_);
    } catch (const std::exception &failure) {
        trace_.event(uptime(), "close failed", failure.what());
    }
    firmware_.reset();
    state_file_.reset();
}

} // namespace simulated_gateway
