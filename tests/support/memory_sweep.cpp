// SPDX-License-Identifier: MIT
#include "memory_sweep.h"

#include "handler_test.h"

size_t sweep_memory(const std::function<void(cJSON *)> &act, const std::string &request,
                    const std::function<void()> &prepare, const AfterFailure &check,
                    const std::function<void()> &finish)
{
    size_t allocations[2] = {};
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0;; ++first) {
            SCOPED_TRACE("allocation " + std::to_string(first) +
                         (how == FailingMemory::Fail::kOnce ? ", once" : ", lastingly"));
            recording_device::reset();
            recording_host::reset();
            prepare();
            const Json object = parse(request);
            bool failed;
            {
                const FailingMemory memory(first, how);
                act(object.get());
                failed = memory.has_failed();
            }
            finish();
            if (!failed) {
                allocations[how == FailingMemory::Fail::kLastingly] = first;
                break;
            }
            check(print(object.get()), how);
        }
    }
    EXPECT_EQ(allocations[0], allocations[1]);
    return allocations[0];
}

size_t sweep_memory(const std::string &command, const std::string &request,
                    const std::function<void()> &prepare, const AfterFailure &check,
                    const std::function<void()> &finish)
{
    return sweep_memory(
        [&](cJSON *object) { EXPECT_EQ(hg_process_json_cmd(command.c_str(), object), 0); }, request,
        prepare, check, finish);
}
