// A value that takes long to work out of the state and holds at one time.
#pragma once

#include <cstdint>
#include <optional>

namespace simulated_gateway {

// A copy has forgotten it: states are copied to be changed. Whoever changes a state asks for such
// values only afterwards.
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
