// SPDX-License-Identifier: MIT
// In a program that links this, calloc() counts among the allocations that FailingMemory makes
// fail.
#include "failing_memory.h"

extern "C" {

void *__real_calloc(size_t number, size_t size);

void *__wrap_calloc(size_t number, size_t size)
{
    return FailingMemory::next_fails() ? nullptr : __real_calloc(number, size);
}
}
