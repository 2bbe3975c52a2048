// SPDX-License-Identifier: MIT
// Makes cJSON run out of memory at a chosen allocation.
#pragma once

#include <cstddef>

// Guard: the allocation with number first (counted from 0) fails, alone or with all that follow.
// Counted are those of cJSON, those of malloc() in a program that links worker_control, and those
// of calloc() in one that links counted_calloc.
class FailingMemory {
  public:
    enum class Fail { kOnce, kLastingly };

    FailingMemory(size_t first, Fail fail);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    // Whether any allocation has failed; when none has, the sweep over first is done.
    bool has_failed() const;

    // The allocations counted so far.
    size_t allocations() const;

    // From now on nothing fails.
    void stop_failing();

    // The blocks allocated since its construction and not freed: those of cJSON, and, in a program
    // that links worker_control, all of malloc() and calloc().
    size_t blocks() const;

    // Counts an allocation that is not cJSON's. Result: whether it has to fail; false while no
    // FailingMemory exists.
    static bool next_fails();

    // An allocation that never fails and does not count as the plug-in's, such as the device
    // library returns; its block is counted.
    static void *granted(size_t size);

    // Record that a block was allocated, unless it is null, and that one is freed.
    static void *allocated(void *block);
    static void freed(void *block);
};
