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

    // Counts one more allocation, of somebody other than cJSON. Result: whether it is to fail;
    // false while none of these lives.
    static bool next_fails();
};
