// SPDX-License-Identifier: MIT
#include "commands/serve.h"

#include "commands/image_upgrade.h"
#include "commands/report.h"
#include "host/crash_report.h"
#include "host/workers.h"
#include "io/error_output.h"
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
#include <utility>

namespace agent {

namespace {

// The answer to a line: consecutive texts. Those that are not constants belong to the line, the
// printer, or the answer itself.
struct Answer {
    std::string_view id = "null";
    std::string_view begin;
    std::string own;
    std::string_view reply;
    std::string reasons;
};

constexpr std::string_view kNoMemory =
    R"(,"error":"out of memory: the request has not been looked at","code":"busy")";
constexpr std::string_view kNoMemoryForReply =
    R"(,"error":"out of memory: the command has run, and its reply is lost",)"
    R"("code":"outcome-unknown")";

constexpr char kBadRequest[] = "bad-request";
constexpr char kTooLarge[] = "too-large";
constexpr char kBusy[] = "busy";
constexpr char kRebooting[] = "rebooting";

void set_error(Answer &answer, const std::string &error, const char *code)
{
    answer.own = agent::quoted(error) + R"(,"code":")" + code + '"';
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

void run_command(const Call &call, const PluginHost &host, bool raw_bytes, ReplyPrinter &printer,
                 Answer &answer)
{
    const int32_t result = host.process(call.command, call.params.get());
    if (result == HG_NO_SUCH_COMMAND) {
        print_error(no_such_command(call.command));
    }
    answer.own = std::to_string(result) + R"(,"reply":)";
    // Printing the parsed number again might lose a digit.
    answer.reply = result == HG_NO_SUCH_COMMAND ? call.params_text
                                                : printer.print(call.params.get(), raw_bytes);
}

void run_report(const Call &call, const PluginHost &host, bool raw_bytes, Answer &answer)
{
    const Json report = new_object();
    const int32_t result = answer_report(host, *call.report, call.params.get(), report.get());
    answer.own =
        std::to_string(result) + R"(,"reply":)" + print(report.get(), {.raw_bytes = raw_bytes});
}

void run(const Call &call, const PluginHost &host, CommandReasons *reasons, bool raw_bytes,
         ReplyPrinter &printer, Answer &answer)
{
    answer.begin = kNoMemoryForReply; // unless there is memory for a proper reply
    if (call.notice) {
        answer.own = std::to_string(raise_notice(host, *call.notice));
    } else if (call.report) {
        run_report(call, host, raw_bytes, answer);
    } else {
        run_command(call, host, raw_bytes, printer, answer);
    }
    if (reasons != nullptr) {
        answer.reasons = "," + member_of(reasons->take());
    }
    answer.begin = R"(,"result":)";
}

void run_control(const Call &call, GatewayControl &control, Answer &answer)
{
    answer.own = "0,\"reply\":" + control.run(call.control.get());
    answer.begin = R"(,"result":)";
}

void say_hello(Answer &answer)
{
    answer.own = std::string(R"(0,"reply":{"protocol":")") + kProtocolVersion +
                 R"(","service":")" HGAGENT_VERSION "\"}";
    answer.begin = R"(,"result":)";
}

// What a session keeps between its lines.
struct Kept {
    CommandReasons *reasons; // null without --reasons
    ReplyPrinter &printer;
    Events &events;
    GatewayControl &control;
    std::string &running;
};

void answer_call(const Call &call, const PluginHost &host, bool raw_bytes, const Kept &kept,
                 Answer &answer)
{
    if (!call.error.empty()) {
        set_error(answer, call.error, kBadRequest);
    } else if (call.is_hello) {
        say_hello(answer);
    } else if (kept.events.is_rebooting()) {
        set_error(answer, "the gateway reboots", kRebooting);
    } else if (call.control != nullptr) {
        run_control(call, kept.control, answer);
    } else {
        kept.running = call.command;
        run(call, host, kept.reasons, raw_bytes, kept.printer, answer);
        kept.running.clear();
    }
}

// Whether memory is too short for another request. Running work may use the reserve; new work must
// not start on it.
bool is_memory_short()
{
    constexpr size_t kForARequest = 4096;
    void *memory = malloc(kForARequest);
    free(memory);
    return memory == nullptr;
}

Answer answer_to(std::string_view line, const PluginHost &host, bool raw_bytes, const Kept &kept)
{
    Answer answer;
    answer.begin = kNoMemory; // as above
    if (is_memory_short()) {
        malloc_trim(0); // returns free memory to the system
        print_out_of_memory();
        return answer;
    }
    try {
        try {
            const Call call = parse_call(line);
            answer.id = call.id;
            answer_call(call, host, raw_bytes, kept, answer);
        } catch (const BadRequest &problem) {
            set_error(answer, problem.what(), kBadRequest);
        } catch (const Busy &problem) {
            set_error(answer, problem.what(), kBusy);
        } catch (const HostError &problem) {
            set_error(answer, problem.what(), kBadRequest);
        }
    } catch (const std::bad_alloc &) {
        answer.own.clear();
        answer.reply = {};
        if (kept.reasons != nullptr) {
            kept.reasons->take(); // they must not be attributed to the next command
        }
        malloc_trim(0);
        print_out_of_memory();
    }
    return answer;
}

// Writes asynchronous events and notices to the output.
class AsyncOutput {
  public:
    AsyncOutput(const Options &options, const ServeSession::Output &output)
        : options_(options), output_(output)
    {
    }

    bool event(const char *name, const std::string &data) const
    {
        return output_({R"({"event":")", name, R"(","data":)", data, "}\n"});
    }

    bool notice(const Json &notice) const
    {
        const std::string text = print(notice.get(), {.raw_bytes = options_.raw_bytes});
        if (!options_.serve.events) {
            return output_({R"({"notice":)", text, "}\n"});
        }
        // The data of an event must be an object, but another plug-in may push any JSON value.
        const bool is_object = cJSON_IsObject(notice.get()) != 0;
        return event("notice", is_object ? text : "{\"value\":" + text + "}");
    }

    bool progress(const std::string &task, int32_t percent) const
    {
        const std::string text =
            "{\"task\":" + agent::quoted(task) + ",\"percent\":" + std::to_string(percent) + "}";
        return options_.serve.events ? event("update.progress", text)
                                     : output_({R"({"progress":)", text, "}\n"});
    }

    // The command is empty if none made the call.
    bool device_call(const std::string &function, const std::string &command, int32_t result,
                     const std::string &line) const
    {
        return event("device.call",
                     "{\"call\":" + agent::quoted(function) +
                         (command.empty() ? "" : ",\"command\":" + agent::quoted(command)) +
                         ",\"result\":" + std::to_string(result) +
                         ",\"text\":" + agent::quoted(line) + "}");
    }

  private:
    const Options &options_;
    const ServeSession::Output &output_;
};

// Runs until the input ends, the reader of the answers is gone, or a signal arrives.
void answer_lines(ServeSession &session, size_t max_line, const StopSignals &stop)
{
    LineReader reader(stop, max_line);
    std::string_view line;
    bool goes_on = true;
    while (goes_on) {
        switch (reader.next(line, session.next_poll().value_or(StopSignals::kForEver))) {
        case LineReader::Result::kEnd:
        case LineReader::Result::kStopped:
            return;
        case LineReader::Result::kTooLong:
            goes_on = session.answer_too_long();
            break;
        case LineReader::Result::kLine:
            goes_on = session.answer(line);
            break;
        case LineReader::Result::kNothing:
            session.poll();
            break;
        }
    }
}

} // namespace

ServeSession::ServeSession(const Options &options, const PluginHost &host, Output output)
    : options_(options), host_(host), output_(std::move(output)),
      events_(host, options.serve.events
                        ? Events::Report([this](const char *name, const std::string &data) {
                              AsyncOutput(options_, output_).event(name, data);
                          })
                        : nullptr),
      control_(host, options.serve.events
                         ? GatewayControl::CallListener([this](const char *function, int32_t result,
                                                               const char *line) {
                               const bool is_command =
                                   std::this_thread::get_id() == commands_ && !running_.empty();
                               AsyncOutput(options_, output_)
                                   .device_call(function, is_command ? running_ : "", result, line);
                           })
                         : nullptr),
      notices_(
          options.notice_refusal,
          [this](const Json &notice) { return AsyncOutput(options_, output_).notice(notice); }),
      progress_(host, [this](const std::string &task, int32_t percent) {
          AsyncOutput(options_, output_).progress(task, percent);
      })
{
    if (options.reasons) {
        reasons_.emplace(host, [this](const std::string &reason) {
            output_({"{", member_of({reason}), "}\n"});
        });
    }
}

bool ServeSession::answer(std::string_view line)
{
    const Answer answer =
        answer_to(line, host_, options_.raw_bytes,
                  {reasons_ ? &*reasons_ : nullptr, printer_, events_, control_, running_});
    // A client must learn of a worker before it gets the answer of the command that started it.
    poll();
    const bool goes_on = output_(
        {R"({"id":)", answer.id, answer.begin, answer.own, answer.reply, answer.reasons, "}\n"});
    printer_.forget();
    return goes_on;
}

void ServeSession::poll()
{
    try {
        events_.poll();
    } catch (const std::bad_alloc &) { // only the event is lost
        print_out_of_memory();
    }
}

bool ServeSession::answer_too_long()
{
    return output_({R"({"id":null,"error":"the line is longer than )",
                    std::to_string(options_.serve.max_line), R"( bytes","code":")", kTooLarge,
                    "\"}\n"});
}

int run_serve(const Options &options)
{
    if (!options.host.show_secrets) {
        forbid_core_dumps();
    }
    report_crashes();
    const StopSignals stop;
    keep_prints_from_blocking();
    ReplyOutput output; // after this, prints to standard output go to standard error
    const PluginHost host(options.host);
    ServeSession session(options, host, [&](std::initializer_list<std::string_view> pieces) {
        return output.write(pieces, &stop);
    });
    const int status = until_workers_end(host, stop, [&]() -> int {
        answer_lines(session, options.serve.max_line, stop);
        return kSuccess;
    });
    session.poll(); // the last worker has ended by now
    return status;
}

} // namespace agent
