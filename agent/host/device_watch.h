// SPDX-License-Identifier: MIT
// The stage that checks every call of a device library and reports violations of device_access.h.
#pragma once

#include "host/device_layer.h"

#include <cstdint>

namespace agent {

// Receives the reports. May be called from any thread.
struct DeviceWatcher {
    // The device library is about to be called.
    void (*calling)(const char *function) = nullptr;
    // It has returned; wrote: whether it wrote anything into its arguments.
    void (*answered)(const char *function, int32_t result, bool wrote) = nullptr;
    // It has filled in the reason for a failure, in a record with a field for it.
    void (*reason)(const char *function, const char *text) = nullptr;
    // The result is not a fault, but may be a mistake.
    void (*warning)(const char *function, const char *what) = nullptr;
    // It violated device_access.h.
    void (*fault)(const char *function, const char *what) = nullptr;
};

class DeviceWatch : public DeviceStage {
  public:
    DeviceWatch(DeviceStage &next, const DeviceWatcher &watcher) : next_(next), watcher_(watcher) {}

    // During the call, memory that the device library may write to is placed between guards.
    // Anything that the plug-in could not free or read is removed from the result.
    void run(DeviceCall &call) override;

  private:
    DeviceStage &next_;
    const DeviceWatcher watcher_;
};

} // namespace agent
