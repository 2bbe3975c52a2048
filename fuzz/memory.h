// Memory that ends at a moment of the input's choice, for what is built of cJSON items.
#pragma once

#include <cstddef>

namespace fuzz {

// From here on the cJSON library's allocation of that number fails, 0 for the next one, and if it
// is to last all that follow it. As long as this lives.
class FailingMemory {
  public:
    FailingMemory(size_t allocation, bool lasts);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;
};

} // namespace fuzz
