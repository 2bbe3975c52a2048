// SPDX-License-Identifier: MIT
// What is to be enforced, independent of where it is stored.
#pragma once

#include "system/mac.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace linux_gateway {

// A time in which a host has no access to the Internet, in the home's local time. One that ends at
// or before its start ends on the next day.
struct Period {
    int start_minute = 0; // of the day
    int end_minute = 0;
    std::set<int> days; // on which it begins, 1 (Monday) to 7

    bool operator==(const Period &) const = default;
};

struct Rules {
    std::string lan_bridge;
    std::set<Mac> blocked;
    std::map<Mac, uint64_t> limits; // of the traffic to the host, bits per second
    std::map<Mac, std::vector<Period>> periods;
    std::optional<Mac> management_host; // never blocked

    bool operator==(const Rules &) const = default;
};

} // namespace linux_gateway
