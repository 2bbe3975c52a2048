#include "hosts.h"

#include "exit_status.h"
#include "pages.h"
#include "plugin_host.h"
#include "requests.h"
#include "streams.h"
#include "text.h"

#include <sstream>
#include <string>

namespace agent {

namespace {

// What a device says where it has nothing to say.
constexpr char kNothing[] = "NULL";

// The text behind the key as it is shown; an empty one when there is none.
std::string text_of(const cJSON *item, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(item, key));
    return text == nullptr || std::string(text) == kNothing ? "" : one_line(to_utf8(text));
}

std::string cell(const std::string &text)
{
    return text.empty() ? "-" : text;
}

std::string name_of(const cJSON *host)
{
    const std::string given = text_of(host, "ByName");
    return given.empty() ? text_of(host, "Name") : given;
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
    text.pop_back(); // the last line's end
    return text;
}

} // namespace

int run_hosts(const Options &options)
{
    ReplyOutput output;
    const PluginHost host(options.host);
    const Json reply(cJSON_CreateObject());
    if (host.process("GET_AD_BASE_INFO", reply.get()) != 0) {
        throw HostError(kCannotLoad,
                        "the plug-in " + host.path() + " has no command GET_AD_BASE_INFO");
    }
    if (text_of(reply.get(), "Status") != "0") {
        complain("the gateway does not list its hosts: " +
                 cell(text_of(reply.get(), "FailReason")));
        return kCommandFailed;
    }
    const cJSON *hosts = cJSON_GetObjectItemCaseSensitive(reply.get(), "BaseInfo");
    if (!output.write_line(page_of(hosts))) {
        complain("nobody reads the table");
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace agent
