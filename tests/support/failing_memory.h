// The memory of cJSON and of the plug-in, made to run out at a chosen point.
#pragma once

#include <cstddef>

// While it lives, allocations from number first (counted from 0) on fail: that one only, or all
// that follow as well.
class FailingMemory {
  public:
    enum class Fail { kOnce, kLastingly };

    FailingMemory(size_t first, Fail fail);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    // Whether any allocation has failed; when none has, the sweep over first is done.
    bool has_failed() const;
};
