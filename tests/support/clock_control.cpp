// SPDX-License-Identifier: MIT
#include "clock_control.h"

#include <cerrno>
#include <cstdlib>
#include <optional>

namespace {

std::optional<time_t> stopped_at;
bool local_time_fails;

} // namespace

extern "C" {

time_t __real_time(time_t *out);
struct tm *__real_localtime_r(const time_t *moment, struct tm *out);

time_t __wrap_time(time_t *out)
{
    if (!stopped_at) {
        return __real_time(out);
    }
    if (out != nullptr) {
        *out = *stopped_at;
    }
    return *stopped_at;
}

struct tm *__wrap_localtime_r(const time_t *moment, struct tm *out)
{
    if (local_time_fails) {
        errno = EOVERFLOW;
        return nullptr;
    }
    return __real_localtime_r(moment, out);
}
}

ClockControl::ClockControl(time_t moment, const char *zone)
{
    setenv("TZ", zone, 1);
    tzset();
    stopped_at = moment;
}

ClockControl::~ClockControl()
{
    unsetenv("TZ");
    tzset();
    stopped_at.reset();
    local_time_fails = false;
}

void ClockControl::fail_time()
{
    stopped_at = -1;
}

void ClockControl::fail_local_time()
{
    local_time_fails = true;
}
