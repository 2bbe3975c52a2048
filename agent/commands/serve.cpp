#include "commands/serve.h"

#include "commands/notice.h"
#include "host/device_reasons.h"
#include "host/notice_receiver.h"
#include "host/plugin_host.h"
#include "host/progress.h"
#include "host/workers.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/protocol.h"
#include "protocol/requests.h"
#include "protocol/secrets.h"
#include "smart_router_service/processjsonability.h"

#include <cstdlib>
#include <malloc.h>
#include <new>
#include <optional>

namespace agent {

namespace {

// What a line is answered with: texts that follow each other. Those that are no constants of the
// program are the line's, the printer's, or the answer's own.
struct Answer {
    std::string_view id = "null";
    std::string_view begin;
    std::string own;
    std::string_view reply;
    std::string reasons;
};

constexpr std::string_view kNoMemory =
    R"(,"error":"out of memory: the request has not been looked at")";
constexpr std::string_view kNoMemoryForReply =
    R"(,"error":"out of memory: the command has run, and its reply is lost")";

void set_error(Answer &answer, const std::string &error)
{
    answer.own = agent::quoted(error);
    answer.begin = R"(,"error":)";
}

std::string member_of(const std::vector<std::string> &reasons)
{
    std::string list;
    for (const std::string &reason : reasons) {
        list += (list.empty() ? "" : ",") + agent::quoted(reason);
    }
    return "\"reasons\":[" + list + "]";
}

void run(const Call &call, const PluginHost &host, CommandReasons *reasons, bool raw_bytes,
         ReplyPrinter &printer, Answer &answer)
{
    if (!call.error.empty()) {
        set_error(answer, call.error);
        return;
    }
    answer.begin = kNoMemoryForReply; // unless there is memory for another one
    if (call.notice) {
        answer.own = std::to_string(raise_notice(host, *call.notice));
    } else {
        const int32_t result = host.process(call.command, call.params.get());
        if (result == HG_NO_SUCH_COMMAND) {
            complain(no_such_command(call.command));
        }
        answer.own = std::to_string(result) + R"(,"reply":)";
        // Printed anew, a number might lose a digit.
        answer.reply = result == HG_NO_SUCH_COMMAND ? call.params_text
                                                    : printer.print(call.params.get(), raw_bytes);
    }
    if (reasons != nullptr) {
        answer.reasons = "," + member_of(reasons->take());
    }
    answer.begin = R"(,"result":)";
}

// Whether there is none for a request. What has begun may live on a reserve; nothing begins on it.
bool is_memory_short()
{
    constexpr size_t kForARequest = 4096;
    void *memory = malloc(kForARequest);
    free(memory);
    return memory == nullptr;
}

Answer answer_to(std::string_view line, const PluginHost &host, CommandReasons *reasons,
                 bool raw_bytes, ReplyPrinter &printer)
{
    Answer answer;
    answer.begin = kNoMemory; // as above
    if (is_memory_short()) {
        malloc_trim(0); // what is free may be of use to others
        complain_of_memory();
        return answer;
    }
    try {
        try {
            const Call call = parse_call(line);
            answer.id = call.id;
            run(call, host, reasons, raw_bytes, printer, answer);
        } catch (const BadRequest &problem) {
            set_error(answer, problem.what());
        } catch (const HostError &problem) {
            set_error(answer, problem.what());
        }
    } catch (const std::bad_alloc &) {
        answer.own.clear();
        answer.reply = {};
        if (reasons != nullptr) {
            reasons->take(); // they are not those of the next command
        }
        malloc_trim(0);
        complain_of_memory();
    }
    return answer;
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
        R"({"id":null,"error":"the line is longer than )" + std::to_string(max_line) + " bytes\"}";
    LineReader reader(stop, max_line);
    ReplyPrinter printer;
    std::string_view line;
    for (;;) {
        const LineReader::Result read = reader.next(line);
        if (read == LineReader::Result::kEnd || read == LineReader::Result::kStopped) {
            return;
        }
        if (read == LineReader::Result::kTooLong) {
            if (!output.write_line(too_long, &stop)) {
                return;
            }
            continue;
        }
        const Answer answer = answer_to(line, host, reasons, options.raw_bytes, printer);
        if (!output.write({R"({"id":)", answer.id, answer.begin, answer.own, answer.reply,
                           answer.reasons, "}\n"},
                          &stop)) {
            return;
        }
        printer.forget();
    }
}

} // namespace

int run_serve(const Options &options)
{
    if (!options.host.show_secrets) {
        forbid_core_dumps();
    }
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
