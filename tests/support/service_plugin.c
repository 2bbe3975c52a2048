/* SPDX-License-Identifier: MIT */
/*
 * A plug-in that misbehaves as its test requests. Its commands:
 *
 *   ECHO      replies with its parameters, and how many have been echoed so far
 *   PID       replies with the process
 *   WAIT      returns when the named pipe "until" is opened for writing
 *   ABORT     aborts
 *   OVERRUN   ends as a write beyond its memory would
 *   EXIT      ends the process with status 3
 *   WORK      starts a worker as a batch of Wi-Fi settings does; it ends as WAIT does
 *   WRITE     writes "text" among the replies, "count" times
 *   FLOOD     replies with "count" bytes
 */
#include "smart_router_service/processjsonability.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

SMART_ROUTER_API pthread_mutex_t setwifilistlock = PTHREAD_MUTEX_INITIALIZER;

static char until[4096];
static int echoed;

static const char *text_of(cJSON *obj, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItem(obj, key));
    return text != NULL ? text : "";
}

static void await(const char *pipe)
{
    close(open(pipe, O_RDONLY));
}

static void *work(void *unused)
{
    await(until);
    fputs("the worker has done its work\n", stderr);
    pthread_mutex_unlock(&setwifilistlock);
    return unused;
}

static void start_worker(cJSON *obj)
{
    pthread_t worker;
    snprintf(until, sizeof(until), "%s", text_of(obj, "until"));
    pthread_mutex_lock(&setwifilistlock);
    pthread_create(&worker, NULL, work, NULL);
    pthread_detach(worker);
}

/* The replies go to the one descriptor beyond the standard ones that only writes to a pipe. */
static int reply_descriptor(void)
{
    struct stat status;
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        if (fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode) &&
            (fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_WRONLY) {
            return descriptor;
        }
    }
    return -1;
}

static void write_among_replies(cJSON *obj)
{
    const char *text = text_of(obj, "text");
    const int descriptor = reply_descriptor();
    for (int left = atoi(text_of(obj, "count")); left > 0; --left) {
        if (write(descriptor, text, strlen(text)) < 0) {
            return;
        }
    }
}

static void flood(cJSON *obj)
{
    const size_t count = (size_t)atol(text_of(obj, "count"));
    char *text = malloc(count + 1);
    if (text != NULL) {
        memset(text, 'x', count);
        text[count] = '\0';
        cJSON_AddStringToObject(obj, "text", text);
        free(text);
    }
}

int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    if (strcmp(cmd, "ECHO") == 0) {
        cJSON_AddNumberToObject(obj, "echoed", ++echoed);
    } else if (strcmp(cmd, "PID") == 0) {
        cJSON_AddNumberToObject(obj, "pid", getpid());
    } else if (strcmp(cmd, "WAIT") == 0) {
        await(text_of(obj, "until"));
    } else if (strcmp(cmd, "ABORT") == 0) {
        abort();
    } else if (strcmp(cmd, "OVERRUN") == 0) {
        raise(SIGSEGV); /* a sanitizer would report a real one itself */
    } else if (strcmp(cmd, "EXIT") == 0) {
        _exit(3);
    } else if (strcmp(cmd, "WORK") == 0) {
        start_worker(obj);
    } else if (strcmp(cmd, "WRITE") == 0) {
        write_among_replies(obj);
    } else if (strcmp(cmd, "FLOOD") == 0) {
        flood(obj);
    } else {
        return HG_NO_SUCH_COMMAND;
    }
    cJSON_AddStringToObject(obj, "Status", "0");
    return 0;
}
