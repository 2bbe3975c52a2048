// SPDX-License-Identifier: MIT
// What may stand between the plug-in and its host: a recording, or a replay in the host's place.
#pragma once

#include "host/device_layer.h"
#include "host/options.h"
#include "host/plugin_services.h"

#include <cjson/cJSON.h>

#include <initializer_list>
#include <string_view>
#include <utility>

namespace agent {

// It lives until the process ends, because workers of the plug-in may call it until then.
class PluginSeam {
  public:
    PluginSeam() = default;
    virtual ~PluginSeam() = default;
    PluginSeam(const PluginSeam &) = delete;
    PluginSeam &operator=(const PluginSeam &) = delete;

    // What the plug-in calls instead of the stage and the services. They may use them.
    virtual DeviceStage &stage(DeviceStage &next) = 0;
    virtual PluginServices &services(PluginServices &next) = 0;

    // The agent calls the plug-in: a command, or a function by its exported name.
    using Texts = std::initializer_list<std::pair<const char *, std::string_view>>;
    virtual void begin_command(std::string_view command, const cJSON *request) = 0;
    virtual void begin_function(const char *function, Texts arguments) = 0;
    // The call has returned; the reply is null if there is none.
    virtual void end(const cJSON *reply, int32_t result) = 0;
};

// Returns the seam for the options, which the caller does not delete; null for none. Throws
// HostError. The libraries are those that are loaded.
using FindSeam = PluginSeam *(*)(const HostOptions &options, const std::string &plugin,
                                 const std::string &device);
// Must be called before the libraries are loaded.
void use_seams(FindSeam find);

} // namespace agent
