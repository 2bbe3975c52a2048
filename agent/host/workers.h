// SPDX-License-Identifier: MIT
// Threads of the plug-in that continue after the command that started them has replied.
#pragma once

#include "host/plugin_host.h"
#include "io/streams.h"

#include <array>
#include <functional>
#include <pthread.h>

namespace agent {

// Notices when a worker starts and when it ends. Only for the thread that runs the commands.
class WorkerWatch {
  public:
    explicit WorkerWatch(const PluginHost &host);

    // Calls changed for each worker that has started or ended since the last call. One that did
    // both in between is not noticed.
    using Changed = std::function<void(const char *worker, bool is_running)>;
    void poll(const Changed &changed);
    bool any_running() const;

  private:
    struct Watched {
        const char *name;
        pthread_mutex_t *mutex; // null: this plug-in lacks the worker
        bool is_running = false;
    };
    std::array<Watched, 2> workers_;
};

// Does the work, which may start workers, and then waits until no worker is running or a signal
// arrives. Result: the exit status of the work or of the signal.
int until_workers_end(const PluginHost &host, const StopSignals &stop,
                      const std::function<int()> &work);

// Waits until no worker is running, regardless of signals.
void await_workers(const PluginHost &host);

// Whether any thread but the caller's exists: a worker that was not waited for, or one that is
// about to end.
bool has_other_threads();

} // namespace agent
