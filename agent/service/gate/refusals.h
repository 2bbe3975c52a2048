// SPDX-License-Identifier: MIT
// Which refusals raise an event: a client that keeps sending what it may not must not flood those
// who subscribe to refusals. The time is a parameter.
#pragma once

#include "service/gate/rate_limit.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace agent::service {

class RefusalEvents {
  public:
    // For a refusal to the client. Result: how many of its refusals have raised no event since its
    // last one; nothing when this one raises none either.
    std::optional<uint64_t> take(const std::string &client, TokenBucket::Time now);

  private:
    struct Client {
        TokenBucket bucket;
        uint64_t omitted = 0;
    };
    std::map<std::string, Client> clients_;
};

} // namespace agent::service
