// SPDX-License-Identifier: MIT
// hgagent report: what the plug-in tells its agent without any command.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"

#include <cjson/cJSON.h>

#include <cstdint>
#include <string>

namespace agent {

// "no report \"NAME\"; hgagent report lists them", for people.
std::string no_such_report(const std::string &name);

// Builds the report in an empty object, as serve is asked for it: the params are {"path": TEXT} of
// stations, {"url": TEXT} of image-upgrade, which is only started, and of all others {}. Result:
// that of the plug-in, 0 on success. Throws BadRequest, HostError, and Busy when the upgrade cannot
// start.
int32_t answer_report(const PluginHost &host, const std::string &name, const cJSON *params,
                      cJSON *report);

// Lists the reports, or builds the one that was asked for and prints it. Result: the exit status.
int run_report(const Options &options);

} // namespace agent
