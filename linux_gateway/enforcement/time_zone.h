// SPDX-License-Identifier: MIT
// The home's local time, with daylight saving.
#pragma once

#include <cstdint>
#include <string>

namespace date {
class time_zone;
}

namespace linux_gateway {

class TimeZone {
  public:
    // The zone with the name, such as "Europe/Berlin"; the machine's if the name is empty. Throws
    // an Error if there is no such zone.
    explicit TimeZone(const std::string &name);

    // The local day of a time in seconds since 1970, as the number of days since 1 January 1970.
    int64_t day_of(int64_t time) const;

    // When the clock shows a minute of a day. If it does so twice, the first or the last time; if
    // it skips that minute, the moment of the change.
    enum class Occurrence { kFirst, kLast };
    int64_t time_of(int64_t day, int minute, Occurrence occurrence) const;

  private:
    const date::time_zone *zone_;
};

} // namespace linux_gateway
