// SPDX-License-Identifier: MIT
// The gateway of this process: its configuration, its state, and what it sees of the machine.
#pragma once

#include "core/configuration.h"
#include "core/state.h"
#include "core/state_file.h"
#include "enforcement/enforcement.h"
#include "system/load_meter.h"
#include "system/machine.h"
#include "system/network_reader.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace linux_gateway {

// What a device function works on. Nothing in it changes, so it is used without a lock.
struct View {
    const Configuration &configuration;
    const Machine &machine;
    LoadMeter &meter; // this and the next have locks of their own
    SoftwareReader &software;
    std::shared_ptr<const State> state;
    std::shared_ptr<const Network> network; // at most half a second old
};

// The name given by the user, or the machine's.
std::string gateway_name(const View &view);

class Gateway {
  public:
    // Reads configuration and state, and puts the rules into the kernel, unless another process
    // controls the gateway. Throws an Error.
    Gateway();

    // Takes over if no other process controls the gateway any more. Whether this one does now.
    // Throws an Error.
    bool take_control();

    View view();

    // Changes the state: the body works on a copy, and refuses by throwing an Error. The change is
    // in the kernel and on the disk when this returns; if either fails, an Error is thrown and
    // nothing has changed.
    void change(const std::function<void(State &state, const View &view)> &body);

    // Ends the threads; nothing may be changed from then on.
    void close();

  private:
    View view_locked();
    void enforce();
    void find_management_host();
    Rules rules(const State &state) const;

    const Configuration configuration_;
    const Machine machine_;
    LoadMeter meter_;
    SoftwareReader software_;
    std::mutex mutex_; // guards everything below
    Enforcement enforcement_;
    StateFile state_file_;
    NetworkReader network_reader_;
    std::shared_ptr<const State> state_;
    std::shared_ptr<const Network> network_;
    std::chrono::steady_clock::time_point network_time_;
    std::optional<Mac> management_host_; // once it was seen
    bool are_rules_in_force_ = false;
    bool is_closed_ = false;
};

} // namespace linux_gateway
