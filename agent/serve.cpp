#include "serve.h"

#include "exit_status.h"
#include "plugin_host.h"
#include "requests.h"
#include "streams.h"
#include "workers.h"

namespace agent {

namespace {

std::string error_answer(const std::string &id, const std::string &error)
{
    return "{\"id\":" + id + ",\"error\":" + quoted(error) + "}";
}

std::string answer_to(const std::string &line, const PluginHost &host, bool raw_bytes)
{
    try {
        const Call call = parse_call(line);
        if (!call.error.empty()) {
            return error_answer(call.id, call.error);
        }
        const int32_t result = host.process(call.command, call.params.get());
        return "{\"id\":" + call.id + ",\"result\":" + std::to_string(result) +
               ",\"reply\":" + print(call.params.get(), {.raw_bytes = raw_bytes}) + "}";
    } catch (const BadRequest &problem) {
        return error_answer("null", problem.what());
    }
}

// Until the input ends, nobody reads the answers, or a signal arrives.
void answer_lines(const Options &options, const PluginHost &host, const ReplyOutput &output,
                  StopSignals &stop)
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
    StopSignals stop;
    const ReplyOutput output;
    const PluginHost host(options.host);
    return until_workers_end(host, stop, [&]() -> int {
        answer_lines(options, host, output, stop);
        return kSuccess;
    });
}

} // namespace agent
