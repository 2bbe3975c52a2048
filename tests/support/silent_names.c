/* SPDX-License-Identifier: MIT */
/*
 * Preloaded, it makes the name server silent for the name "silent.test": the lookup lasts until the
 * named pipe HELD is opened for writing, and then fails. The file LOOKUPS gets a line when it
 * begins.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int getaddrinfo(const char *name, const char *service, const struct addrinfo *hints,
                struct addrinfo **result)
{
    if (name != NULL && strcmp(name, "silent.test") == 0) {
        const int lookups = open(getenv("LOOKUPS"), O_WRONLY | O_APPEND | O_CLOEXEC);
        if (lookups >= 0) {
            if (write(lookups, "begun\n", 6) != 6) {
                abort();
            }
            close(lookups);
        }
        close(open(getenv("HELD"), O_RDONLY | O_CLOEXEC));
        return EAI_AGAIN;
    }
    int (*next)(const char *, const char *, const struct addrinfo *, struct addrinfo **) = NULL;
    *(void **)&next = dlsym(RTLD_NEXT, "getaddrinfo");
    return next(name, service, hints, result);
}
