// SPDX-License-Identifier: MIT
// A cached value that is expensive to compute from the state and is valid for one point in time.
#pragma once

#include <cstdint>
#include <optional>

namespace simulated_gateway {

// A copy starts empty: states are copied to be changed. Code that changes a state may request such
// values only after the change.
template <class Value> class TimedCache {
  public:
    TimedCache() = default;
    TimedCache(const TimedCache &) noexcept {}
    TimedCache &operator=(const TimedCache &) noexcept
    {
        value_.reset();
        return *this;
    }

    template <class Make> const Value &at(int64_t time, const Make &make)
    {
        if (!value_ || time_ != time) {
            value_ = make();
            time_ = time;
        }
        return *value_;
    }

  private:
    int64_t time_ = 0;
    std::optional<Value> value_;
};

} // namespace simulated_gateway
