/* SPDX-License-Identifier: MIT */
/* Preloaded before the C library, so that time() returns the time at which the simulated gateway's
 * clock is stopped: the plug-in reads the system clock itself, and the two have to agree. */
#include <stdlib.h>
#include <time.h>

time_t time(time_t *out)
{
    struct timespec now;
    const char *standing = getenv("SIMULATED_GATEWAY_TIME");
    if (standing != NULL) {
        now.tv_sec = (time_t)strtoll(standing, NULL, 10);
    } else {
        clock_gettime(CLOCK_REALTIME, &now);
    }
    if (out != NULL) {
        *out = now.tv_sec;
    }
    return now.tv_sec;
}
