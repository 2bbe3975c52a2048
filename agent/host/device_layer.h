// SPDX-License-Identifier: MIT
// The layer between the plug-in and a device library of any vendor: a library that exports the
// functions of device_access.h and passes each call through the stages set by the agent. Its
// functions are generated from the descriptions; neither the layer nor a stage has code for a
// single function.
#pragma once

#include "protocol/device_layout.h"

#include <cstdint>
#include <span>

namespace agent {

// The argument as an address.
inline char *address_of(intptr_t argument)
{
    return reinterpret_cast<char *>(argument); // NOLINT(performance-no-int-to-ptr)
}

struct DeviceCall {
    const device_layout::Function &function;
    std::span<intptr_t> arguments; // values or addresses, in the order of the description
    int32_t result = -1;           // valid after the call
    bool is_missing = false;       // the library lacks the function
    // Calls a function of this type with the arguments.
    int32_t (*make)(void *function, const intptr_t *arguments);
};

// Called from any thread. A stage passes the call to the next one and may inspect it before and
// after. If it replaces arguments by its own memory, it restores them.
class DeviceStage {
  public:
    DeviceStage() = default;
    virtual ~DeviceStage() = default;
    DeviceStage(const DeviceStage &) = delete;
    DeviceStage &operator=(const DeviceStage &) = delete;

    virtual void run(DeviceCall &call) = 0;
};

// Exported by the library: from now on calls go to this stage.
using StartDeviceLayer = void (*)(DeviceStage *first);
constexpr char kStartDeviceLayer[] = "device_layer_start";

} // namespace agent
