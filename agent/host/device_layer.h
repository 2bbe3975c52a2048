// SPDX-License-Identifier: MIT
// The layer between the plug-in and a device library, of any maker: a library that has the
// functions of device_access.h and hands each call to the stages that the agent has put there. Its
// functions are made from the descriptions; nothing here or in a stage is there for one function
// alone.
#pragma once

#include "protocol/device_layout.h"

#include <cstdint>
#include <span>

namespace agent {

// The address that an argument is.
inline char *address_of(intptr_t argument)
{
    return reinterpret_cast<char *>(argument); // NOLINT(performance-no-int-to-ptr)
}

struct DeviceCall {
    const device_layout::Function &function;
    std::span<intptr_t> arguments; // values and addresses, in the order of the description
    int32_t result = -1;           // once it has been made
    bool is_missing = false;       // the library has no such function
    // Calls a function of this kind with the arguments.
    int32_t (*make)(void *function, const intptr_t *arguments);
};

// Called from any thread. A stage hands the call on to the next one, and looks at it before and
// after. Where it puts memory of its own into the arguments, it puts them back.
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
