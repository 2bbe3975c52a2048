// SPDX-License-Identifier: MIT
// Lets a test control the plug-in's workers, of a batch of Wi-Fi settings and of a firmware update.
// In a program that links this, sleep(), sigaction(), pthread_create(), malloc(), calloc(), free()
// and the workers' locks are the ones defined here. Sleeps and the handling of ended children are
// recorded among the device's calls. Waiting for the lock of the downloads fails the test: the
// plug-in may only try it.
#pragma once

#include <cstddef>
#include <vector>

// Sleeps end at once unless they are held. One of these exists for the whole test; its destructor
// lets the workers finish.
class WorkerControl {
  public:
    struct Sleep {
        unsigned seconds;
        bool detached; // whether the sleeping thread was detached

        bool operator==(const Sleep &) const = default;
    };

    WorkerControl();
    ~WorkerControl();
    WorkerControl(const WorkerControl &) = delete;
    WorkerControl &operator=(const WorkerControl &) = delete;

    // The sleeps and the started workers so far.
    std::vector<Sleep> sleeps() const;
    size_t workers() const;

    // From now on a sleep lasts until end_sleep() is called for it.
    void hold_sleeps();
    // Waits until this many sleeps have begun.
    void wait_for_sleep(size_t number) const;
    // Ends the held sleep.
    void end_sleep();
    // Ends all sleeps and holds no further ones.
    void end_all_sleeps();

    // Waits until a thread waits for the lock of the batches.
    void wait_for_waiting_batch() const;
    // Waits until no worker runs and all its effects are complete.
    void wait_until_idle() const;
    // Whether the workers' locks are free now.
    bool is_idle() const;

    // The next worker cannot be started; the next calloc() finds no memory.
    void fail_next_worker();
    void fail_next_calloc();

    // From now on calloc() and the start of a worker also count as allocations for FailingMemory.
    void count_everything();
};
