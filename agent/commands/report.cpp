#include "commands/report.h"

#include "commands/image_upgrade.h"
#include "commands/topology.h"
#include "host/plugin_host.h"
#include "host/report_builders.h"
#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/json.h"
#include "protocol/reply.h"
#include "protocol/requests.h"

#include <sstream>

namespace agent {

namespace {

constexpr size_t kMaxName = 64;

int list_reports()
{
    Table table;
    for (const ReportBuilder &builder : report_builders()) {
        table.row({builder.name, builder.summary});
    }
    table.row({kMesh, "What hgagent topology draws: topology, tree of parameters and a count"});
    table.row({kImageUpgrade, "Fetch the image at --url and flash it, as an agent does by itself"});
    std::ostringstream page;
    table.print(page, "");
    return show(page.str());
}

int print_report(const Options &options)
{
    ReplyOutput output;
    const PluginHost host(options.host);
    const Json report = new_object();
    const int32_t result =
        options.report == kMesh
            ? report_mesh(host, report.get())
            : build_report(host, options.report, options.router_path, report.get());
    const ExitStatus written = write_reply(report.get(), options.raw_bytes, output);
    // Of the reports without a "Status" only the result says that they failed.
    return written == kSuccess && result != 0 ? kCommandFailed : written;
}

// The text of the params, or the fallback where they have none of the name.
std::string text_param(const cJSON *params, const char *name, const char *fallback)
{
    const cJSON *item = cJSON_GetObjectItemCaseSensitive(params, name);
    if (item == nullptr) {
        return fallback;
    }
    if (cJSON_IsString(item) == 0) {
        throw BadRequest(std::string("\"") + name + "\" is no text");
    }
    return item->valuestring;
}

} // namespace

int32_t answer_report(const PluginHost &host, const std::string &name, const cJSON *params,
                      cJSON *report)
{
    if (name == kMesh) {
        return report_mesh(host, report);
    }
    if (name == kImageUpgrade) {
        start_image_upgrade(host, text_param(params, "url", ""));
        return 0;
    }
    if (find_report(name) == nullptr) {
        throw BadRequest(no_such_report(name));
    }
    return build_report(host, name, text_param(params, "path", kMainRouterPath), report);
}

std::string no_such_report(const std::string &name)
{
    return "no report \"" + one_line(name, kMaxName) + "\"; hgagent report lists them";
}

int run_report(const Options &options)
{
    if (options.report.empty()) {
        return list_reports();
    }
    if (options.report == kImageUpgrade) {
        return run_image_upgrade(options);
    }
    if (options.report != kMesh && find_report(options.report) == nullptr) {
        complain(no_such_report(options.report));
        return kUnknownCommand;
    }
    return print_report(options);
}

} // namespace agent
