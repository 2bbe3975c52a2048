// SPDX-License-Identifier: MIT
// The plug-in's workers, in a process that has to be deterministic and to complete each input
// before the next.
//
// A worker does not get a separate thread: it is run to its end, without its sleeps, by the thread
// that starts it. The input decides when. Either at once: then the worker has already freed what
// the caller may wrongly continue to use. Or later: when a thread waits for the lock that the
// worker holds, otherwise in run_workers() at the end of the input; until then it is running as far
// as other commands can tell. Races between running threads are left to the tests with the thread
// sanitizer.
//
// In programs that link this, pthread_create(), pthread_detach(), pthread_mutex_lock(), sleep(),
// system() and time() are wrapped here. Calls by the fuzzer itself are passed on.
#pragma once

namespace fuzz {

void run_workers_at_once(bool at_once);
void run_workers();

} // namespace fuzz
