// SPDX-License-Identifier: MIT
#include "host/report_builders.h"

#include "host/plugin_call.h"
#include "smart_router_service/processjsonability.h"

#include <algorithm>
#include <iterator>

namespace agent {

namespace {

// A function that the plug-in exports for a report; it builds the report in an empty object.
using Build = int32_t (*)(cJSON *);
using BuildForPath = decltype(&json_get_router_sta_info);

constexpr ReportBuilder kBuilders[] = {
    {"home-page", "What a home page shows of the gateway", "json_get_home_page_info"},
    {"main-router", "What is known of the main router", "json_get_main_router_info"},
    {"main-base", "The devices that are online, as the main router lists them",
     "json_get_main_router_baseinfo"},
    {"topology", "The child routers with their stations, from the relations of the topology",
     "json_get_topo_router_info"},
    {"agent-topology", "The child routers with their stations, from the tree of parameters",
     "json_get_topo_router_agent_info_bynewmethod"},
    {kStations, "The stations of one router in the tree of parameters, the main router or --path",
     "json_get_router_sta_info", true},
};

} // namespace

std::span<const ReportBuilder> report_builders()
{
    return kBuilders;
}

const ReportBuilder *find_report(const std::string &name)
{
    const auto *builder =
        std::ranges::find(kBuilders, name, [](const ReportBuilder &one) { return one.name; });
    return builder != std::end(kBuilders) ? builder : nullptr;
}

int32_t build_report(const PluginHost &host, const std::string &name,
                     const std::string &router_path, cJSON *report)
{
    const ReportBuilder &builder = *find_report(name);
    void *function = host.required_symbol(builder.symbol);
    if (builder.takes_path) {
        const PluginCall call(host.seam(), builder.symbol,
                              {{"router", "main"}, {"path", router_path}});
        return call.end(
            report, reinterpret_cast<BuildForPath>(function)(report, "main", router_path.c_str()));
    }
    const PluginCall call(host.seam(), builder.symbol);
    return call.end(report, reinterpret_cast<Build>(function)(report));
}

} // namespace agent
