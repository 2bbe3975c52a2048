/* SPDX-License-Identifier: MIT */
/*
 * A device library that appends each name that the gateway is given to the file in the environment
 * variable EXECUTED, so that a test can count how often each request was executed, regardless of
 * what was killed meanwhile.
 *
 * With a name that begins with "wait" the call then lasts until the named pipe HELD is opened for
 * writing; a name that begins with "die" ends the process.
 */
#include "smart_router_service/device_access.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int32_t append(const char *name)
{
    char line[sizeof(((HgBaseInfo *)0)->Name) + 1];
    const size_t length = strnlen(name, sizeof(line) - 1);
    memcpy(line, name, length);
    line[length] = '\n';
    const char *path = getenv("EXECUTED");
    const int file = open(path != NULL ? path : "", O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    /* One write() of a line to a file opened for appending is whole even if the process is killed.
     */
    const ssize_t written = write(file, line, length + 1);
    close(file);
    return written == (ssize_t)length + 1 ? 0 : -1;
}

int32_t devapi_set_hg_base_info(const HgBaseInfo *info)
{
    const int32_t result = append(info->Name);
    if (strncmp(info->Name, "wait", 4) == 0) {
        const char *held = getenv("HELD");
        close(open(held != NULL ? held : "", O_RDONLY | O_CLOEXEC));
    } else if (strncmp(info->Name, "die", 3) == 0) {
        raise(SIGKILL);
    }
    return result;
}

int32_t devapi_get_sn_info(SnInfo *info)
{
    memcpy(info->MAC, "02:00:5E:10:00:02", sizeof("02:00:5E:10:00:02"));
    memcpy(info->tslinkstatus, "0", sizeof("0"));
    memcpy(info->DeviceType, "COUNTING", sizeof("COUNTING"));
    return 0;
}
