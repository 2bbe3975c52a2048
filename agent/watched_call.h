// One call of the device library, as the watch looks at it.
#pragma once

#include "device_watch.h"
#include "protocol/device_facts.h"

#include <string>
#include <vector>

namespace agent::watch {

class Call {
  public:
    explicit Call(const char *function);

    const char *function() const { return function_; }
    const device_facts::Function &facts() const { return facts_; }
    // The device library's function; null when it has none.
    void *device() const { return device_; }

    void begin() const;
    void end(int32_t result, bool wrote) const;
    void reason(const std::string &text) const;
    void fault(const std::string &what) const;
    // Of texts that are empty and should be "NULL", by their paths; of none nothing is said.
    void warn_of_empty(const std::vector<std::string> &texts) const;

  private:
    const char *function_;
    const device_facts::Function &facts_;
    void *device_;
};

// Whether the memory may come from malloc(): what belongs to a loaded library never does.
bool may_be_freed(const void *memory);

// The bytes that may be used of memory from malloc().
size_t room_of(const void *memory);

} // namespace agent::watch
