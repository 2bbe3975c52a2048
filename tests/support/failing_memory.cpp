// SPDX-License-Identifier: MIT
#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>
#include <mutex>
#include <unordered_set>

namespace {

std::mutex mutex; // a worker may free what a command has allocated
bool alive;
bool stopped;
size_t count;
size_t first_failure;
FailingMemory::Fail how;
std::unordered_set<void *> live;

void *allocate(size_t size)
{
    return FailingMemory::next_fails() ? nullptr : FailingMemory::granted(size);
}

void release(void *block)
{
    FailingMemory::freed(block);
    free(block);
}

} // namespace

void *FailingMemory::granted(size_t size)
{
    // Not malloc() or calloc(), which a program may count separately.
    void *memory = nullptr;
    return posix_memalign(&memory, alignof(std::max_align_t), size) == 0 ? allocated(memory)
                                                                         : nullptr;
}

void *FailingMemory::allocated(void *block)
{
    const std::lock_guard lock(mutex);
    if (alive && block != nullptr) {
        live.insert(block);
    }
    return block;
}

void FailingMemory::freed(void *block)
{
    const std::lock_guard lock(mutex);
    live.erase(block);
}

bool FailingMemory::next_fails()
{
    const std::lock_guard lock(mutex);
    if (!alive || stopped) {
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
    stopped = false;
    alive = true;
    cJSON_Hooks hooks = {allocate, release};
    cJSON_InitHooks(&hooks);
}

FailingMemory::~FailingMemory()
{
    cJSON_InitHooks(nullptr);
    const std::lock_guard lock(mutex);
    alive = false;
    live.clear();
}

bool FailingMemory::has_failed() const
{
    return count > first_failure;
}

size_t FailingMemory::allocations() const
{
    const std::lock_guard lock(mutex);
    return count;
}

void FailingMemory::stop_failing()
{
    const std::lock_guard lock(mutex);
    stopped = true;
}

size_t FailingMemory::blocks() const
{
    const std::lock_guard lock(mutex);
    return live.size();
}
