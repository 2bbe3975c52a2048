// SPDX-License-Identifier: MIT
// The reports that change nothing: functions of the plug-in that no command leads to.
#pragma once

#include "host/plugin_host.h"

#include <cjson/cJSON.h>

#include <span>
#include <string>

namespace agent {

// The report that speaks of one router.
constexpr char kStations[] = "stations";
// Its router where no other is asked for: the first entry of the tree is the main router.
constexpr char kMainRouterPath[] = "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.";

struct ReportBuilder {
    const char *name;
    const char *summary;
    const char *symbol;
    bool takes_path = false;
};

std::span<const ReportBuilder> report_builders();

// Null when there is no such report.
const ReportBuilder *find_report(const std::string &name);

// Builds one of them in an empty object, of the router with the path where it speaks of one.
// Result: that of the plug-in, 0 on success. Throws HostError.
int32_t build_report(const PluginHost &host, const std::string &name,
                     const std::string &router_path, cJSON *report);

} // namespace agent
