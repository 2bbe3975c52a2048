/* SPDX-License-Identifier: MIT */
/* A plug-in that needs symbols that neither a device library nor an agent has. */
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

int32_t devapi_of_another_router(void);
extern int32_t global_of_another_agent;

int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    (void)obj;
    ts_mod_log_printf("probe", 3, "%s", cmd);
    return devapi_of_another_router() + global_of_another_agent;
}
