// SPDX-License-Identifier: MIT
#include "host/workers.h"

#include "io/exit_status.h"
#include "io/text.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace agent {

namespace {

// A worker holds a mutex of the plug-in from before its command's reply until it ends.
struct Worker {
    const char *name;
    const char *mutex;
    const char *waiting;
};

constexpr Worker kWorkers[] = {
    {"wifi-batch", "setwifilistlock", "waiting for the Wi-Fi settings to be applied"},
    {"firmware", "downimagelock", "waiting for the firmware to be installed"},
};

pthread_mutex_t *mutex_of(const Worker &worker, const PluginHost &host)
{
    return static_cast<pthread_mutex_t *>(host.symbol(worker.mutex));
}

// There is no wait for a mutex together with signals, so the mutex is polled.
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
    pthread_mutex_t *mutex = mutex_of(worker, host);
    if (mutex == nullptr || !is_held(mutex)) { // another plug-in may have no such worker
        return;
    }
    print_notice(worker.waiting);
    while (stop.arrived() == 0 && is_held(mutex)) {
        stop.wait(kPause);
    }
}

int status_of(const std::function<int()> &work)
{
    try {
        return work();
    } catch (const StreamError &problem) {
        print_error(problem.what()); // started work must not be interrupted by this
        return kCannotWrite;
    } catch (const std::bad_alloc &) { // nor by this
        print_out_of_memory();
        return kOutOfMemory;
    }
}

// Cancels the simulated gateway's downloads when a signal arrives: no signal is checked for while a
// command runs. Any other library has to cancel its own.
class TransferGuard {
  public:
    TransferGuard(const PluginHost &host, const StopSignals &stop)
        : end_transfers_(reinterpret_cast<decltype(&simulated_gateway_end_transfers)>(
              host.device_symbol("simulated_gateway_end_transfers")))
    {
        if (end_transfers_ == nullptr) {
            return;
        }
        ended_ = eventfd(0, EFD_CLOEXEC);
        if (ended_ < 0) {
            throw StreamError("cannot wait for signals: " + std::generic_category().message(errno));
        }
        try {
            thread_ = std::thread([this, &stop] { run(stop); });
        } catch (const std::system_error &problem) {
            close(ended_);
            throw StreamError(std::string("cannot wait for signals: ") + problem.what());
        }
    }
    ~TransferGuard()
    {
        if (thread_.joinable()) {
            while (eventfd_write(ended_, 1) != 0) { // or the thread would wait forever
            }
            thread_.join();
            close(ended_);
        }
    }
    TransferGuard(const TransferGuard &) = delete;
    TransferGuard &operator=(const TransferGuard &) = delete;

  private:
    void run(const StopSignals &stop) const
    {
        try {
            if (!stop.wait_for(ended_, POLLIN)) {
                end_transfers_();
            }
        } catch (const StreamError &problem) { // only the wait for the download remains
            print_error(problem.what());
        }
    }

    decltype(&simulated_gateway_end_transfers) end_transfers_;
    int ended_ = -1;
    std::thread thread_;
};

} // namespace

WorkerWatch::WorkerWatch(const PluginHost &host)
{
    static_assert(std::tuple_size_v<decltype(workers_)> == std::size(kWorkers));
    for (size_t at = 0; at < workers_.size(); ++at) {
        workers_[at] = {kWorkers[at].name, mutex_of(kWorkers[at], host)};
    }
}

void WorkerWatch::poll(const Changed &changed)
{
    for (Watched &worker : workers_) {
        const bool is_running = worker.mutex != nullptr && is_held(worker.mutex);
        if (std::exchange(worker.is_running, is_running) != is_running) {
            changed(worker.name, is_running);
        }
    }
}

bool WorkerWatch::any_running() const
{
    return std::ranges::any_of(workers_, &Watched::is_running);
}

int until_workers_end(const PluginHost &host, const StopSignals &stop,
                      const std::function<int()> &work)
{
    const int status = status_of([&] {
        const TransferGuard guard(host, stop);
        return work();
    });
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
        pthread_mutex_t *mutex = mutex_of(worker, host);
        while (mutex != nullptr && is_held(mutex)) {
            std::this_thread::sleep_for(kPause);
        }
    }
}

bool has_other_threads()
{
    // The directory has a subdirectory for each thread, and each subdirectory adds a link.
    constexpr nlink_t links_of_one_thread = 3;
    struct stat threads = {};
    return stat("/proc/self/task", &threads) != 0 || threads.st_nlink != links_of_one_thread;
}

} // namespace agent
