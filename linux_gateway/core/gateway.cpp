// SPDX-License-Identifier: MIT
#include "core/gateway.h"

#include "system/error.h"
#include "system/log.h"

namespace linux_gateway {

// A client reads hosts one by one: all of them are to come from the same moment, and the machine is
// not to be asked for each.
constexpr std::chrono::milliseconds kSnapshotTime{500};

Gateway::Gateway()
    : configuration_(configuration()), state_file_(configuration_.state),
      state_(std::make_shared<const State>(state_file_.read()))
{
    const std::lock_guard lock(mutex_);
    view_locked();
    const std::string error = state_file_.is_ours() ? enforcement_.apply(rules(*state_)) : "";
    if (!error.empty()) {
        throw Error(error);
    }
}

View Gateway::view_locked()
{
    const auto now = std::chrono::steady_clock::now();
    if (network_ == nullptr || now >= network_time_ + kSnapshotTime) {
        NetworkSources sources;
        sources.lan_bridge = configuration_.lan_bridge;
        sources.wan_port = configuration_.wan_port;
        sources.lease_file = configuration_.lease_file;
        for (const auto &[mac, settings] : state_->hosts) {
            sources.known_hosts.insert(mac);
        }
        network_ = std::make_shared<const Network>(network_reader_.read(sources));
        network_time_ = now;
    }
    return {configuration_, state_, network_};
}

View Gateway::view()
{
    const std::lock_guard lock(mutex_);
    return view_locked();
}

Rules Gateway::rules(const State &state) const
{
    return rules_of(state, configuration_.lan_bridge, std::nullopt);
}

void Gateway::change(const std::function<void(State &, const View &)> &body)
{
    const std::lock_guard lock(mutex_);
    if (is_closed_) {
        throw Error("the gateway is closed");
    }
    if (!state_file_.is_ours()) {
        throw Error("another process controls this gateway: it has locked " + configuration_.state);
    }
    auto changed = std::make_shared<State>(*state_);
    body(*changed, view_locked());
    if (*changed == *state_) {
        return;
    }
    // The kernel first: it has more reasons to refuse, and is rebuilt from the file after a crash.
    const Rules before = rules(*state_);
    const Rules after = rules(*changed);
    if (after != before) {
        const std::string error = enforcement_.apply(after);
        if (!error.empty()) {
            throw Error(error);
        }
    }
    try {
        state_file_.write(*changed);
    } catch (const Error &) {
        const std::string error = after != before ? enforcement_.apply(before) : "";
        if (!error.empty()) {
            log_error("the rules of a change that could not be saved stay in force: " + error);
        }
        throw;
    }
    state_ = std::move(changed);
}

void Gateway::close()
{
    const std::lock_guard lock(mutex_);
    is_closed_ = true;
    enforcement_.stop();
}

} // namespace linux_gateway
