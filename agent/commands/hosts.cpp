// SPDX-License-Identifier: MIT
#include "commands/hosts.h"

#include "commands/remote_gateway.h"
#include "host/plugin_host.h"
#include "io/exit_status.h"
#include "io/pages.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/device_texts.h"
#include "protocol/requests.h"

#include <sstream>
#include <string>

namespace agent {

namespace {

constexpr char kHostsCommand[] = "GET_AD_BASE_INFO";

std::string cell(const std::string &text)
{
    return text.empty() ? "-" : text;
}

std::string state_of(const cJSON *host)
{
    const std::string online = text_of(host, "NetStatus");
    const std::string state = online == "1" ? "online" : online == "0" ? "offline" : cell(online);
    return text_of(host, "AccessEnable") == "0" ? state + ", blocked" : state;
}

std::string page_of(const cJSON *hosts)
{
    Table table;
    table.row({"NAME", "MAC", "IP", "ACCESS", "STATE", "UP KBIT/S", "DOWN KBIT/S"});
    const cJSON *host = nullptr;
    cJSON_ArrayForEach(host, hosts)
    {
        table.row({cell(name_of(host)), cell(text_of(host, "Mac")), cell(text_of(host, "ip")),
                   cell(text_of(host, "AccessType")), state_of(host),
                   cell(text_of(host, "UpSpeed")), cell(text_of(host, "DownSpeed"))});
    }
    std::ostringstream page;
    table.print(page, "");
    std::string text = page.str();
    text.pop_back(); // the trailing line end
    return text;
}

Json reply_of_gateway(const Options &options)
{
    Json reply = new_object();
    if (options.socket) {
        return RemoteGateway(*options.socket).command(kHostsCommand, reply.get()).object;
    }
    const PluginHost host(options.host);
    if (host.process(kHostsCommand, reply.get()) != 0) {
        throw HostError(kCannotLoad,
                        "the plug-in " + host.path() + " has no command " + kHostsCommand);
    }
    return reply;
}

} // namespace

int run_hosts(const Options &options)
{
    ReplyOutput output;
    const Json reply = reply_of_gateway(options);
    if (text_of(reply.get(), "Status") != "0") {
        print_error("the gateway does not list its hosts: " +
                    cell(text_of(reply.get(), "FailReason")));
        return kCommandFailed;
    }
    const cJSON *hosts = cJSON_GetObjectItemCaseSensitive(reply.get(), "BaseInfo");
    if (!output.write_line(page_of(hosts))) {
        print_error("nobody reads the table");
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace agent
