#include "commands/notice.h"

#include "host/notice_receiver.h"
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
    return raise(notice.text.c_str(), notice.plugin_name.c_str());
}

int run_notice(const Options &options)
{
    Notice notice{options.notice.plugin_name, options.notice.text};
    if (notice.text == "-") {
        notice.text = read_all_input(kMaxText);
    }
    if (notice.text.find('\0') != std::string::npos) {
        complain("bad notice: a NUL byte would end its text");
        return kWrongUsage;
    }
    if (!utf8::is_valid(notice.plugin_name)) {
        complain("bad notice: the plug-in's name is not UTF-8");
        return kWrongUsage;
    }

    ReplyOutput output;
    const PluginHost host(options.host);
    std::vector<Json> received;
    int32_t result = 0;
    {
        const NoticeReceiver receiving(options.notice_refusal, [&](Json json) {
            received.push_back(std::move(json));
            return true;
        });
        result = raise_notice(host, notice);
    }
    for (const Json &json : received) {
        if (write_reply(json.get(), options.raw_bytes, output) == kCannotWrite) {
            return kCannotWrite;
        }
    }
    if (result != 0) {
        complain("the notice was refused with " + std::to_string(result));
    }
    return result == 0 ? kSuccess : kCommandFailed;
}

} // namespace agent
