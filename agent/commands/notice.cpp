// SPDX-License-Identifier: MIT
#include "commands/notice.h"

#include "commands/remote_gateway.h"
#include "host/notice_receiver.h"
#include "host/plugin_call.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/reply.h"
#include "smart_router_service/processjsonability.h"

#include <utf8.h>
#include <utility>
#include <vector>

namespace agent {

namespace {

constexpr size_t kMaxText = 1024UL * 1024;

} // namespace

int32_t raise_notice(const PluginHost &host, const Notice &notice)
{
    const auto raise = reinterpret_cast<decltype(&json_msg_notice_to_app)>(
        host.required_symbol("json_msg_notice_to_app"));
    const PluginCall call(host.seam(), "json_msg_notice_to_app",
                          {{"text", notice.text}, {"plugin_name", notice.plugin_name}});
    return call.end(nullptr, raise(notice.text.c_str(), notice.plugin_name.c_str()));
}

namespace {

int32_t raise_here(const Options &options, const Notice &notice, std::vector<Json> &received)
{
    const PluginHost host(options.host);
    const NoticeReceiver receiving(options.notice_refusal, [&](Json json) {
        received.push_back(std::move(json));
        return true;
    });
    return raise_notice(host, notice);
}

// The pushed notice is shown only if the service's policy allows the client to see it.
int32_t raise_at_service(const std::string &socket, const Notice &notice,
                         std::vector<Json> &received)
{
    RemoteGateway gateway(socket, [&](const std::string &event, const cJSON *data) {
        if (event == "notice") {
            received.emplace_back(cJSON_Duplicate(data, 1));
        }
    });
    gateway.subscribe("notice");
    return gateway.notice(notice.plugin_name, notice.text);
}

} // namespace

int run_notice(const Options &options)
{
    Notice notice{options.notice.plugin_name, options.notice.text};
    if (notice.text == "-") {
        notice.text = read_all_input(kMaxText);
    }
    if (notice.text.find('\0') != std::string::npos) {
        print_error("bad notice: a NUL byte would end its text");
        return kWrongUsage;
    }
    if (options.socket && !utf8::is_valid(notice.text)) {
        print_error("bad notice: the text is not UTF-8, as a service needs it");
        return kWrongUsage;
    }
    if (!utf8::is_valid(notice.plugin_name)) {
        print_error("bad notice: the plug-in's name is not UTF-8");
        return kWrongUsage;
    }

    ReplyOutput output;
    std::vector<Json> received;
    const int32_t result = options.socket ? raise_at_service(*options.socket, notice, received)
                                          : raise_here(options, notice, received);
    for (const Json &json : received) {
        if (write_reply(json.get(), options.raw_bytes, output) == kCannotWrite) {
            return kCannotWrite;
        }
    }
    if (result != 0) {
        print_error("the notice was refused with " + std::to_string(result));
    }
    return result == 0 ? kSuccess : kCommandFailed;
}

} // namespace agent
