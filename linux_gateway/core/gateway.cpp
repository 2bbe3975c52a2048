// SPDX-License-Identifier: MIT
#include "core/gateway.h"

#include "core/obstacles.h"
#include "system/dhcp_server.h"
#include "system/error.h"
#include "system/log.h"

#include <algorithm>
#include <utility>

namespace linux_gateway {

// A client reads hosts one by one: all of them are to come from the same moment, and the machine is
// not to be asked for each.
constexpr std::chrono::milliseconds kSnapshotTime{500};

Gateway::Gateway()
    : configuration_(find_configuration()), machine_(read_machine()),
      software_(configuration_.package), enforcement_(configuration_.time_zone),
      state_file_(configuration_.state), state_(std::make_shared<const State>(state_file_.read()))
{
    const std::lock_guard lock(mutex_);
    const View view = view_locked();
    for (const std::string &obstacle : obstacles(configuration_, *view.network)) {
        log_error(obstacle);
    }
    if (state_file_.is_ours()) {
        enforce();
    } else {
        log_info("another process controls this gateway: nothing can be set until it ends");
    }
}

bool Gateway::take_control()
{
    const std::lock_guard lock(mutex_);
    if (state_file_.is_ours() || is_closed_) {
        return true;
    }
    if (!state_file_.lock()) {
        return false;
    }
    try {
        state_ = std::make_shared<const State>(state_file_.read());
    } catch (...) {
        state_file_.unlock();
        throw;
    }
    log_info("this process controls the gateway from now on");
    enforce();
    return true;
}

void Gateway::enforce()
{
    // What cannot be enforced does not keep clients from seeing what is there.
    const std::string error = enforcement_.apply(rules(*state_));
    are_rules_in_force_ = error.empty();
    if (!are_rules_in_force_) {
        log_error("the rules are not in force: " + error);
    }
}

View Gateway::view_locked()
{
    const auto now = std::chrono::steady_clock::now();
    if (network_ == nullptr || now >= network_time_ + kSnapshotTime) {
        if (!state_file_.is_ours()) { // the other process may have changed it
            state_ = std::make_shared<const State>(state_file_.read());
        }
        NetworkSources sources;
        sources.lan_bridge = configuration_.lan_bridge;
        sources.wan_port = configuration_.wan_port;
        sources.lease_file = configuration_.lease_file;
        for (const auto &[mac, settings] : state_->hosts) {
            sources.known_hosts.insert(mac);
        }
        sources.reserved_hosts =
            read_dhcp_server(configuration_.dnsmasq_configuration).reserved_hosts;
        network_ = std::make_shared<const Network>(network_reader_.read(sources));
        network_time_ = now;
        find_management_host();
    }
    return {configuration_, machine_, meter_, software_, state_, network_};
}

View Gateway::view()
{
    const std::lock_guard lock(mutex_);
    return view_locked();
}

std::string gateway_name(const View &view)
{
    return view.state->name.empty() ? host_name() : view.state->name;
}

// The host that has the configured address; the last one that had it if nobody has.
void Gateway::find_management_host()
{
    if (!configuration_.management_host) {
        return;
    }
    const std::string &wanted = *configuration_.management_host;
    if (const std::optional<Mac> mac = parse_mac(wanted)) {
        management_host_ = mac;
        return;
    }
    const Host *best = nullptr;
    for (const Host &host : network_->hosts) {
        const bool has_address =
            host.ipv4 == wanted || std::ranges::find(host.ipv6, wanted) != host.ipv6.end();
        // Any host can say that it has an address, but not that the DHCP server has given it.
        if (has_address && (best == nullptr || (host.has_lease && !best->has_lease))) {
            best = &host;
        }
    }
    if (best == nullptr || management_host_ == best->mac) {
        return;
    }
    management_host_ = best->mac;
    // It may have been blocked before it had the address.
    if (are_rules_in_force_ && !is_closed_) {
        const std::string error = enforcement_.apply(rules(*state_));
        if (!error.empty()) {
            log_error("the rules do not follow the management host yet: " + error);
        }
    }
}

Rules Gateway::rules(const State &state) const
{
    return rules_of(state, configuration_.lan_bridge, management_host_);
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
    const View view = view_locked();
    body(*changed, view);
    std::erase_if(changed->hosts, [](const auto &entry) { return entry.second == HostSettings(); });
    if (changed->hosts.size() > kMostHostSettings) {
        throw Error("there are settings for " + std::to_string(kMostHostSettings) +
                    " hosts already");
    }
    if (*changed == *state_) {
        return;
    }
    // The kernel first: it has more reasons to refuse, and is rebuilt from the file after a crash.
    const Rules before = rules(*state_);
    const Rules after = rules(*changed);
    const bool is_to_apply = after != before || !are_rules_in_force_;
    if (is_to_apply) {
        const std::string error = enforcement_.apply(after);
        if (!error.empty()) {
            throw Error(error);
        }
        are_rules_in_force_ = true;
    }
    try {
        state_file_.write(*changed);
    } catch (const Error &) {
        const std::string error = is_to_apply ? enforcement_.apply(before) : "";
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
    if (std::exchange(is_closed_, true)) {
        return;
    }
    if (configuration_.remove_at_exit && state_file_.is_ours()) {
        Rules none;
        none.lan_bridge = configuration_.lan_bridge;
        const std::string error = enforcement_.apply(none);
        if (!error.empty()) {
            log_error("the rules stay in the kernel: " + error);
        }
    }
    enforcement_.stop();
}

} // namespace linux_gateway
