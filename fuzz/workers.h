// The plug-in's workers, in a process that has to do the same for the same input, and that has to
// be done with one input before the next.
//
// A worker does not get a thread of its own: it is run to its end by the thread that asks for it,
// without its sleeps. When that is, the input says. At once: then whatever the starter goes on to
// use has been freed by its worker already. Or later: when somebody waits for the lock that the
// worker holds, else by run_workers() at the end of the input; until then other commands find it at
// work. Races between two threads at work are left to the tests with the thread sanitizer.
//
// Programs that link this have their pthread_create(), pthread_detach(), pthread_mutex_lock(),
// sleep(), system() and time() go through here. What the fuzzer itself asks of them it gets.
#pragma once

namespace fuzz {

void run_workers_at_once(bool at_once);
void run_workers();

} // namespace fuzz
