// SPDX-License-Identifier: MIT
#include "record/recording.h"

#include "record/device_values.h"
#include "record/line_memory.h"
#include "record/object_text.h"

#include <exception>

namespace agent::record {

void RecordedCalls::run(DeviceCall &call)
{
    thread_local ArgumentsText::Memory memory;
    std::optional<ArgumentsText> arguments;
    try {
        arguments.emplace(call, recorder_.pseudonyms(), memory);
    } catch (const std::exception &problem) { // the call is made without its line
        recorder_.end(problem.what());
    }
    const Recorder::Begin begin = recorder_.begin();
    next_.run(call);
    if (!arguments) {
        return;
    }
    try {
        LineText &line = empty_line();
        line.add_name("call");
        line.add_quoted(call.function.name);
        arguments->add_to(line);
        if (call.function.has_result) {
            line.add_name("result");
            line.add_number(call.result);
        }
        if (call.is_missing) {
            line.add_name("missing");
            line.add("true");
        }
        line.add('}');
        recorder_.add_call(begin, line);
    } catch (const std::exception &problem) {
        recorder_.end(problem.what());
    }
}

void Recording::begin_command(std::string_view command, const cJSON *request)
{
    LineText &line = empty_line();
    try {
        line.add_name("command");
        line.add_text(command);
        add_object(line, "request", request, recorder_.pseudonyms());
        line.add('}');
    } catch (const std::exception &problem) {
        recorder_.end(problem.what());
    }
    recorder_.add_request(line);
}

void Recording::begin_function(const char *function, Texts arguments)
{
    LineText &line = empty_line();
    try {
        line.add_name("function");
        line.add_quoted(function);
        line.add_name("request");
        line.add('{');
        for (const auto &[name, text] : arguments) {
            line.add_name(name);
            add_shown(line, text, recorder_.pseudonyms());
        }
        line.add("}}");
    } catch (const std::exception &problem) {
        recorder_.end(problem.what());
    }
    recorder_.add_request(line);
}

void Recording::end(const cJSON *reply, int32_t result)
{
    LineText &line = empty_line();
    try {
        if (reply != nullptr) {
            add_object(line, "reply", reply, recorder_.pseudonyms());
        }
        line.add_name("result");
        line.add_number(result);
        line.add('}');
    } catch (const std::exception &problem) {
        recorder_.end(problem.what());
    }
    recorder_.add_reply(line);
}

} // namespace agent::record
