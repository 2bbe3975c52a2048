// One call of the device library, as the watch looks at it.
#pragma once

#include "device_watch.h"

#include <string>

namespace agent::watch {

class Call {
  public:
    // arguments: the names of the function's arguments, as in its prototype.
    Call(const char *function, const char *arguments);

    const char *function() const { return function_; }
    // The device library's function; null when it has none.
    void *device() const { return device_; }
    // Whether an argument has this in its name.
    bool has_argument(const char *name) const;

    void begin() const;
    void end(int32_t result, bool wrote) const;
    void reason(const std::string &text) const;
    void fault(const std::string &what) const;

  private:
    const char *function_;
    const char *arguments_;
    void *device_;
};

// Whether the memory may come from malloc(): what belongs to a loaded library never does.
bool may_be_freed(const void *memory);

// The bytes that may be used of memory from malloc().
size_t room_of(const void *memory);

} // namespace agent::watch
