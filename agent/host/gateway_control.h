// SPDX-License-Identifier: MIT
// Control of the simulated gateway while it is open: faults, scenario, clock, trace.
#pragma once

#include "host/plugin_host.h"
#include "simulated_gateway/simulated_gateway.h"

#include <cjson/cJSON.h>

#include <cstdint>
#include <functional>
#include <string>

namespace agent {

// Only one instance may exist at a time.
class GatewayControl {
  public:
    // Receives the device calls while the trace is on. Called from any thread, by one at a time.
    using CallListener =
        std::function<void(const char *function, int32_t result, const char *line)>;

    // Without a listener, the trace cannot be switched on.
    GatewayControl(const PluginHost &host, CallListener listener);
    ~GatewayControl();
    GatewayControl(const GatewayControl &) = delete;
    GatewayControl &operator=(const GatewayControl &) = delete;

    // Carries out a control as parse_call() has checked it. Result: the reply, a JSON object.
    // Throws BadRequest, and Busy while a worker of the plug-in is running that the control would
    // disturb. Must be called on the thread that runs the commands.
    std::string run(const cJSON *control);

  private:
    static void receive(const char *function, int32_t result, const char *line, void *control);
    void set_faults(const cJSON *faults) const;
    void load(const char *scenario) const;
    void set_clock(const char *clock) const;
    void set_trace(bool is_on);
    std::string shown() const;

    const PluginHost &host_;
    const CallListener listener_;
    decltype(&simulated_gateway_on_call) end_trace_ = nullptr; // while the trace is on
};

} // namespace agent
