/* Preloaded into an agent that has to serve more commands than it has time to sleep. */
#include <unistd.h>

unsigned sleep(unsigned seconds)
{
    (void)seconds;
    return 0;
}
