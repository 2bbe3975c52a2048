// SPDX-License-Identifier: MIT
#include "commands/report.h"

#include "commands/image_upgrade.h"
#include "commands/remote_gateway.h"
#include "commands/topology.h"
#include "host/plugin_host.h"
#include "host/report_builders.h"
#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/device_texts.h"
#include "protocol/json.h"
#include "protocol/reply.h"
#include "protocol/requests.h"

#include <new>
#include <optional>
#include <sstream>
#include <utility>

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

Json params_of(const char *name, const std::string &text)
{
    Json params = new_object();
    if (cJSON_AddStringToObject(params.get(), name, text.c_str()) == nullptr) {
        throw std::bad_alloc();
    }
    return params;
}

// Starts the upgrade and waits for it as far as the service sends events about it. Result: the exit
// status.
int upgrade_service(const Options &options)
{
    std::optional<std::string> failure; // empty: there was none
    RemoteGateway gateway(*options.socket, [&](const std::string &event, const cJSON *data) {
        if (event == "update.succeeded") {
            failure = "";
        } else if (event == "update.failed") {
            failure = "the firmware was not installed: " + text_of(data, "reason");
        } else if (event == "background.lost") {
            failure = "the gateway's process has ended meanwhile";
        }
    });
    const bool is_subscribed =
        gateway.subscribe("update.*") && gateway.subscribe("background.lost");
    const Json params = params_of("url", options.update_url);
    gateway.report(kImageUpgrade, params.get());
    if (!is_subscribed) {
        print_notice("the upgrade has begun; the service does not report how it ends");
        return kSuccess;
    }
    gateway.await_events([&] { return failure.has_value(); });
    if (!failure->empty()) {
        print_error(*failure);
        return kCommandFailed;
    }
    return kSuccess;
}

// Builds the report in an empty object. Result: that of the plug-in.
int32_t report_of_gateway(const Options &options, Json &report)
{
    if (options.socket) {
        const Json params =
            options.report == kStations ? params_of("path", options.router_path) : new_object();
        RemoteGateway::Reply reply =
            RemoteGateway(*options.socket).report(options.report, params.get());
        report = std::move(reply.object);
        return reply.result;
    }
    const PluginHost host(options.host);
    return options.report == kMesh
               ? report_mesh(host, report.get())
               : build_report(host, options.report, options.router_path, report.get());
}

int print_report(const Options &options)
{
    ReplyOutput output;
    Json report = new_object();
    const int32_t result = report_of_gateway(options, report);
    const ExitStatus written = write_reply(report.get(), options.raw_bytes, output);
    // For a report without a "Status", only the result shows a failure.
    return written == kSuccess && result != 0 ? kCommandFailed : written;
}

// The params' text under the name, or the fallback if it is absent.
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
        return options.socket ? upgrade_service(options) : run_image_upgrade(options);
    }
    if (options.report != kMesh && find_report(options.report) == nullptr) {
        print_error(no_such_report(options.report));
        return kUnknownCommand;
    }
    return print_report(options);
}

} // namespace agent
