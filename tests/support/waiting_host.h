/* SPDX-License-Identifier: MIT */
/* The example's agent inside another one, which ends only when the firmware worker has ended. */
#ifndef TESTS_SUPPORT_WAITING_HOST_H
#define TESTS_SUPPORT_WAITING_HOST_H

#include <pthread.h>
#include <time.h>

/* The main() of examples/minimal_host.c. */
int run_minimal_host(int count, char **words);

static void await_worker(pthread_mutex_t *lock)
{
    const struct timespec pause = {0, 50000000};
    while (pthread_mutex_trylock(lock) != 0) {
        nanosleep(&pause, NULL);
    }
}

#endif
