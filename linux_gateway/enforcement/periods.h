// SPDX-License-Identifier: MIT
// When the periods of a host are in force. One that begins at a time that the clock shows twice,
// when daylight saving ends, begins the first time, and one that ends then ends the last time.
#pragma once

#include "enforcement/rules.h"
#include "enforcement/time_zone.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace linux_gateway {

// Times are in seconds since 1970.
struct Restriction {
    std::optional<int64_t> until;       // the end of what is in force; empty if nothing is
    std::optional<int64_t> next_change; // the next time at which a period begins or ends
};

Restriction restriction_at(int64_t time, const std::vector<Period> &periods, const TimeZone &zone);

} // namespace linux_gateway
