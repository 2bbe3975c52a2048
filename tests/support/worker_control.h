// The plug-in's workers, of a batch of Wi-Fi settings and of a firmware update, in the hands of a
// test. A program that links this has its sleep(), sigaction(), pthread_create(), malloc(),
// calloc(), free() and the workers' locks go through here. Sleeps and the handling of ended
// children are written down among the device's calls. Waiting for the lock of the downloads fails
// the test: it is only ever tried.
#pragma once

#include <cstddef>
#include <vector>

// Sleeps end at once unless they are held. One of these lives as long as its test; its end lets the
// workers run to theirs.
class WorkerControl {
  public:
    struct Sleep {
        unsigned seconds;
        bool detached; // whether the sleeping thread was

        bool operator==(const Sleep &) const = default;
    };

    WorkerControl();
    ~WorkerControl();
    WorkerControl(const WorkerControl &) = delete;
    WorkerControl &operator=(const WorkerControl &) = delete;

    // The sleeps so far, and the workers that were started.
    std::vector<Sleep> sleeps() const;
    size_t workers() const;

    // From here on a sleep lasts until end_sleep() is called for it.
    void hold_sleeps();
    // Waits until so many sleeps have begun.
    void wait_for_sleep(size_t number) const;
    // Ends the sleep that is held.
    void end_sleep();
    // Ends them all, and holds none any more.
    void end_all_sleeps();

    // Waits until somebody waits for the lock of the batches.
    void wait_for_waiting_batch() const;
    // Waits until no worker runs, with all that it did done.
    void wait_until_idle() const;
    // Whether the workers' locks are free at this moment.
    bool is_idle() const;

    // The next worker cannot be started; the next calloc() finds no memory.
    void fail_next_worker();
    void fail_next_calloc();

    // From here on calloc() and the start of a worker are allocations as well for FailingMemory.
    void count_everything();
};
