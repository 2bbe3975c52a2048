// SPDX-License-Identifier: MIT
#include "service/ways_in/http/login_limiter.h"

#include <algorithm>
#include <boost/asio/ip/address.hpp>

namespace agent::service {

namespace {

constexpr RateLimit kOfAddress = {0.2, 5};
constexpr RateLimit kOfAll = {2, 20};
constexpr size_t kMostAddresses = 1024;

// A host with IPv6 has a network of addresses, so only the first half identifies it.
std::string network_of(const std::string &address)
{
    boost::system::error_code problem;
    const auto parsed = boost::asio::ip::make_address(address, problem);
    if (problem || !parsed.is_v6()) {
        return address;
    }
    const auto bytes = parsed.to_v6().to_bytes();
    return {bytes.begin(), bytes.begin() + bytes.size() / 2};
}

} // namespace

bool LoginLimiter::take(const std::string &address, TokenBucket::Time now)
{
    if (!all_) {
        all_.emplace(kOfAll, now);
    }
    const std::string network = network_of(address);
    if (addresses_.size() >= kMostAddresses && !addresses_.contains(network)) {
        addresses_.erase(std::ranges::min_element(addresses_, {},
                                                  [](const auto &one) { return one.second.used; }));
    }
    Entry &entry = addresses_.try_emplace(network, Entry{{kOfAddress, now}, now}).first->second;
    entry.used = now;
    // The address first: it must not use up what is left for others.
    return entry.bucket.take(now) && all_->take(now);
}

} // namespace agent::service
