// cJSON's memory, made to run out at a chosen point.
#pragma once

#include <cstddef>

// While it lives, allocations from number first (counted from 0) on fail: that one only, or all
// that follow as well. Those of cJSON are counted, those of malloc() in a program that links
// worker_control, and those of calloc() in one that links counted_calloc.
class FailingMemory {
  public:
    enum class Fail { kOnce, kLastingly };

    FailingMemory(size_t first, Fail fail);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    // Whether any allocation has failed; when none has, the sweep over first is done.
    bool has_failed() const;

    // The allocations that were counted so far.
    size_t allocations() const;

    // From here on nothing fails any more.
    void suffice();

    // The blocks that were allocated while it lives and have not been freed: those of cJSON, and,
    // in a program that links worker_control, all that went through malloc() and calloc().
    size_t blocks() const;

    // Counts one more allocation, of somebody other than cJSON. Result: whether it is to fail;
    // false while none of these lives.
    static bool next_fails();

    // Memory that does not fail and is no allocation of the plug-in's, such as the device library
    // hands over; its block is counted.
    static void *granted(size_t size);

    // Note that a block was allocated, unless it is null, and that one is freed.
    static void *allocated(void *block);
    static void freed(void *block);
};
