#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>

namespace {

bool alive;
size_t count;
size_t first_failure;
FailingMemory::Fail how;

} // namespace

extern "C" {

void *__real_malloc(size_t size);

void *__wrap_malloc(size_t size)
{
    if (!alive) {
        return __real_malloc(size);
    }
    const size_t number = count++;
    const bool fails =
        how == FailingMemory::Fail::kOnce ? number == first_failure : number >= first_failure;
    return fails ? nullptr : __real_malloc(size);
}
}

FailingMemory::FailingMemory(size_t first, Fail fail)
{
    count = 0;
    first_failure = first;
    how = fail;
    alive = true;
    cJSON_Hooks hooks = {__wrap_malloc, free};
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
