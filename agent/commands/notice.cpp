#include "commands/notice.h"

#include "commands/remote_gateway.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "protocol/reply.h"
#include "smart_router_service/processjsonability.h"

#include <exception>
#include <mutex>
#include <utf8.h>
#include <utility>
#include <vector>

namespace agent {

namespace {

constexpr int32_t kNotPassedOn = -1;
constexpr size_t kMaxText = 1024UL * 1024;

std::mutex receiver_lock; // held while the receiver is at work, so that it cannot go meanwhile
const NoticeReceiver *receiver = nullptr;

Json json_of(const char *text)
{
    Json notice(cJSON_ParseWithOpts(text, nullptr, 1));
    if (notice == nullptr) {
        notice.reset(cJSON_CreateString(text));
    }
    if (notice == nullptr) {
        throw std::bad_alloc();
    }
    return notice;
}

} // namespace

NoticeReceiver::NoticeReceiver(int32_t refusal, PassOn pass_on)
    : refusal_(refusal), pass_on_(std::move(pass_on))
{
    const std::lock_guard lock(receiver_lock);
    receiver = this;
}

NoticeReceiver::~NoticeReceiver()
{
    const std::lock_guard lock(receiver_lock);
    receiver = nullptr;
}

int32_t NoticeReceiver::receive(const char *text) const
{
    if (refusal_ != 0) {
        return refusal_;
    }
    return pass_on_(json_of(text)) ? 0 : kNotPassedOn;
}

int32_t receive_notice(const char *text)
{
    if (text == nullptr) {
        return kNotPassedOn;
    }
    const std::lock_guard lock(receiver_lock);
    if (receiver == nullptr) {
        log_line(kLogError, "nobody receives notices");
        return kNotPassedOn;
    }
    try {
        return receiver->receive(text);
    } catch (const std::exception &problem) { // the callers cannot handle any
        log_line(kLogError, "a notice is lost: %s", problem.what());
        return kNotPassedOn;
    }
}

int32_t raise_notice(const PluginHost &host, const Notice &notice)
{
    const auto raise = reinterpret_cast<decltype(&json_msg_notice_to_app)>(
        host.required_symbol("json_msg_notice_to_app"));
    return raise(notice.text.c_str(), notice.plugin_name.c_str());
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

// What is pushed is told only where the policy of the service lets one see it.
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
        complain("bad notice: a NUL byte would end its text");
        return kWrongUsage;
    }
    if (!utf8::is_valid(notice.plugin_name)) {
        complain("bad notice: the plug-in's name is not UTF-8");
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
        complain("the notice was refused with " + std::to_string(result));
    }
    return result == 0 ? kSuccess : kCommandFailed;
}

} // namespace agent
