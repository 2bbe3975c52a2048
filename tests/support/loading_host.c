/* SPDX-License-Identifier: MIT */
/* The example's agent, which loads the simulated gateway and then the plug-in. */
#include "smart_router_service/processjsonability.h"
#include "waiting_host.h"

#include <dlfcn.h>
#include <stdio.h>

static int32_t (*process)(const char *cmd, cJSON *obj);

/* The dispatcher that the example calls. */
int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    return process(cmd, obj);
}

int main(int count, char **words)
{
    dlopen(SIMULATED_GATEWAY_PATH, RTLD_NOW | RTLD_GLOBAL);
    void *plugin = dlopen(PLUGIN_PATH, RTLD_NOW);
    if (plugin == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    *(void **)&process = dlsym(plugin, "hg_process_json_cmd");
    const int status = run_minimal_host(count, words);
    await_worker(dlsym(plugin, "downimagelock"));
    return status;
}
