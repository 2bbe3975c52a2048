// SPDX-License-Identifier: MIT
// Progress reports to the host for long operations.
#pragma once

#include <cstdint>

namespace simulated_gateway {

// The progress of one operation. Only changes are reported.
class Progress {
  public:
    explicit Progress(const char *task) : task_(task) {}

    void report(int32_t percent);

  private:
    const char *task_;
    int32_t last_ = -1;
};

} // namespace simulated_gateway
