// SPDX-License-Identifier: MIT
// A clock that the test controls. In a program that links this, time() and localtime_r() are the
// ones defined here.
#pragma once

#include <ctime>

// Guard: stops the clock at a time, in a time zone written as the variable TZ takes it.
class ClockControl {
  public:
    explicit ClockControl(time_t moment, const char *zone = "UTC0");
    ~ClockControl();
    ClockControl(const ClockControl &) = delete;
    ClockControl &operator=(const ClockControl &) = delete;

    // From now on the time cannot be read, or cannot be converted to local time.
    void fail_time();
    void fail_local_time();
};
