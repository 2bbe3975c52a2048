/* SPDX-License-Identifier: MIT */
/*
 * A plug-in whose only command, WORK, starts a worker as a batch of Wi-Fi settings does. The worker
 * ends when the named pipe "until" is opened for writing.
 */
#include "smart_router_service/processjsonability.h"

#include <fcntl.h>
#include <pthread.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

SMART_ROUTER_API pthread_mutex_t setwifilistlock = PTHREAD_MUTEX_INITIALIZER;

static char until[4096];

static void *work(void *unused)
{
    close(open(until, O_RDONLY));
    fputs("the worker has done its work\n", stderr);
    pthread_mutex_unlock(&setwifilistlock);
    return unused;
}

int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    pthread_t worker;
    if (strcmp(cmd, "WORK") != 0) {
        return HG_NO_SUCH_COMMAND;
    }
    snprintf(until, sizeof(until), "%s", cJSON_GetStringValue(cJSON_GetObjectItem(obj, "until")));
    pthread_mutex_lock(&setwifilistlock);
    pthread_create(&worker, NULL, work, NULL);
    pthread_detach(worker);
    cJSON_AddStringToObject(obj, "Status", "0");
    return 0;
}
