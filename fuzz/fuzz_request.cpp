// SPDX-License-Identifier: MIT
// Fuzzes the requests of the agent: a command with any object, on a device that works. An input is
//
//   COMMAND
//   {"Key": "value"}
#include "answers.h"
#include "mutator.h"
#include "request.h"
#include "smart_router_service/processjsonability.h"
#include "workers.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static char version[HG_VERSION_INFO_SIZE];
    info_wersion = version;
    const Request request = parse_request(text_of(data, size));
    if (request.object == nullptr) {
        return 0; // the agent has nothing to pass
    }
    // The bytes after the object decide when workers run.
    run_workers_at_once(!request.rest.empty());
    answers().begin("");
    run_command(request.command, request.object.get());
    run_workers();
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    if (mutator.one_in(8)) {
        return LLVMFuzzerMutate(data, size, room);
    }
    Request request = parse_request(text_of(data, size));
    mutator.change(request);
    if (mutator.one_in(16)) {
        request.rest = request.rest.empty() ? "!" : "";
    }
    return write_out(print_request(request), data, size, room);
}
