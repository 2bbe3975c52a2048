// What the executable frees is wiped first. Requests, replies and the simulated gateway's home hold
// passwords, and copies of them are made all along the way, also inside the standard library and
// the parsers; here is the one place that all of them pass. The operators take the place of the
// standard library's for everything in the process.
#include "wiped_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <new>

namespace {

void wipe_and_free(void *memory)
{
    if (memory != nullptr) {
        explicit_bzero(memory, malloc_usable_size(memory));
        free(memory);
    }
}

} // namespace

namespace agent {

void wipe_json()
{
    cJSON_Hooks hooks = {malloc, wipe_and_free};
    cJSON_InitHooks(&hooks);
}

} // namespace agent

void *operator new(size_t size)
{
    for (;;) {
        void *memory = malloc(size > 0 ? size : 1);
        if (memory != nullptr) {
            return memory;
        }
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) {
            throw std::bad_alloc();
        }
        handler();
    }
}

void *operator new[](size_t size)
{
    return operator new(size);
}

void operator delete(void *memory) noexcept
{
    wipe_and_free(memory);
}

void operator delete[](void *memory) noexcept
{
    wipe_and_free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    wipe_and_free(memory);
}

void operator delete[](void *memory, size_t) noexcept
{
    wipe_and_free(memory);
}
