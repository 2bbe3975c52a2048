#include "report.h"

#include "exit_status.h"
#include "image_upgrade.h"
#include "pages.h"
#include "plugin_host.h"
#include "reply.h"
#include "requests.h"
#include "text.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace agent {

namespace {

// What the plug-in exports for a report: a function that writes it into an empty object.
using Build = int32_t (*)(cJSON *);

struct Builder {
    const char *name;
    const char *summary;
    const char *symbol;
};

constexpr Builder kBuilders[] = {
    {"home-page", "What a home page shows of the gateway", "json_get_home_page_info"},
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

int build(const Builder &builder, const Options &options)
{
    ReplyOutput output;
    const PluginHost host(options.host);
    const auto function = reinterpret_cast<Build>(host.required_symbol(builder.symbol));
    const Json report(cJSON_CreateObject());
    function(report.get()); // its result says no more than the "Status"
    return write_reply(report.get(), options.raw_bytes, output);
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
    const auto *builder =
        std::ranges::find(kBuilders, options.report, [](const Builder &one) { return one.name; });
    if (builder == std::end(kBuilders)) {
        complain("no report \"" + options.report + "\"; hgagent report lists them");
        return kUnknownCommand;
    }
    return build(*builder, options);
}

} // namespace agent
