// SPDX-License-Identifier: MIT
// The two libraries in one process: the device library, and the plug-in on top of it.
#pragma once

#include "host/options.h"
#include "io/exit_status.h"

#include <cjson/cJSON.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace agent {

class DeviceTrace;
class PluginSeam;
struct DeviceWatcher;

// Why the libraries could not be loaded, with the agent's exit status.
class HostError : public std::runtime_error {
  public:
    HostError(ExitStatus status, const std::string &message)
        : std::runtime_error(message), status_(status)
    {
    }
    ExitStatus status() const { return status_; }

  private:
    ExitStatus status_;
};

// The device library. The simulated gateway is opened with the given options and closed by the
// destructor. With a watcher, with a seam, and with a trace unless the library is the simulated
// gateway, the plug-in that is loaded next calls the library through the device layer; otherwise it
// calls the library directly.
class DeviceLibrary {
  public:
    DeviceLibrary(const HostOptions &options, const DeviceWatcher *watcher); // throws HostError
    ~DeviceLibrary();
    DeviceLibrary(const DeviceLibrary &) = delete;
    DeviceLibrary &operator=(const DeviceLibrary &) = delete;

    // Null when the library does not export it.
    void *symbol(const char *name) const;
    // Throws HostError when the device library lacks functions that the plug-in in the file needs.
    // Without this check the plug-in would find them in the layer.
    void require_functions(const std::string &plugin, bool verbose) const;
    // What stands between the plug-in and its host; null for nothing.
    PluginSeam *seam() const { return seam_; }

  private:
    void open_gateway(const std::string &path, const HostOptions &options);
    void put_stages(const HostOptions &options, const DeviceWatcher *watcher, bool may_trace);

    void *library_ = nullptr; // null where the options have a stage in its place
    PluginSeam *seam_;
    DeviceTrace *trace_ = nullptr;
    bool has_layer_ = false;
    bool has_watcher_ = false;
    void (*close_)() = nullptr;
};

// The plug-in, ready to answer commands.
class PluginHost {
  public:
    // Throws HostError.
    explicit PluginHost(const HostOptions &options, const DeviceWatcher *watcher = nullptr);

    // Runs one command; the reply is in the object afterwards. Result: that of the dispatcher.
    int32_t process(const std::string &command, cJSON *object) const;

    // A symbol that the plug-in exports in addition to the dispatcher; null when this plug-in does
    // not.
    void *symbol(const char *name) const;
    // The same, but throws HostError instead of returning null.
    void *required_symbol(const char *name) const;
    // A symbol of the device library; null when it is not exported.
    void *device_symbol(const char *name) const { return device_.symbol(name); }
    // What the agent has to report its calls of exported functions to; null for nothing.
    PluginSeam *seam() const { return device_.seam(); }

    const std::string &path() const { return path_; }

  private:
    DeviceLibrary device_;
    std::string path_;
    void *library_;
    int32_t (*process_)(const char *, cJSON *) = nullptr;
};

// Loads both libraries, and scenarios of the simulated gateway, for processes that will be forked:
// these then share most of what they load. Opens no gateway. Throws HostError.
void load_in_advance(const HostOptions &options, const std::vector<std::string> &scenarios);

} // namespace agent
