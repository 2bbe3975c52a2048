#include "memory_sweep.h"

#include "handler_test.h"

size_t sweep_memory(const std::string &command, const std::string &request,
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
                EXPECT_EQ(hg_process_json_cmd(command.c_str(), object.get()), 0);
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
