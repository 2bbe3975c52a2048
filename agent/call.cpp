#include "call.h"

#include "exit_status.h"
#include "plugin_host.h"
#include "progress.h"
#include "protocol.h"
#include "reply.h"
#include "requests.h"
#include "smart_router_service/processjsonability.h"
#include "streams.h"
#include "text.h"
#include "workers.h"

#include <cstring>

namespace agent {

namespace {

constexpr size_t kMaxRequest = 16UL * 1024 * 1024;

bool looks_like_json(const std::string &word)
{
    const size_t begin = word.find_first_not_of(" \t\r\n");
    return word.find('=') == std::string::npos ||
           (begin != std::string::npos && strchr("{[\"", word[begin]) != nullptr);
}

Json request_of(const CallOptions &call)
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

} // namespace

int run_call(const Options &options)
{
    Json object;
    try {
        object = request_of(options.call);
    } catch (const BadRequest &problem) {
        complain("bad request: " + std::string(problem.what()));
        return kWrongUsage;
    }

    const StopSignals stop;
    ReplyOutput output;
    const PluginHost host(options.host);
    const ProgressBar bar(host);
    return until_workers_end(host, stop, [&]() -> int {
        const std::string &command = options.call.command;
        if (host.process(command, object.get()) == HG_NO_SUCH_COMMAND) {
            complain(no_such_command(command));
            return kUnknownCommand;
        }
        return write_reply(object.get(), options.raw_bytes, output, &stop);
    });
}

} // namespace agent
