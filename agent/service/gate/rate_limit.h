// SPDX-License-Identifier: MIT
// How many requests a role may send: token buckets. The time is a parameter.
#pragma once

#include <chrono>
#include <map>
#include <string>
#include <string_view>

namespace agent::service {

struct RateLimit {
    double per_second = 0;
    double burst = 0; // how many may arrive at once
    bool operator==(const RateLimit &) const = default;
};

class TokenBucket {
  public:
    using Time = std::chrono::steady_clock::time_point;

    TokenBucket(const RateLimit &limit, Time now) : limit_(limit), tokens_(limit.burst), last_(now)
    {
    }

    // Takes a token. Result: false when there is none. A time before the last one counts as the
    // last one.
    bool take(Time now);

    const RateLimit &limit() const { return limit_; }

  private:
    RateLimit limit_;
    double tokens_;
    Time last_;
};

// A bucket for each role with a limit; all members of a role share it.
class RateLimiter {
  public:
    using Limits = std::map<std::string, RateLimit, std::less<>>;

    // Also called when a policy is reloaded: a role with an unchanged limit keeps its bucket's
    // level, so that reloading does not fill it.
    void set_limits(const Limits &limits, TokenBucket::Time now);

    // Result: false when the role has used up its requests. Always true for a role without a limit.
    bool take(std::string_view role, TokenBucket::Time now);

  private:
    std::map<std::string, TokenBucket, std::less<>> buckets_;
};

} // namespace agent::service
