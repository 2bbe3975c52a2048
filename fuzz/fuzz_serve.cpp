// SPDX-License-Identifier: MIT
// Fuzzes the input of hgagent serve: all of run_serve(), with the input as its standard input. The
// first line may begin with "@"; the rest of that line steers the device (device_answer.cpp).
//
//   @bytes
//   {"id":1,"command":"COMMAND","params":{"Key":"value"}}
//   {"id":2,"notice":{"plugin_name":"NAME","text":"TEXT"}}
//
// Each line has to get one reply, in order, and each reply has to be JSON. The agent loads its
// libraries as usual, but finds both of them in this program: the plug-in, and the steered device.
// It logs everything, to a standard error that tools/fuzz.sh has libFuzzer discard.
#include "answers.h"
#include "commands/serve.h"
#include "files.h"
#include "give_up.h"
#include "io/exit_status.h"
#include "lines.h"
#include "protocol/log_sink.h"
#include "request.h"
#include "workers.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <dlfcn.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

using namespace fuzz;

namespace {

constexpr char kThisProgram[] = "/proc/self/exe";

// Short, so that many lines are longer.
constexpr size_t kMaxLine = 2048;

const MemoryFile &input_file()
{
    static const MemoryFile file("input");
    return file;
}

const MemoryFile &output_file()
{
    static const MemoryFile file("output");
    return file;
}

// Removes the bytes that steer the device and returns them; they may be empty.
std::string_view split_steering(std::string_view &input)
{
    if (!input.starts_with('@')) {
        return {};
    }
    const size_t end = std::min(input.find('\n'), input.size());
    const std::string_view steering = input.substr(1, end - 1);
    input.remove_prefix(std::min(end + 1, input.size()));
    return steering;
}

bool is_answer(const nlohmann::json &line)
{
    return line.contains("id") && (line.contains("result") || line.contains("error"));
}

void check_output(std::string_view input, const std::string &output)
{
    if (!output.empty() && !output.ends_with('\n')) {
        give_up("half a line", output);
    }
    size_t answers = 0;
    for (size_t begin = 0; begin < output.size();) {
        const size_t end = output.find('\n', begin);
        const std::string_view line(&output[begin], end - begin);
        const auto json = nlohmann::json::parse(line, nullptr, false);
        if (!json.is_object()) {
            give_up("not JSON", line);
        }
        if (is_answer(json)) {
            ++answers;
        } else if (json.size() != 1 || (!json.contains("notice") && !json.contains("progress"))) {
            give_up("neither an answer nor an event", line);
        }
        begin = end + 1;
    }
    const auto lines = static_cast<size_t>(std::count(input.begin(), input.end(), '\n')) +
                       (input.empty() || input.ends_with('\n') ? 0 : 1);
    if (answers != lines) {
        give_up(std::to_string(answers) + " answers to " + std::to_string(lines) + " lines",
                output);
    }
}

// The parts of a line; without a command when it is not a call.
Request request_of(const std::string &line)
{
    Request request;
    const Json call(cJSON_Parse(line.c_str()));
    const char *command = cJSON_GetStringValue(cJSON_GetObjectItem(call.get(), "command"));
    request.command = command != nullptr ? command : "";
    const cJSON *params = cJSON_GetObjectItem(call.get(), "params");
    request.object.reset(params != nullptr ? cJSON_Duplicate(params, 1) : nullptr);
    return request;
}

std::string line_of(const Request &request, Mutator &mutator)
{
    const Json call(cJSON_CreateObject());
    cJSON_AddNumberToObject(call.get(), "id", static_cast<double>(mutator.below(100)));
    cJSON_AddStringToObject(call.get(), "command", request.command.c_str());
    cJSON_AddItemToObject(call.get(), "params", cJSON_Duplicate(request.object.get(), 1));
    return print(call.get());
}

void change_steering(std::vector<std::string> &lines, Mutator &mutator)
{
    if (!lines[0].starts_with('@')) {
        lines.insert(lines.begin(), "@");
    }
    const std::string changed = mutator.changed_bytes(lines[0].substr(1), lines[0].size() + 16);
    lines[0] = '@' + changed;
    std::erase(lines[0], '\n');
}

} // namespace

extern "C" void *__real_dlopen(const char *path, int flags);

extern "C" void *__wrap_dlopen(const char *path, int flags)
{
    const bool is_this = path != nullptr && strcmp(path, kThisProgram) == 0;
    return __real_dlopen(is_this ? nullptr : path, flags);
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    keep_error_output();
    dup2(input_file().descriptor(), STDIN_FILENO);
    agent::set_log({7, false});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::string_view input = fuzz::text_of(data, size);
    answers().begin(split_steering(input));
    // Workers must not wait for the end of the input, since serve waits for them before that.
    run_workers_at_once(true);
    input_file().put(input);
    output_file().put("");
    dup2(output_file().descriptor(), STDOUT_FILENO);

    agent::Options options;
    options.host.device = options.host.plugin = kThisProgram;
    options.serve.max_line = kMaxLine;
    const int status = agent::run_serve(options);
    if (status != agent::kSuccess) {
        give_up("exit status " + std::to_string(status));
    }
    check_output(input, output_file().content());

    // Signals that end the fuzzer are delivered between inputs.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    std::vector<std::string> lines = lines_of(fuzz::text_of(data, size));
    if (mutator.one_in(3)) { // mostly no longer JSON
        return LLVMFuzzerMutate(data, size, room);
    }
    if (lines.empty()) {
        lines.push_back(line_of(mutator.another_request(), mutator));
    }
    const size_t at = mutator.below(lines.size());
    switch (mutator.below(8)) {
    case 0:
        lines.push_back(line_of(mutator.another_request(), mutator));
        break;
    case 1:
        change_order(lines, mutator);
        break;
    case 2:
        change_steering(lines, mutator);
        break;
    case 3: // the bytes of a line
        lines[at] = mutator.changed_bytes(lines[at], lines[at].size() + 64);
        break;
    default: {
        Request request = request_of(lines[at]);
        mutator.change(request);
        lines[at] = line_of(request, mutator);
        break;
    }
    }
    return write_out(fuzz::text_of(lines), data, size, room);
}
