/* SPDX-License-Identifier: MIT */
/* Preloaded into the process with the device library: shifts the real-time clock by the seconds in
 * the file that CLOCK_SHIFT names. A test moves the clock of one process by writing to the file,
 * and leaves that of the machine alone. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

static time_t shift(void)
{
    const char *path = getenv("CLOCK_SHIFT");
    const int file = path == NULL ? -1 : open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    char text[32] = "";
    const ssize_t size = read(file, text, sizeof(text) - 1);
    close(file);
    return size > 0 ? (time_t)strtoll(text, NULL, 10) : 0;
}

int clock_gettime(clockid_t clock, struct timespec *out)
{
    const int result = (int)syscall(SYS_clock_gettime, clock, out);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
        out->tv_sec += shift();
    }
    return result;
}

int gettimeofday(struct timeval *restrict out, void *restrict zone)
{
    (void)zone;
    struct timespec now;
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    out->tv_sec = now.tv_sec;
    out->tv_usec = now.tv_nsec / 1000;
    return result;
}

time_t time(time_t *out)
{
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (out != NULL) {
        *out = now.tv_sec;
    }
    return now.tv_sec;
}
