// SPDX-License-Identifier: MIT
#include "commands/call.h"

#include "commands/remote_gateway.h"
#include "host/device_reasons.h"
#include "host/plugin_host.h"
#include "host/progress.h"
#include "host/workers.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/protocol.h"
#include "protocol/reply.h"
#include "protocol/requests.h"
#include "smart_router_service/processjsonability.h"

#include <cstring>
#include <optional>

namespace agent {

namespace {

constexpr size_t kMaxRequest = 16UL * 1024 * 1024;

bool looks_like_json(const std::string &word)
{
    const size_t begin = word.find_first_not_of(" \t\r\n");
    return word.find('=') == std::string::npos ||
           (begin != std::string::npos && strchr("{[\"", word[begin]) != nullptr);
}

Json parse_request(const CallOptions &call)
{
    const std::vector<std::string> &words = call.request;
    if (call.request_file) {
        return parse_object(read_all_of(*call.request_file, kMaxRequest));
    }
    if (words.size() == 1 && words.front() == "-") {
        return parse_object(read_all_input(kMaxRequest));
    }
    if (words.size() == 1 && looks_like_json(words.front())) {
        return parse_object(words.front());
    }
    return object_from_words(words);
}

std::string message_of(const BadRequest &problem, const std::vector<std::string> &words)
{
    std::string message = "bad request: " + std::string(problem.what());
    const std::string word = words.size() == 1 ? words.front() : "";
    if (!word.empty() && word != "-" && word.find_first_of("{[\"=") == std::string::npos) {
        message += "; was KEY=VALUE meant?";
    }
    return message;
}

// The reply describes the error only briefly.
void point_to_description(const std::string &command)
{
    if (find_description(command) != nullptr) {
        print_error(command + " failed: \"hgagent describe " + command +
                    "\" shows what it takes and when it fails");
    }
}

int call_service(const Options &options, const cJSON *request)
{
    ReplyOutput output;
    RemoteGateway gateway(*options.socket);
    const RemoteGateway::Reply reply = gateway.command(options.call.command, request);
    return show_reply(options, reply.result, reply.object.get(), output, nullptr);
}

} // namespace

Json request_of(const CallOptions &call)
{
    try {
        return parse_request(call);
    } catch (const BadRequest &problem) {
        print_error(message_of(problem, call.request));
        return nullptr;
    }
}

int show_reply(const Options &options, int32_t result, const cJSON *reply, ReplyOutput &output,
               const StopSignals *stop)
{
    const std::string &command = options.call.command;
    if (result == HG_NO_SUCH_COMMAND) {
        print_error(no_such_command(command));
        return kUnknownCommand;
    }
    const ExitStatus status = write_reply(reply, options.raw_bytes, output, stop);
    if (status == kCommandFailed) {
        point_to_description(command);
    }
    return status;
}

int run_call(const Options &options)
{
    const Json object = request_of(options.call);
    if (object == nullptr) {
        return kWrongUsage;
    }
    if (options.socket) {
        return call_service(options, object.get());
    }

    const StopSignals stop;
    ReplyOutput output;
    const PluginHost host(options.host);
    const ProgressBar bar(host);
    std::optional<DeviceReasons> reasons;
    if (options.reasons) {
        reasons.emplace(host, [](const std::string &reason) { print_error(reason); });
    }
    return until_workers_end(host, stop, [&]() -> int {
        const int32_t result = host.process(options.call.command, object.get());
        return show_reply(options, result, object.get(), output, &stop);
    });
}

} // namespace agent
