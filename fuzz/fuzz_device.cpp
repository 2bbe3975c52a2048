// SPDX-License-Identifier: MIT
// Fuzzes the results and output of the device. An input is a request, followed by the bytes that
// steer the device (device_answer.cpp). Without an object, the request has that of the command's
// example.
//
//   COMMAND
//   {"Key": "value"}
//   bytes
//
// Functions that the agent calls directly can be named instead of a command. The name may be
// followed by a space and the number of the allocation that fails, with a "+" if all later ones
// fail as well.
#include "agent_calls.h"
#include "answers.h"
#include "memory.h"
#include "mutator.h"
#include "protocol_words.h"
#include "request.h"
#include "smart_router_service/processjsonability.h"
#include "workers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

using namespace fuzz;

namespace {

// Removes what follows the name.
std::string split_failure(std::string &command)
{
    const size_t end = std::min(command.find(' '), command.size());
    const std::string failure = command.substr(std::min(end + 1, command.size()));
    command.resize(end);
    return failure;
}

void give_example(Request &request)
{
    const CommandWords *words = find_command(request.command);
    request.object.reset(words != nullptr ? cJSON_Parse(words->request.c_str())
                                          : cJSON_CreateObject());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static char version[HG_VERSION_INFO_SIZE];
    info_wersion = version;
    Request request = parse_request(text_of(data, size));
    const std::string failure = split_failure(request.command);
    if (request.object == nullptr) {
        give_example(request);
    }
    run_workers_at_once(size % 2 == 0);
    answers().begin(request.rest);
    {
        std::optional<FailingMemory> memory;
        if (!failure.empty()) {
            memory.emplace(strtoul(failure.c_str(), nullptr, 10), failure.ends_with('+'));
        }
        if (!call_of_the_agent(request.command, request.object.get())) {
            hg_process_json_cmd(request.command.c_str(), request.object.get());
        }
    }
    check_reply(request.command, request.object.get());
    run_workers();
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    Request request = parse_request(text_of(data, size));
    const std::string_view steering = request.rest;
    std::string failure = split_failure(request.command);
    if (mutator.one_in(8)) {
        if (request.object == nullptr) {
            give_example(request);
        }
        mutator.change(request);
    } else if (mutator.one_in(16)) {
        request = mutator.another_request();
        request.object = nullptr;
    }
    if (mutator.one_in(8)) {
        failure = std::to_string(mutator.below(mutator.one_in(2) ? 16 : 400));
        failure += mutator.one_in(2) ? "+" : "";
    } else if (mutator.one_in(8)) {
        failure = "";
    }
    request.command += failure.empty() ? "" : ' ' + failure;
    std::string changed;
    if (!mutator.one_in(8)) {
        changed = mutator.changed_bytes(steering, std::min(room, steering.size() + 64));
        request.rest = changed;
    } else {
        request.rest = steering;
    }
    return write_out(print_request(request), data, size, room);
}
