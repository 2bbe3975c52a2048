// SPDX-License-Identifier: MIT
#include "workers.h"

#include "smart_router_service/processjsonability.h"

#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <utility>
#include <vector>

// Not in a header of the plug-in, which alone starts these.
extern "C" void *set_wifi_list_arr_thread(void *records);
extern "C" void *dowing_imageing(void *url);

namespace {

using Entry = void *(*)(void *);

struct Worker {
    Entry entry;
    void *argument;
};

bool at_once;
std::vector<Worker> waiting;
int running;

void run(const Worker &worker)
{
    ++running;
    worker.entry(worker.argument);
    --running;
}

} // namespace

void fuzz::run_workers_at_once(bool now)
{
    at_once = now;
}

void fuzz::run_workers()
{
    for (const Worker &worker : std::exchange(waiting, {})) {
        run(worker);
    }
}

extern "C" {

int __real_pthread_create(pthread_t *, const pthread_attr_t *, Entry, void *);
int __real_pthread_detach(pthread_t);
int __real_pthread_mutex_lock(pthread_mutex_t *);
unsigned __real_sleep(unsigned);

int __wrap_pthread_create(pthread_t *thread, const pthread_attr_t *attributes, Entry entry,
                          void *argument)
{
    if (entry != set_wifi_list_arr_thread && entry != dowing_imageing) {
        return __real_pthread_create(thread, attributes, entry, argument);
    }
    *thread = pthread_self();
    if (at_once) {
        run({entry, argument});
    } else {
        waiting.push_back({entry, argument});
    }
    return 0;
}

int __wrap_pthread_detach(pthread_t thread)
{
    return running > 0 ? 0 : __real_pthread_detach(thread);
}

int __wrap_pthread_mutex_lock(pthread_mutex_t *lock)
{
    if (lock == &setwifilistlock) {
        fuzz::run_workers();
    }
    return __real_pthread_mutex_lock(lock);
}

unsigned __wrap_sleep(unsigned seconds)
{
    return running > 0 ? 0 : __real_sleep(seconds);
}

// No input may restart the machine. The fuzzer itself starts processes with this function, and
// needs that of the C library for it, which the agent replaces.
int __wrap_system(const char *command)
{
    static const auto of_the_library =
        reinterpret_cast<int (*)(const char *)>(dlsym(RTLD_NEXT, "system"));
    return strcmp(command, "sync;reboot") == 0 ? 0 : of_the_library(command);
}

time_t __wrap_time(time_t *now)
{
    constexpr time_t standing = 1767301200;
    if (now != nullptr) {
        *now = standing;
    }
    return standing;
}
}
