// SPDX-License-Identifier: MIT
// The pauses between attempts to connect: each up to twice as long as the one before, and random,
// so that a fleet does not come back at the same moment.
#pragma once

#include <algorithm>
#include <chrono>

namespace agent::service {

class Backoff {
  public:
    static constexpr std::chrono::milliseconds kFirst{1000};
    static constexpr std::chrono::milliseconds kLongest{60'000};

    // fraction: random, from 0 to 1. Result: from half of the current limit to all of it.
    std::chrono::milliseconds next(double fraction)
    {
        const auto limit = limit_;
        limit_ = std::min(2 * limit_, kLongest);
        return std::chrono::milliseconds(
            static_cast<int64_t>(static_cast<double>(limit.count()) * (1 + fraction) / 2));
    }
    void reset() { limit_ = kFirst; }

  private:
    std::chrono::milliseconds limit_ = kFirst;
};

} // namespace agent::service
