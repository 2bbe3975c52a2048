#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>

namespace {

bool alive;
size_t count;
size_t first_failure;
FailingMemory::Fail how;

bool runs_out()
{
    if (!alive) {
        return false;
    }
    const size_t number = count++;
    return how == FailingMemory::Fail::kOnce ? number == first_failure : number >= first_failure;
}

} // namespace

extern "C" {

void *__real_malloc(size_t size);
void *__real_calloc(size_t number, size_t size);

void *__wrap_malloc(size_t size)
{
    return runs_out() ? nullptr : __real_malloc(size);
}

void *__wrap_calloc(size_t number, size_t size)
{
    return runs_out() ? nullptr : __real_calloc(number, size);
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
