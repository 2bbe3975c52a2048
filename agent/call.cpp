#include "call.h"

#include "exit_status.h"
#include "plugin_host.h"
#include "protocol.h"
#include "requests.h"
#include "smart_router_service/processjsonability.h"
#include "streams.h"
#include "text.h"

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

Json request_of(const std::vector<std::string> &words)
{
    if (words.size() == 1 && words.front() == "-") {
        return parse_object(read_all_input(kMaxRequest));
    }
    if (words.size() == 1 && looks_like_json(words.front())) {
        return parse_object(words.front());
    }
    return object_from_words(words);
}

// A request may bring a "Status" of its own, which comes first.
ExitStatus status_of(const cJSON *reply)
{
    ExitStatus status = kSuccess;
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, reply)
    {
        if (strcmp(item->string, "Status") == 0) {
            const bool success = cJSON_IsString(item) != 0 && strcmp(item->valuestring, "0") == 0;
            status = success ? kSuccess : kCommandFailed;
        }
    }
    return status;
}

} // namespace

int run_call(const HostOptions &host_options, const CallOptions &options)
{
    Json object;
    try {
        object = request_of(options.request);
    } catch (const BadRequest &problem) {
        complain("bad request: " + std::string(problem.what()));
        return kWrongUsage;
    }

    const ReplyOutput output;
    const PluginHost host(host_options);
    if (host.process(options.command, object.get()) == HG_NO_SUCH_COMMAND) {
        complain(no_such_command(options.command));
        return kUnknownCommand;
    }
    if (!output.write_line(print(object.get(), output.is_terminal()))) {
        complain("nobody reads the reply");
        return kCannotWrite;
    }
    return status_of(object.get());
}

} // namespace agent
