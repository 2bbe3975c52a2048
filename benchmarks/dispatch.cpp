// SPDX-License-Identifier: MIT
// Sends each command of the table under callgrind, which writes the cost of finding its handler to
// a separate file. The handlers here do nothing.
#include "commands.h"

#include <cstdio>
#include <valgrind/callgrind.h>

namespace {

int handled = 0;

} // namespace

#define IDLE_HANDLER(name, handler)                                                                \
    int32_t handler(cJSON *)                                                                       \
    {                                                                                              \
        return ++handled;                                                                          \
    }
SMART_ROUTER_COMMANDS(IDLE_HANDLER)

#define NAME(name, handler) name,
static constexpr const char *kNames[] = {SMART_ROUTER_COMMANDS(NAME)};

int main()
{
    for (const char *name : kNames) {
        hg_process_json_cmd(name, nullptr); // so that the functions that it calls are bound
        CALLGRIND_START_INSTRUMENTATION;
        hg_process_json_cmd(name, nullptr);
        CALLGRIND_STOP_INSTRUMENTATION;
        CALLGRIND_DUMP_STATS_AT(name);
        CALLGRIND_ZERO_STATS;
    }
    if (handled != 2 * static_cast<int>(sizeof kNames / sizeof *kNames)) {
        fprintf(stderr, "not every command found a handler\n");
        return 1;
    }
    return 0;
}
