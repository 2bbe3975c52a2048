// hgagent report: what the plug-in tells its agent without any command.
#pragma once

#include "options.h"
#include "plugin_host.h"

#include <string>
#include <vector>

namespace agent {

// The report that speaks of one router.
constexpr char kStations[] = "stations";

// Lists the reports, or builds the one that was asked for and prints it. Result: the exit status.
int run_report(const Options &options);

// The reports that change nothing: all but the one that upgrades.
std::vector<std::string> reports_that_tell();

// Builds one of them in an empty object, of the router with the path where it speaks of one.
// Result: that of the plug-in, 0 on success. Throws HostError.
int32_t build_report(const PluginHost &host, const std::string &name,
                     const std::string &router_path, cJSON *report);

} // namespace agent
