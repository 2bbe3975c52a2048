#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>

namespace {

size_t count;
size_t first_failure;
FailingMemory::Fail how;

void *allocate(size_t size)
{
    const size_t number = count++;
    const bool fails =
        how == FailingMemory::Fail::kOnce ? number == first_failure : number >= first_failure;
    return fails ? nullptr : malloc(size);
}

} // namespace

FailingMemory::FailingMemory(size_t first, Fail fail)
{
    count = 0;
    first_failure = first;
    how = fail;
    cJSON_Hooks hooks = {allocate, free};
    cJSON_InitHooks(&hooks);
}

FailingMemory::~FailingMemory()
{
    cJSON_InitHooks(nullptr);
}

bool FailingMemory::has_failed() const
{
    return count > first_failure;
}
