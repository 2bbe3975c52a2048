#include "commands/topology.h"

#include "commands/topology_drawing.h"
#include "commands/topology_routers.h"
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

namespace agent {

namespace {

constexpr char kCommand[] = "GET_TSLINK_TOPOLOGY_INFO";

bool is_locale_utf8()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) { // one that is not installed
        return false;
    }
    const bool is_utf8 = strcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
    freelocale(locale);
    return is_utf8;
}

// Why the gateway says nothing of its topology; an empty text when it does.
std::string failure_in(const cJSON *reply)
{
    const cJSON *main_router = cJSON_GetObjectItemCaseSensitive(reply, "MainRouter");
    if (text_of(reply, "Status") != "0" || main_router == nullptr) {
        const std::string reason = text_of(reply, "FailReason");
        return reason.empty() ? "no reason given" : reason;
    }
    return text_of(main_router, "FailReason");
}

// Who hangs from whom; nothing when this plug-in or the gateway does not say.
Json tree_of_parameters(const PluginHost &host)
{
    const auto build = reinterpret_cast<decltype(&json_get_topo_router_agent_info_bynewmethod)>(
        host.symbol("json_get_topo_router_agent_info_bynewmethod"));
    Json tree = new_object();
    if (build != nullptr) {
        build(tree.get());
    }
    return tree;
}

// The plug-in reports no more than so many devices of the main router, but counts one more.
bool has_more_devices(const PluginHost &host, const Router &main_router)
{
    const auto *counted = static_cast<const int32_t *>(host.symbol("g_dev_num"));
    return counted != nullptr && *counted > static_cast<int64_t>(main_router.devices.size());
}

} // namespace

int run_topology(const Options &options)
{
    ReplyOutput output;
    const PluginHost host(options.host);
    const Json reply = new_object();
    if (host.process(kCommand, reply.get()) != 0) {
        throw HostError(kCannotLoad, "the plug-in " + host.path() + " has no command " + kCommand);
    }
    const std::string failure = failure_in(reply.get());
    if (!failure.empty()) {
        complain("the gateway does not tell its topology: " + failure);
        return kCommandFailed;
    }
    std::vector<Router> routers = routers_of(reply.get(), tree_of_parameters(host).get());
    routers.front().has_more_devices = has_more_devices(host, routers.front());
    const std::string drawing = options.topology.dot
                                    ? graph_of(routers)
                                    : tree_of(routers, options.topology.ascii || !is_locale_utf8());
    if (!output.write_line(drawing)) {
        complain("nobody reads the drawing");
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace agent
