#include "commands/report.h"

#include "commands/image_upgrade.h"
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

int list_reports()
{
    Table table;
    for (const ReportBuilder &builder : report_builders()) {
        table.row({builder.name, builder.summary});
    }
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
    if (find_report(options.report) == nullptr) {
        complain("no report \"" + options.report + "\"; hgagent report lists them");
        return kUnknownCommand;
    }
    return print_report(options);
}

} // namespace agent
