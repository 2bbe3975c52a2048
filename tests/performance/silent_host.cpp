// The host's services for measurements: as little as they can be.
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/host_agent.h"

void ts_mod_log_printf(const char *, int32_t, const char *, ...) {}

void mac_form_translate(const char *, int32_t, char *out)
{
    *out = '\0';
}

void ts_sys_mgr_get_brmac(char *mac)
{
    simulated_gateway_bridge_mac(mac, HG_BRIDGE_MAC_SIZE);
}

int32_t dev_is_exist(int32_t)
{
    return 0;
}

int32_t kaa_update_profile_info()
{
    return 0;
}
