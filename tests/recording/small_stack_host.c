/* SPDX-License-Identifier: MIT */
/* An agent whose functions are in a library, examples/minimal_host.c, and whose command runs on a
 * thread with a stack of so many KiB: small_stack_host KIB DEVICE PLUGIN COMMAND [JSON]. */
#include "smart_router_service/processjsonability.h"

#include <dlfcn.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>

int run_minimal_host(int count, char **words);

static int32_t (*process)(const char *command, cJSON *object);
static char **words;
static int count;

/* The dispatcher that the example calls. */
int32_t hg_process_json_cmd(const char *command, cJSON *object)
{
    return process(command, object);
}

static void *run(void *unused)
{
    (void)unused;
    run_minimal_host(count - 3, words + 3);
    return NULL;
}

int main(int given_count, char **given)
{
    count = given_count;
    words = given;
    dlopen(words[2], RTLD_NOW | RTLD_GLOBAL);
    void *plugin = dlopen(words[3], RTLD_NOW);
    if (plugin == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    *(void **)&process = dlsym(plugin, "hg_process_json_cmd");
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, (size_t)atoi(words[1]) * 1024);
    pthread_t thread;
    return pthread_create(&thread, &attributes, run, NULL) != 0 || pthread_join(thread, NULL) != 0;
}
