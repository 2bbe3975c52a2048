// Threads of the plug-in that go on after the command that started them has replied.
#pragma once

#include "host/plugin_host.h"
#include "io/streams.h"

#include <functional>

namespace agent {

// Does the work, which may start workers, and then waits until none is at work any more, or a
// signal arrives. Result: the exit status: that of the work, or that of the signal.
int until_workers_end(const PluginHost &host, const StopSignals &stop,
                      const std::function<int()> &work);

// Waits until no worker is at work any more, whatever signals arrive.
void await_workers(const PluginHost &host);

// Whether any thread but the caller's is left: a worker that was not waited for, or one that has
// done its work and is about to end.
bool has_other_threads();

} // namespace agent
