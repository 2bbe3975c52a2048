// SPDX-License-Identifier: MIT
// hgagent report: reports that the plug-in builds without a command.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"

#include <cjson/cJSON.h>

#include <cstdint>
#include <string>

namespace agent {

// "no report \"NAME\"; hgagent report lists them", for people.
std::string no_such_report(const std::string &name);

// Builds the report in an empty object, as serve requests it. The params are {"path": TEXT} for
// stations, {"url": TEXT} for image-upgrade, which is only started, and {} for all others. Result:
// that of the plug-in, 0 on success. Throws BadRequest, HostError, and Busy when the upgrade cannot
// start.
int32_t answer_report(const PluginHost &host, const std::string &name, const cJSON *params,
                      cJSON *report);

// Lists the reports, or builds and prints the requested one. Result: the exit status.
int run_report(const Options &options);

} // namespace agent
