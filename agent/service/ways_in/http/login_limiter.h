// SPDX-License-Identifier: MIT
// How many logins may be tried: by an address, and in all. The time is a parameter.
#pragma once

#include "service/gate/rate_limit.h"

#include <map>
#include <optional>
#include <string>

namespace agent::service {

class LoginLimiter {
  public:
    // Result: false when there have been too many. address: without a port.
    bool take(const std::string &address, TokenBucket::Time now);

  private:
    struct Entry {
        TokenBucket bucket;
        TokenBucket::Time used;
    };
    std::map<std::string, Entry, std::less<>> addresses_;
    std::optional<TokenBucket> all_;
};

} // namespace agent::service
