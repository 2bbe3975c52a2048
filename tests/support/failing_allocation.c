/* SPDX-License-Identifier: MIT */
/* Preloaded before the C library, so that one allocation of the process fails, or all from one on:
 *
 *   FAILING_ALLOCATION=17    the one with this number, counted from 0
 *   FAILING_ALLOCATION=17-   that one and all after it
 *   ALLOCATION_STACKS=FILE   writes a hash of the call stack of each to the file when the process
 * ends, one a line
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* For the loader's allocations while it looks up the functions that these replace. */
static char early[4096];
static size_t early_used;

static void *(*next_malloc)(size_t);
static void *(*next_calloc)(size_t, size_t);
static void *(*next_realloc)(void *, size_t);
static void (*next_free)(void *);
static atomic_long count;
static long first = -1;
static int lasting;

/* The hashes; further allocations have none. */
#define MOST_STACKS 1000000
static uint64_t stacks[MOST_STACKS];
static const char *stacks_file;
static _Thread_local int in_backtrace;

/* FNV-1a of the return addresses. The plug-in has no unwind tables: the stack ends at its innermost
 * function. */
static void note_stack(long number)
{
    void *frames[128];
    if (number >= MOST_STACKS || in_backtrace) {
        return;
    }
    in_backtrace = 1; /* the first call allocates */
    const int depth = backtrace(frames, (int)(sizeof(frames) / sizeof(frames[0])));
    in_backtrace = 0;
    uint64_t hash = 14695981039346656037U;
    for (int frame = 0; frame < depth; ++frame) {
        hash = (hash ^ (uintptr_t)frames[frame]) * 1099511628211U;
    }
    stacks[number] = hash;
}

static void write_stacks(void)
{
    FILE *file = fopen(stacks_file, "we");
    if (file == NULL) {
        abort();
    }
    stacks_file = NULL;
    const long last = count < MOST_STACKS ? count : MOST_STACKS;
    for (long number = 0; number < last; ++number) {
        fprintf(file, "%016jx\n", (uintmax_t)stacks[number]);
    }
    if (fclose(file) != 0) {
        abort();
    }
}

/* The allocations of the loader before this are not counted. */
__attribute__((constructor)) static void begin(void)
{
    *(void **)&next_calloc = dlsym(RTLD_NEXT, "calloc");
    *(void **)&next_malloc = dlsym(RTLD_NEXT, "malloc");
    *(void **)&next_realloc = dlsym(RTLD_NEXT, "realloc");
    *(void **)&next_free = dlsym(RTLD_NEXT, "free");
    stacks_file = getenv("ALLOCATION_STACKS");
    if (stacks_file != NULL) {
        atexit(write_stacks);
    }
    count = 0;
    const char *number = getenv("FAILING_ALLOCATION");
    if (number != NULL) {
        char *end = NULL;
        first = strtol(number, &end, 10);
        lasting = *end == '-';
    }
}

static int fails(void)
{
    const long number = atomic_fetch_add(&count, 1);
    if (stacks_file != NULL) {
        note_stack(number);
    }
    const int failing = first >= 0 && (number == first || (lasting && number > first));
    if (failing) {
        errno = ENOMEM;
    }
    return failing;
}

static int is_early(const void *memory)
{
    return (const char *)memory >= early && (const char *)memory < early + sizeof(early);
}

static void *allocate_early(size_t size)
{
    void *memory = early + early_used;
    early_used += (size + 15) & ~(size_t)15;
    if (early_used > sizeof(early)) {
        abort();
    }
    return memory;
}

static void find_next(void)
{
    if (next_malloc == NULL) {
        *(void **)&next_malloc = dlsym(RTLD_NEXT, "malloc");
    }
}

void *malloc(size_t size)
{
    find_next();
    return fails() ? NULL : next_malloc(size);
}

void *calloc(size_t many, size_t size)
{
    if (next_calloc == NULL) {
        return allocate_early(many * size);
    }
    return fails() ? NULL : next_calloc(many, size);
}

void *realloc(void *memory, size_t size)
{
    if (next_realloc == NULL) {
        *(void **)&next_realloc = dlsym(RTLD_NEXT, "realloc");
    }
    return fails() ? NULL : next_realloc(memory, size);
}

void free(void *memory)
{
    if (memory == NULL || is_early(memory)) {
        return;
    }
    if (next_free == NULL) {
        *(void **)&next_free = dlsym(RTLD_NEXT, "free");
    }
    next_free(memory);
}
