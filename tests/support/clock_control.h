// The clock in the hands of a test. A program that links this has its time() and localtime_r() go
// through here.
#pragma once

#include <ctime>

// While it lives, the clock stands still at a moment, in a time zone as the variable TZ gives it.
class ClockControl {
  public:
    explicit ClockControl(time_t moment, const char *zone = "UTC0");
    ~ClockControl();
    ClockControl(const ClockControl &) = delete;
    ClockControl &operator=(const ClockControl &) = delete;

    // From here on the time cannot be read, or not be converted to local time.
    void fail_time();
    void fail_local_time();
};
