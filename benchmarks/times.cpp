// SPDX-License-Identifier: MIT
// Measures the processor time of the same cases, which depends on this machine and its load.
#include "cases.h"

#include <benchmark/benchmark.h>
#include <ctime>

namespace {

// The number of objects that are created before the clock starts and deleted after it has stopped.
constexpr size_t kBatch = 64;

double processor_seconds()
{
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void time_handler(benchmark::State &state, const Case &measured, Side side)
{
    prepare(measured);
    const std::string request = measured.request(measured.elements);
    const size_t batch = measured.elements > 100 ? 1 : kBatch;
    std::vector<cJSON *> objects(batch);
    while (state.KeepRunningBatch(static_cast<int64_t>(batch))) {
        for (cJSON *&obj : objects) {
            obj = cJSON_Parse(request.c_str());
        }
        const double start = processor_seconds();
        for (cJSON *obj : objects) {
            handle(measured, side, obj);
        }
        state.SetIterationTime(processor_seconds() - start);
        for (cJSON *obj : objects) {
            cJSON_Delete(obj);
        }
    }
}

void time_whole(benchmark::State &state, const Case &measured, Side side)
{
    prepare(measured);
    const std::string request = measured.request(measured.elements);
    for (auto _ : state) {
        cJSON_free(answer(measured, side, request));
    }
}

} // namespace

int main(int argc, char **argv)
{
    for (const Case &measured : cases({10, 100, 1'000, 10'000, 100'000})) {
        for (const Side side : kSides) {
            const std::string name = measured.name() + "|" + name_of(side) + "|";
            const auto with = [&](auto time) {
                return [=](benchmark::State &state) {
                    time(state, measured, side);
                };
            };
            benchmark::RegisterBenchmark((name + "handler").c_str(), with(time_handler))
                ->UseManualTime();
            benchmark::RegisterBenchmark((name + "whole").c_str(), with(time_whole));
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
