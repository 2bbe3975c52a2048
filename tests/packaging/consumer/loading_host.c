/* SPDX-License-Identifier: MIT */
/* The example agent; it loads the device library and the plug-in that the environment names instead
 * of being linked with them. */
#include "smart_router_service/processjsonability.h"

#include <dlfcn.h>

static int32_t (*loaded_command)(const char *name, cJSON *object);
#define hg_process_json_cmd loaded_command
#include EXAMPLE

__attribute__((constructor)) static void load(void)
{
    if (dlopen(getenv("DEVICE"), RTLD_NOW | RTLD_GLOBAL) != NULL) {
        void *plugin = dlopen(getenv("PLUGIN"), RTLD_NOW);
        if (plugin != NULL) {
            *(void **)&loaded_command = dlsym(plugin, "hg_process_json_cmd");
        }
    }
    if (loaded_command == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(3);
    }
}
