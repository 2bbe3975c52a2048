// SPDX-License-Identifier: MIT
// The stage that looks at every call of a device library and says where it breaks what
// device_access.h promises.
#pragma once

#include "host/device_layer.h"

#include <cstdint>

namespace agent {

// Who is told. May be called from any thread.
struct DeviceWatcher {
    // The device library is about to be called.
    void (*calling)(const char *function) = nullptr;
    // It has answered; wrote says whether it left anything in what it was given.
    void (*answered)(const char *function, int32_t result, bool wrote) = nullptr;
    // It has left a reason in a record that has room for one.
    void (*reason)(const char *function, const char *text) = nullptr;
    // What it leaves is no fault, and may be a mistake.
    void (*warning)(const char *function, const char *what) = nullptr;
    // It broke a promise.
    void (*fault)(const char *function, const char *what) = nullptr;
};

class DeviceWatch : public DeviceStage {
  public:
    DeviceWatch(DeviceStage &next, const DeviceWatcher &watcher) : next_(next), watcher_(watcher) {}

    // What the device library may write into stands between guards meanwhile. What the plug-in
    // could not free or read is taken out of it.
    void run(DeviceCall &call) override;

  private:
    DeviceStage &next_;
    const DeviceWatcher watcher_;
};

} // namespace agent
