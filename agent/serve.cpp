#include "serve.h"

#include "device_reasons.h"
#include "exit_status.h"
#include "notice.h"
#include "plugin_host.h"
#include "progress.h"
#include "protocol.h"
#include "requests.h"
#include "smart_router_service/processjsonability.h"
#include "streams.h"
#include "text.h"
#include "workers.h"

#include <optional>

namespace agent {

namespace {

std::string error_answer(const std::string &id, const std::string &error)
{
    return "{\"id\":" + id + ",\"error\":" + agent::quoted(error) + "}";
}

std::string member_of(const std::vector<std::string> &reasons)
{
    std::string list;
    for (const std::string &reason : reasons) {
        list += (list.empty() ? "" : ",") + agent::quoted(reason);
    }
    return "\"reasons\":[" + list + "]";
}

// What an answer ends with: what was said of the command that has just run, if that is wanted.
std::string end_of_answer(CommandReasons *reasons)
{
    return reasons != nullptr ? "," + member_of(reasons->take()) + "}" : "}";
}

std::string answer_to(const Call &call, const PluginHost &host, CommandReasons *reasons,
                      bool raw_bytes)
{
    if (!call.error.empty()) {
        return error_answer(call.id, call.error);
    }
    const std::string begin = "{\"id\":" + call.id + ",\"result\":";
    if (call.notice) {
        return begin + std::to_string(raise_notice(host, *call.notice)) + end_of_answer(reasons);
    }
    const int32_t result = host.process(call.command, call.params.get());
    if (result == HG_NO_SUCH_COMMAND) {
        complain(no_such_command(call.command));
    }
    return begin + std::to_string(result) +
           ",\"reply\":" + print(call.params.get(), {.raw_bytes = raw_bytes}) +
           end_of_answer(reasons);
}

std::string answer_to(const std::string &line, const PluginHost &host, CommandReasons *reasons,
                      bool raw_bytes)
{
    Call call;
    try {
        call = parse_call(line);
        return answer_to(call, host, reasons, raw_bytes);
    } catch (const BadRequest &problem) {
        return error_answer(call.id, problem.what());
    } catch (const HostError &problem) {
        return error_answer(call.id, problem.what());
    }
}

std::string notice_line(const Json &notice, bool raw_bytes)
{
    return "{\"notice\":" + print(notice.get(), {.raw_bytes = raw_bytes}) + "}";
}

std::string progress_line(const std::string &task, int32_t percent)
{
    return "{\"progress\":{\"task\":" + agent::quoted(task) +
           ",\"percent\":" + std::to_string(percent) + "}}";
}

// Until the input ends, nobody reads the answers, or a signal arrives.
void answer_lines(const Options &options, const PluginHost &host, CommandReasons *reasons,
                  ReplyOutput &output, const StopSignals &stop)
{
    const size_t max_line = options.serve.max_line;
    const std::string too_long =
        error_answer("null", "the line is longer than " + std::to_string(max_line) + " bytes");
    LineReader reader(stop, max_line);
    std::string line;
    for (;;) {
        const LineReader::Result read = reader.next(line);
        if (read == LineReader::Result::kEnd || read == LineReader::Result::kStopped) {
            return;
        }
        const bool whole = read == LineReader::Result::kLine;
        const std::string answer =
            whole ? answer_to(line, host, reasons, options.raw_bytes) : too_long;
        if (!output.write_line(answer, &stop)) {
            return;
        }
    }
}

} // namespace

int run_serve(const Options &options)
{
    const StopSignals stop;
    ReplyOutput output;
    const PluginHost host(options.host);
    const NoticeReceiver notices(options.notice_refusal, [&](const Json &notice) {
        return output.write_line(notice_line(notice, options.raw_bytes), &stop);
    });
    const Progress progress(host, [&](const std::string &task, int32_t percent) {
        output.write_line(progress_line(task, percent), &stop);
    });
    std::optional<CommandReasons> reasons;
    if (options.reasons) {
        reasons.emplace(host, [&](const std::string &reason) {
            output.write_line("{" + member_of({reason}) + "}", &stop);
        });
    }
    return until_workers_end(host, stop, [&]() -> int {
        answer_lines(options, host, reasons ? &*reasons : nullptr, output, stop);
        return kSuccess;
    });
}

} // namespace agent
