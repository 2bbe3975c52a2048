// SPDX-License-Identifier: MIT
#include "memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>

namespace {

size_t until_failure;
bool failure_lasts;

void *allocate(size_t size)
{
    if (until_failure == 0) {
        if (!failure_lasts) {
            until_failure = static_cast<size_t>(-1);
        }
        return nullptr;
    }
    --until_failure;
    return malloc(size);
}

} // namespace

fuzz::FailingMemory::FailingMemory(size_t allocation, bool lasts)
{
    until_failure = allocation;
    failure_lasts = lasts;
    cJSON_Hooks hooks = {allocate, free};
    cJSON_InitHooks(&hooks);
}

fuzz::FailingMemory::~FailingMemory()
{
    cJSON_InitHooks(nullptr);
}
