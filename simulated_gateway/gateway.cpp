#include "gateway.h"

#include "clock.h"
#include "model_check.h"
#include "scenario.h"

#include <algorithm>

namespace simulated_gateway {
namespace {

State new_state(const std::string &scenario)
{
    State state;
    state.scenario = scenario_name(scenario);
    state.home = load_scenario(scenario);
    state.factory = state.home;
    boot(state);
    return state;
}

} // namespace

Gateway::Gateway(const Settings &settings)
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
    if (!kept) {
        keep(new_state(settings.scenario.value_or(kDefaultScenario)));
        return;
    }
    if (settings.scenario && scenario_name(*settings.scenario) != kept->scenario) {
        throw Error(*settings.state_file + ": holds the home of scenario " +
                    in_quotes(kept->scenario) + ", not of " +
                    in_quotes(scenario_name(*settings.scenario)));
    }
    state_ = std::move(*kept);
}

int32_t Gateway::query(const char *function, std::initializer_list<Argument> arguments,
                       const std::function<int32_t(const State &)> &body)
{
    return run(function, arguments, [&] {
        let_time_pass(state_);
        return body(state_);
    });
}

int32_t Gateway::setting(const char *function, std::initializer_list<Argument> arguments,
                         const std::function<int32_t(State &)> &body)
{
    return run(function, arguments, [&] {
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
                     const std::function<int32_t()> &body)
{
    const auto start = std::chrono::steady_clock::now();
    Trace::Call call = {function, arguments, false, -1, {}, {}};
    std::unique_lock lock(mutex_);
    if (closed_) {
        call.note = "the gateway was closed";
    } else if (const std::optional<Fault> fault = faults_.next(function)) {
        // Waiting lets go of the lock; a gateway that is closed waits no longer.
        closing_.wait_for(lock, fault->delay, [&] { return closed_; });
        call.result = fault->result;
        call.note = "fault";
    } else if (std::ranges::any_of(arguments, [](auto &it) { return it.value == nullptr; })) {
        call.note = "an argument is null";
    } else {
        try {
            call.result = body();
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
    lock.unlock();

    call.duration = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - start);
    trace_.call(up, call);
    return call.result;
}

void Gateway::keep(State changed)
{
    check(changed);
    // What has just begun has to end on time for those as well who read the file.
    let_time_pass(changed);
    if (state_file_) {
        state_file_->save(changed);
    }
    state_ = std::move(changed);
}

int64_t Gateway::uptime() const
{
    return seconds_since(state_.boot_time);
}

void Gateway::power_cycle()
{
    const std::lock_guard lock(mutex_);
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
}

void Gateway::close()
{
    const std::lock_guard lock(mutex_);
    closed_ = true;
    closing_.notify_all();
    try {
        keep(state_);
    } catch (const std::exception &failure) {
        trace_.event(uptime(), "close failed", failure.what());
    }
    state_file_.reset();
}

} // namespace simulated_gateway
