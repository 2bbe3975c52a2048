/* SPDX-License-Identifier: MIT */
/* Preloaded into an agent that has to serve many commands without waiting for their sleeps. */
#include <unistd.h>

unsigned sleep(unsigned seconds)
{
    (void)seconds;
    return 0;
}
