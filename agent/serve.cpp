#include "serve.h"

#include "exit_status.h"
#include "plugin_host.h"
#include "requests.h"
#include "streams.h"

namespace agent {

namespace {

std::string error_answer(const std::string &id, const std::string &error)
{
    return "{\"id\":" + id + ",\"error\":" + quoted(error) + "}";
}

std::string answer_to(const std::string &line, const PluginHost &host)
{
    try {
        const Call call = parse_call(line);
        if (!call.error.empty()) {
            return error_answer(call.id, call.error);
        }
        const int32_t result = host.process(call.command, call.params.get());
        return "{\"id\":" + call.id + ",\"result\":" + std::to_string(result) +
               ",\"reply\":" + print(call.params.get()) + "}";
    } catch (const BadRequest &problem) {
        return error_answer("null", problem.what());
    }
}

} // namespace

int run_serve(const HostOptions &host_options, const ServeOptions &options)
{
    StopSignals stop;
    const ReplyOutput output;
    const PluginHost host(host_options);
    const std::string too_long = error_answer(
        "null", "the line is longer than " + std::to_string(options.max_line) + " bytes");

    LineReader reader(stop, options.max_line);
    std::string line;
    for (;;) {
        const LineReader::Result read = reader.next(line);
        if (read == LineReader::Result::kEnd) {
            return kSuccess;
        }
        if (read == LineReader::Result::kStopped) {
            return kSignalled + stop.arrived();
        }
        const bool whole = read == LineReader::Result::kLine;
        if (!output.write_line(whole ? answer_to(line, host) : too_long, &stop)) {
            return stop.arrived() != 0 ? kSignalled + stop.arrived() : kSuccess;
        }
    }
}

} // namespace agent
