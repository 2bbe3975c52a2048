// SPDX-License-Identifier: MIT
#include "commands/topology.h"

#include "commands/remote_gateway.h"
#include "commands/topology_drawing.h"
#include "commands/topology_routers.h"
#include "host/plugin_call.h"
#include "host/plugin_host.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/device_texts.h"
#include "protocol/requests.h"
#include "smart_router_service/processjsonability.h"

#include <clocale>
#include <cstring>
#include <langinfo.h>
#include <new>
#include <utility>

namespace agent {

namespace {

constexpr char kCommand[] = "GET_TSLINK_TOPOLOGY_INFO";

// The parts of the report.
constexpr char kTopology[] = "topology";
constexpr char kTree[] = "tree";
constexpr char kDevices[] = "devices";

bool is_locale_utf8()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) { // the locale is not installed
        return false;
    }
    const bool is_utf8 = strcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
    freelocale(locale);
    return is_utf8;
}

// Why the gateway did not report its topology; empty when it did.
std::string failure_in(const cJSON *reply)
{
    const cJSON *main_router = cJSON_GetObjectItemCaseSensitive(reply, "MainRouter");
    if (text_of(reply, "Status") != "0" || main_router == nullptr) {
        const std::string reason = text_of(reply, "FailReason");
        return reason.empty() ? "no reason given" : reason;
    }
    return text_of(main_router, "FailReason");
}

// Adds the item to the report under the name.
void add(cJSON *report, const char *name, Json item)
{
    if (item == nullptr || cJSON_AddItemToObject(report, name, item.get()) == 0) {
        throw std::bad_alloc();
    }
    static_cast<void>(item.release()); // now part of the report
}

// The parent of each router; an empty object when the plug-in or the gateway does not report it.
Json tree_of_parameters(const PluginHost &host)
{
    constexpr char kBuilder[] = "json_get_topo_router_agent_info_bynewmethod";
    const auto build = reinterpret_cast<decltype(&json_get_topo_router_agent_info_bynewmethod)>(
        host.symbol(kBuilder));
    Json tree = new_object();
    if (build != nullptr) {
        const PluginCall call(host.seam(), kBuilder);
        call.end(tree.get(), build(tree.get()));
    }
    return tree;
}

// The plug-in limits the devices that it lists for the main router, but counts one more.
bool has_more_devices(const cJSON *mesh, const Router &main_router)
{
    const cJSON *counted = cJSON_GetObjectItemCaseSensitive(mesh, kDevices);
    return counted != nullptr &&
           counted->valuedouble > static_cast<double>(main_router.devices.size());
}

// Result: the exit status.
int draw(const cJSON *mesh, const Options &options, ReplyOutput &output)
{
    const cJSON *topology = cJSON_GetObjectItemCaseSensitive(mesh, kTopology);
    const std::string failure = failure_in(topology);
    if (!failure.empty()) {
        print_error("the gateway does not report its topology: " + failure);
        return kCommandFailed;
    }
    std::vector<Router> routers =
        routers_of(topology, cJSON_GetObjectItemCaseSensitive(mesh, kTree));
    routers.front().has_more_devices = has_more_devices(mesh, routers.front());
    const std::string drawing = options.topology.dot
                                    ? graph_of(routers)
                                    : tree_of(routers, options.topology.ascii || !is_locale_utf8());
    if (!output.write_line(drawing)) {
        print_error("nobody reads the drawing");
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace

int32_t report_mesh(const PluginHost &host, cJSON *report)
{
    Json topology = new_object();
    if (host.process(kCommand, topology.get()) != 0) {
        throw HostError(kCannotLoad, "the plug-in " + host.path() + " has no command " + kCommand);
    }
    const bool failed = !failure_in(topology.get()).empty();
    add(report, kTopology, std::move(topology));
    if (failed) {
        return 1;
    }
    const auto *devices = static_cast<const int32_t *>(host.symbol("g_dev_num"));
    const int32_t counted = devices != nullptr ? *devices : 0;
    add(report, kTree, tree_of_parameters(host));
    if (devices != nullptr) {
        add(report, kDevices, Json(cJSON_CreateNumber(counted)));
    }
    return 0;
}

namespace {

Json mesh_of_gateway(const Options &options)
{
    Json mesh = new_object();
    if (options.socket) {
        return RemoteGateway(*options.socket).report(kMesh, mesh.get()).object;
    }
    report_mesh(PluginHost(options.host), mesh.get());
    return mesh;
}

} // namespace

int run_topology(const Options &options)
{
    ReplyOutput output;
    const Json mesh = mesh_of_gateway(options);
    return draw(mesh.get(), options, output);
}

} // namespace agent
