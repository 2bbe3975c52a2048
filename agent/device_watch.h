// The library that stands between the plug-in and a device library and looks at every call: it has
// the functions of device_access.h, calls those of the device library, and says where that breaks
// what the header promises.
#pragma once

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

// Exported by the library as kStartDeviceWatch: from now on its functions call those of the device
// library, a handle of dlopen().
using StartDeviceWatch = void (*)(void *device, const DeviceWatcher *watcher);
constexpr char kStartDeviceWatch[] = "device_watch_start";

} // namespace agent
