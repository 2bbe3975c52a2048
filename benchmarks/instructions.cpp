// SPDX-License-Identifier: MIT
// Runs every case once under callgrind, which writes the cost of each run to a separate file. Lists
// have each of the given sizes. The device's functions are not counted: --toggle-collect=devapi_*
// excludes them.
#include "cases.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <valgrind/callgrind.h>

namespace {

// Runs before the one that is counted: the heap then has the free blocks of earlier runs, as in an
// agent that has been running for a while.
constexpr int kWarmUps = 1;

void count_handler(const Case &measured, Side side, const std::string &request)
{
    for (int run = 0; run <= kWarmUps; ++run) {
        cJSON *obj = cJSON_Parse(request.c_str());
        if (run == kWarmUps) {
            CALLGRIND_START_INSTRUMENTATION;
        }
        handle(measured, side, obj);
        CALLGRIND_STOP_INSTRUMENTATION;
        cJSON_Delete(obj);
    }
}

void count_whole(const Case &measured, Side side, const std::string &request)
{
    for (int run = 0; run <= kWarmUps; ++run) {
        if (run == kWarmUps) {
            CALLGRIND_START_INSTRUMENTATION;
        }
        char *reply = answer(measured, side, request);
        CALLGRIND_STOP_INSTRUMENTATION;
        cJSON_free(reply);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        fprintf(stderr, "usage: %s handler|whole SIZE...\n", argv[0]);
        return 2;
    }
    std::vector<size_t> sizes;
    for (int at = 2; at < argc; ++at) {
        sizes.push_back(strtoul(argv[at], nullptr, 10));
    }
    const auto count = strcmp(argv[1], "whole") == 0 ? count_whole : count_handler;
    for (const Case &measured : cases(sizes)) {
        if (!sides_agree(measured)) {
            fprintf(stderr, "%s: the two sides differ\n", measured.name().c_str());
            return 1;
        }
        const std::string request = measured.request(measured.elements);
        for (const Side side : kSides) {
            count(measured, side, request);
            const std::string label = measured.name() + "|" + name_of(side);
            CALLGRIND_DUMP_STATS_AT(label.c_str());
            CALLGRIND_ZERO_STATS;
        }
    }
    return 0;
}
