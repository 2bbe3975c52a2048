#include "serve.h"

#include "exit_status.h"
#include "notice.h"
#include "plugin_host.h"
#include "progress.h"
#include "requests.h"
#include "streams.h"
#include "workers.h"

namespace agent {

namespace {

std::string error_answer(const std::string &id, const std::string &error)
{
    return "{\"id\":" + id + ",\"error\":" + agent::quoted(error) + "}";
}

std::string answer_to(const Call &call, const PluginHost &host, bool raw_bytes)
{
    if (!call.error.empty()) {
        return error_answer(call.id, call.error);
    }
    const std::string begin = "{\"id\":" + call.id + ",\"result\":";
    if (call.notice) {
        return begin + std::to_string(raise_notice(host, *call.notice)) + "}";
    }
    const int32_t result = host.process(call.command, call.params.get());
    return begin + std::to_string(result) +
           ",\"reply\":" + print(call.params.get(), {.raw_bytes = raw_bytes}) + "}";
}

std::string answer_to(const std::string &line, const PluginHost &host, bool raw_bytes)
{
    Call call;
    try {
        call = parse_call(line);
        return answer_to(call, host, raw_bytes);
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
void answer_lines(const Options &options, const PluginHost &host, ReplyOutput &output,
                  const StopSignals &stop)
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
        const std::string answer = whole ? answer_to(line, host, options.raw_bytes) : too_long;
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
    return until_workers_end(host, stop, [&]() -> int {
        answer_lines(options, host, output, stop);
        return kSuccess;
    });
}

} // namespace agent
