// SPDX-License-Identifier: MIT
#include "service/gate/refusals.h"

#include <utility>

namespace agent::service {

namespace {

constexpr RateLimit kLimit = {1, 10};
constexpr size_t kMostClients = 1000; // bounds the memory

} // namespace

std::optional<uint64_t> RefusalEvents::take(const std::string &client, TokenBucket::Time now)
{
    if (clients_.size() >= kMostClients && !clients_.contains(client)) {
        clients_.clear();
    }
    const auto known = clients_.try_emplace(client, Client{TokenBucket(kLimit, now)}).first;
    if (known->second.bucket.take(now)) {
        return std::exchange(known->second.omitted, 0);
    }
    ++known->second.omitted;
    return std::nullopt;
}

} // namespace agent::service
