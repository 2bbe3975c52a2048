#include "workers.h"

#include "exit_status.h"
#include "text.h"

#include <chrono>
#include <new>
#include <pthread.h>
#include <sys/stat.h>
#include <thread>

namespace agent {

namespace {

// A worker holds a mutex of the plug-in's from before its command's reply to its own end.
struct Worker {
    const char *mutex;
    const char *waiting;
};

constexpr Worker kWorkers[] = {
    {"setwifilistlock", "waiting for the Wi-Fi settings to be applied"},
    {"downimagelock", "waiting for the firmware to be installed"},
};

// A mutex cannot be waited for together with signals: it is tried again and again instead.
constexpr std::chrono::milliseconds kPause(50);

bool is_held(pthread_mutex_t *mutex)
{
    if (pthread_mutex_trylock(mutex) != 0) {
        return true;
    }
    pthread_mutex_unlock(mutex);
    return false;
}

void await(const Worker &worker, const PluginHost &host, const StopSignals &stop)
{
    auto *mutex = static_cast<pthread_mutex_t *>(host.symbol(worker.mutex));
    if (mutex == nullptr || !is_held(mutex)) { // another plug-in may have no such worker
        return;
    }
    complain(worker.waiting);
    while (stop.arrived() == 0 && is_held(mutex)) {
        stop.wait(kPause);
    }
}

int status_of(const std::function<int()> &work)
{
    try {
        return work();
    } catch (const StreamError &problem) {
        complain(problem.what()); // no reason to break off what has been started
        return kCannotWrite;
    } catch (const std::bad_alloc &) { // no more is this
        complain_of_memory();
        return kOutOfMemory;
    }
}

} // namespace

int until_workers_end(const PluginHost &host, const StopSignals &stop,
                      const std::function<int()> &work)
{
    const int status = status_of(work);
    for (const Worker &worker : kWorkers) {
        if (stop.arrived() == 0) {
            await(worker, host, stop);
        }
    }
    return stop.arrived() != 0 ? kSignalled + stop.arrived() : status;
}

void await_workers(const PluginHost &host)
{
    for (const Worker &worker : kWorkers) {
        auto *mutex = static_cast<pthread_mutex_t *>(host.symbol(worker.mutex));
        while (mutex != nullptr && is_held(mutex)) {
            std::this_thread::sleep_for(kPause);
        }
    }
}

bool has_other_threads()
{
    // The folder has a folder for each thread, and so as many links more than it would have alone.
    constexpr nlink_t links_of_one_thread = 3;
    struct stat threads = {};
    return stat("/proc/self/task", &threads) != 0 || threads.st_nlink != links_of_one_thread;
}

} // namespace agent
