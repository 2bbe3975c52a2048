#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>

namespace {

bool alive;
size_t count;
size_t first_failure;
FailingMemory::Fail how;

void *allocate(size_t size)
{
    // Not malloc() or calloc(), which a program may have counted by themselves.
    void *memory = nullptr;
    return !FailingMemory::next_fails() &&
                   posix_memalign(&memory, alignof(std::max_align_t), size) == 0
               ? memory
               : nullptr;
}

} // namespace

bool FailingMemory::next_fails()
{
    if (!alive) {
        return false;
    }
    const size_t number = count++;
    return how == Fail::kOnce ? number == first_failure : number >= first_failure;
}

FailingMemory::FailingMemory(size_t first, Fail fail)
{
    count = 0;
    first_failure = first;
    how = fail;
    alive = true;
    cJSON_Hooks hooks = {allocate, free};
    cJSON_InitHooks(&hooks);
}

FailingMemory::~FailingMemory()
{
    cJSON_InitHooks(nullptr);
    alive = false;
}

bool FailingMemory::has_failed() const
{
    return count > first_failure;
}
