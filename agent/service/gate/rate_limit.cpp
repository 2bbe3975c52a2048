// SPDX-License-Identifier: MIT
#include "service/gate/rate_limit.h"

#include <algorithm>

namespace agent::service {

bool TokenBucket::take(Time now)
{
    if (now > last_) {
        const std::chrono::duration<double> passed = now - last_;
        tokens_ = std::min(limit_.burst, tokens_ + passed.count() * limit_.per_second);
        last_ = now;
    }
    if (tokens_ < 1) {
        return false;
    }
    tokens_ -= 1;
    return true;
}

void RateLimiter::set_limits(const Limits &limits, TokenBucket::Time now)
{
    std::erase_if(buckets_, [&](const auto &bucket) {
        const auto limit = limits.find(bucket.first);
        return limit == limits.end() || limit->second != bucket.second.limit();
    });
    for (const auto &[role, limit] : limits) {
        buckets_.try_emplace(role, limit, now);
    }
}

bool RateLimiter::take(std::string_view role, TokenBucket::Time now)
{
    const auto bucket = buckets_.find(role);
    return bucket == buckets_.end() || bucket->second.take(now);
}

} // namespace agent::service
