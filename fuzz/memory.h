// SPDX-License-Identifier: MIT
// Memory that runs out at a point chosen by the input, for code that builds cJSON items.
#pragma once

#include <cstddef>

namespace fuzz {

// During its lifetime, the cJSON library's allocation with the number fails, counted from 0 for the
// next one, and all later ones if it is lasting.
class FailingMemory {
  public:
    FailingMemory(size_t allocation, bool lasts);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;
};

} // namespace fuzz
