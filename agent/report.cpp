#include "report.h"

#include "exit_status.h"
#include "image_upgrade.h"
#include "pages.h"
#include "plugin_host.h"
#include "reply.h"
#include "requests.h"
#include "smart_router_service/processjsonability.h"
#include "text.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace agent {

namespace {

// What the plug-in exports for a report: a function that writes it into an empty object.
using Build = int32_t (*)(cJSON *);
using BuildForPath = decltype(&json_get_router_sta_info);

struct Builder {
    const char *name;
    const char *summary;
    const char *symbol;
    bool takes_path = false;
};

constexpr Builder kBuilders[] = {
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

int list_reports()
{
    Table table;
    for (const Builder &builder : kBuilders) {
        table.row({builder.name, builder.summary});
    }
    table.row({kImageUpgrade, "Fetch the image at --url and flash it, as an agent does by itself"});
    std::ostringstream page;
    table.print(page, "");
    return show(page.str());
}

const Builder *find_builder(const std::string &name)
{
    const auto *builder =
        std::ranges::find(kBuilders, name, [](const Builder &one) { return one.name; });
    return builder != std::end(kBuilders) ? builder : nullptr;
}

int print_report(const Options &options)
{
    ReplyOutput output;
    const PluginHost host(options.host);
    const Json report = new_object();
    const int32_t result = build_report(host, options.report, options.router_path, report.get());
    const ExitStatus written = write_reply(report.get(), options.raw_bytes, output);
    // Of the reports without a "Status" only the result says that they failed.
    return written == kSuccess && result != 0 ? kCommandFailed : written;
}

} // namespace

int run_report(const Options &options)
{
    if (options.report.empty()) {
        return list_reports();
    }
    if (options.report == kImageUpgrade) {
        return run_image_upgrade(options);
    }
    if (find_builder(options.report) == nullptr) {
        complain("no report \"" + options.report + "\"; hgagent report lists them");
        return kUnknownCommand;
    }
    return print_report(options);
}

std::vector<std::string> reports_that_tell()
{
    std::vector<std::string> names;
    for (const Builder &builder : kBuilders) {
        names.emplace_back(builder.name);
    }
    return names;
}

int32_t build_report(const PluginHost &host, const std::string &name,
                     const std::string &router_path, cJSON *report)
{
    const Builder &builder = *find_builder(name);
    void *function = host.required_symbol(builder.symbol);
    if (builder.takes_path) {
        return reinterpret_cast<BuildForPath>(function)(report, "main", router_path.c_str());
    }
    return reinterpret_cast<Build>(function)(report);
}

} // namespace agent
