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
    // Not malloc(), which a program may have counted by itself.
    return FailingMemory::next_fails() ? nullptr : calloc(1, size);
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
