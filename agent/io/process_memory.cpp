// SPDX-License-Identifier: MIT
// Memory of the executable. The operators replace the standard library's in the whole process.
//
// Memory is wiped before it is freed. Requests, replies and the simulated gateway's home contain
// passwords, and they are copied in many places, also inside the standard library and the parsers;
// all of them are freed here.
#include "io/process_memory.h"

#include <algorithm>
#include <cjson/cJSON.h>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <malloc.h>
#include <mutex>
#include <new>
#include <openssl/crypto.h>

namespace {

// The reserve that operator new uses when malloc() fails, so that running work can be finished: a
// command, and saving the state. Some code cannot handle a failure: destructors of nlohmann::json
// allocate, and a failure there would end the process. serve starts nothing new meanwhile. A part
// is kept for use during the propagation of an exception. The reserve takes no memory until it is
// used.
#ifdef __SANITIZE_ADDRESS__
// Not used: the sanitizer's malloc() ends the process instead of failing. Its leak check reads all
// static data.
constexpr size_t kReserve = 64UL * 1024;
#else
constexpr size_t kReserve = 16UL * 1024 * 1024;
#endif
constexpr size_t kForExceptions = kReserve / 4;

alignas(std::max_align_t) char reserve[kReserve];
std::mutex reserve_lock;
size_t used = 0;
size_t blocks = 0;

void *take_reserve(size_t size)
{
    const size_t room = std::uncaught_exceptions() > 0 ? kReserve : kReserve - kForExceptions;
    const std::lock_guard lock(reserve_lock);
    if (size > room || used > room - size) {
        return nullptr;
    }
    void *block = reserve + used;
    used += (size + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) *
            alignof(std::max_align_t);
    used = std::min(used, kReserve);
    ++blocks;
    return block;
}

bool is_of_reserve(const void *memory)
{
    return std::less_equal<>()(reserve, memory) && std::less<>()(memory, reserve + kReserve);
}

// The reserve is available again once all of it has been freed.
void give_back_reserve()
{
    const std::lock_guard lock(reserve_lock);
    if (--blocks == 0) {
        explicit_bzero(reserve, used);
        used = 0;
    }
}

void wipe_and_free(void *memory)
{
    if (memory != nullptr) {
        explicit_bzero(memory, malloc_usable_size(memory));
        free(memory);
    }
}

void *allocate(size_t size)
{
    void *memory = malloc(size > 0 ? size : 1);
    return memory != nullptr ? memory : take_reserve(size);
}

void release(void *memory)
{
    if (is_of_reserve(memory)) {
        give_back_reserve();
    } else {
        wipe_and_free(memory);
    }
}

// OpenSSL 3.0 uses locks even if their allocation failed, so it may use the reserve as well.
void *allocate_for_openssl(size_t size, const char *, int)
{
    return allocate(size);
}

void release_of_openssl(void *memory, const char *, int)
{
    release(memory);
}

void *reallocate_for_openssl(void *memory, size_t size, const char *, int)
{
    if (size == 0) {
        release(memory);
        return nullptr;
    }
    void *moved = allocate(size);
    if (moved != nullptr && memory != nullptr) {
        // The size of a block in the reserve is unknown; copying beyond it within the reserve is
        // harmless.
        const size_t known =
            is_of_reserve(memory)
                ? static_cast<size_t>(reserve + kReserve - static_cast<char *>(memory))
                : malloc_usable_size(memory);
        memmove(moved, memory, std::min(known, size));
        release(memory);
    }
    return moved;
}

} // namespace

namespace agent {

void set_up_memory()
{
    CRYPTO_set_mem_functions(allocate_for_openssl, reallocate_for_openssl, release_of_openssl);
    cJSON_Hooks hooks = {malloc, wipe_and_free};
    cJSON_InitHooks(&hooks);
}

} // namespace agent

void *operator new(size_t size)
{
    void *memory = allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void *operator new[](size_t size)
{
    return operator new(size);
}

void *operator new(size_t size, const std::nothrow_t &) noexcept
{
    return allocate(size);
}

void *operator new[](size_t size, const std::nothrow_t &) noexcept
{
    return allocate(size);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    release(memory);
}

void operator delete[](void *memory, const std::nothrow_t &) noexcept
{
    release(memory);
}

void operator delete(void *memory) noexcept
{
    release(memory);
}

void operator delete[](void *memory) noexcept
{
    release(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    release(memory);
}

void operator delete[](void *memory, size_t) noexcept
{
    release(memory);
}
