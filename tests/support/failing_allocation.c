/* SPDX-License-Identifier: MIT */
/* Preloaded before the C library, so that one allocation of the process fails, or all from one on:
 *
 *   FAILING_ALLOCATION=17    the one with this number, counted from 0
 *   FAILING_ALLOCATION=17-   that one and all after it
 *   COUNT_ALLOCATIONS=FILE   writes their number to the file when the process ends
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

/* Serves the loader while it looks up the functions that these replace. */
static char early[4096];
static size_t early_used;

static void *(*next_malloc)(size_t);
static void *(*next_calloc)(size_t, size_t);
static void *(*next_realloc)(void *, size_t);
static void (*next_free)(void *);
static atomic_long count;
static long first = -1;
static int lasting;

static void count_at_the_end(void)
{
    const char *file = getenv("COUNT_ALLOCATIONS");
    if (file != NULL) {
        char text[32];
        const int length = snprintf(text, sizeof(text), "%ld\n", (long)count);
        const int to = open(file, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (to < 0 || write(to, text, (size_t)length) != length) {
            abort();
        }
        close(to);
    }
}

/* The allocations of the loader before this are not counted. */
__attribute__((constructor)) static void begin(void)
{
    next_calloc = (void *(*)(size_t, size_t))dlsym(RTLD_NEXT, "calloc");
    next_malloc = (void *(*)(size_t))dlsym(RTLD_NEXT, "malloc");
    next_realloc = (void *(*)(void *, size_t))dlsym(RTLD_NEXT, "realloc");
    next_free = (void (*)(void *))dlsym(RTLD_NEXT, "free");
    atexit(count_at_the_end);
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
        next_malloc = (void *(*)(size_t))dlsym(RTLD_NEXT, "malloc");
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
        next_realloc = (void *(*)(void *, size_t))dlsym(RTLD_NEXT, "realloc");
    }
    return fails() ? NULL : next_realloc(memory, size);
}

void free(void *memory)
{
    if (memory == NULL || is_early(memory)) {
        return;
    }
    if (next_free == NULL) {
        next_free = (void (*)(void *))dlsym(RTLD_NEXT, "free");
    }
    next_free(memory);
}
