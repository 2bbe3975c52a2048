// SPDX-License-Identifier: MIT
// The read-only reports: functions of the plug-in that no command calls.
#pragma once

#include "host/plugin_host.h"

#include <cjson/cJSON.h>

#include <span>
#include <string>

namespace agent {

// The report on one router.
constexpr char kStations[] = "stations";
// Its default router: the first entry of the tree is the main router.
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

// Builds the report in an empty object; the path selects the router for a report on one router.
// Result: that of the plug-in, 0 on success. Throws HostError.
int32_t build_report(const PluginHost &host, const std::string &name,
                     const std::string &router_path, cJSON *report);

} // namespace agent
