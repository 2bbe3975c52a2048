// SPDX-License-Identifier: MIT
#include "worker_control.h"

#include "failing_memory.h"
#include "recording_device.h"
#include "smart_router_service/processjsonability.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace {

std::mutex mutex;
std::condition_variable changed;
std::vector<WorkerControl::Sleep> begun;
size_t ended;
bool held;
size_t started;
size_t finished;
size_t waiting;
std::atomic<bool> worker_fails;
std::atomic<bool> calloc_fails;
std::atomic<bool> everything_counts;

// The locks that a worker holds while it runs.
pthread_mutex_t *const kLocks[] = {&setwifilistlock, &downimagelock};

// A worker releases a lock that its starter took, so the thread sanitizer does not see that the
// lock orders one worker before the next. These annotations report it.
void order_begins([[maybe_unused]] pthread_mutex_t *lock)
{
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(lock);
#endif
}

void order_ends([[maybe_unused]] pthread_mutex_t *lock)
{
#ifdef __SANITIZE_THREAD__
    __tsan_release(lock);
#endif
}

// A thread to start and its entry function; the end of each is counted.
struct Thread {
    void *(*start)(void *);
    void *argument;
};

void *run_to_its_end(void *thread)
{
    const std::unique_ptr<Thread> own(static_cast<Thread *>(thread));
    void *result = own->start(own->argument);
    const std::lock_guard lock(mutex);
    ++finished;
    changed.notify_all();
    return result;
}

bool is_detached()
{
    pthread_attr_t attributes;
    int state = PTHREAD_CREATE_JOINABLE;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getdetachstate(&attributes, &state);
        pthread_attr_destroy(&attributes);
    }
    return state == PTHREAD_CREATE_DETACHED;
}

} // namespace

extern "C" {

int __real_pthread_create(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
int __real_pthread_mutex_lock(pthread_mutex_t *);
int __real_pthread_mutex_trylock(pthread_mutex_t *);
int __real_pthread_mutex_unlock(pthread_mutex_t *);
int __real_sigaction(int, const struct sigaction *, struct sigaction *);
void *__real_malloc(size_t);
void *__real_calloc(size_t, size_t);
void __real_free(void *);

unsigned __wrap_sleep(unsigned seconds)
{
    // Recorded among the device's calls, so that their order is visible.
    recording_device::write_down("sleep", {std::to_string(seconds)});
    const bool detached = is_detached();
    std::unique_lock lock(mutex);
    begun.push_back({seconds, detached});
    const size_t number = begun.size();
    changed.notify_all();
    changed.wait(lock, [&] { return !held || ended >= number; });
    return 0;
}

int __wrap_pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                          void *(*start)(void *), void *argument)
{
    if (worker_fails.exchange(false) || (everything_counts && FailingMemory::next_fails())) {
        return EAGAIN;
    }
    {
        const std::lock_guard lock(mutex);
        ++started;
    }
    return __real_pthread_create(thread, attributes, run_to_its_end, new Thread{start, argument});
}

int __wrap_pthread_mutex_lock(pthread_mutex_t *which)
{
    if (which == &downimagelock) {
        ADD_FAILURE() << "a thread waits for the lock of the downloads";
        return pthread_mutex_trylock(which);
    }
    if (which != &setwifilistlock) {
        return __real_pthread_mutex_lock(which);
    }
    if (pthread_mutex_trylock(which) != 0) {
        {
            const std::lock_guard lock(mutex);
            ++waiting;
        }
        changed.notify_all();
        __real_pthread_mutex_lock(which);
        order_begins(which);
        const std::lock_guard lock(mutex);
        --waiting;
    }
    return 0;
}

int __wrap_pthread_mutex_trylock(pthread_mutex_t *which)
{
    const int result = __real_pthread_mutex_trylock(which);
    if (result == 0) {
        order_begins(which);
    }
    return result;
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t *which)
{
    order_ends(which);
    return __real_pthread_mutex_unlock(which);
}

// The handling of ended children is not changed in this process, whose tests run children.
int __wrap_sigaction(int signal, const struct sigaction *action, struct sigaction *former)
{
    if (signal != SIGCHLD || action == nullptr) {
        return __real_sigaction(signal, action, former);
    }
    char flags[16];
    snprintf(flags, sizeof flags, "%#x", static_cast<unsigned>(action->sa_flags));
    recording_device::write_down(
        "sigaction", {"SIGCHLD", action->sa_handler == SIG_IGN ? "SIG_IGN" : "another handler",
                      flags, sigisemptyset(&action->sa_mask) != 0 ? "no mask" : "a mask"});
    return 0;
}

void *__wrap_malloc(size_t size)
{
    return FailingMemory::next_fails() ? nullptr : FailingMemory::allocated(__real_malloc(size));
}

void *__wrap_calloc(size_t count, size_t size)
{
    if (calloc_fails.exchange(false) || (everything_counts && FailingMemory::next_fails())) {
        return nullptr;
    }
    return FailingMemory::allocated(__real_calloc(count, size));
}

void __wrap_free(void *block)
{
    FailingMemory::freed(block);
    __real_free(block);
}
}

WorkerControl::WorkerControl()
{
    const std::lock_guard lock(mutex);
    begun.clear();
    ended = 0;
    held = false;
    started = 0;
    finished = 0;
    worker_fails = false;
    calloc_fails = false;
    everything_counts = false;
}

WorkerControl::~WorkerControl()
{
    end_all_sleeps();
    wait_until_idle();
}

std::vector<WorkerControl::Sleep> WorkerControl::sleeps() const
{
    const std::lock_guard lock(mutex);
    return begun;
}

size_t WorkerControl::workers() const
{
    const std::lock_guard lock(mutex);
    return started;
}

void WorkerControl::hold_sleeps()
{
    const std::lock_guard lock(mutex);
    held = true;
    ended = begun.size();
}

void WorkerControl::wait_for_sleep(size_t number) const
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return begun.size() >= number; });
}

void WorkerControl::end_sleep()
{
    const std::lock_guard lock(mutex);
    ++ended;
    changed.notify_all();
}

void WorkerControl::end_all_sleeps()
{
    const std::lock_guard lock(mutex);
    held = false;
    changed.notify_all();
}

void WorkerControl::wait_for_waiting_batch() const
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [] { return waiting > 0; });
}

void WorkerControl::wait_until_idle() const
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [] { return finished == started; });
}

bool WorkerControl::is_idle() const
{
    for (pthread_mutex_t *lock : kLocks) {
        if (pthread_mutex_trylock(lock) != 0) {
            return false;
        }
        pthread_mutex_unlock(lock);
    }
    return true;
}

void WorkerControl::fail_next_worker()
{
    worker_fails = true;
}

void WorkerControl::fail_next_calloc()
{
    calloc_fails = true;
}

void WorkerControl::count_everything()
{
    everything_counts = true;
}
