// SPDX-License-Identifier: MIT
// A hostile device library that is not the simulated gateway: it fills text fields completely,
// without a NUL, passes bytes that are not UTF-8, reports impossible progress, and can be
// power-cycled but not opened. It logs why it refuses UPnP, and runs a command through the host.
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int32_t devapi_get_sn_info(SnInfo *info)
{
    memset(info->MAC, 'M', sizeof(info->MAC));
    memcpy(info->tslinkstatus, "\xd6\"\xff",
           3); // a quote between bytes that are invalid in every encoding
    memset(info->DeviceType, 'D', sizeof(info->DeviceType));
    return 0;
}

int32_t devapi_get_home_page_info(HomePageInfo *info)
{
    memcpy(info->Devname, "\xc4\xe3\xba\xc3", 4); // GBK
    return 0;
}

int32_t devapi_get_system_info(SystemInfo *info)
{
    memset(info, 'S', sizeof(*info));
    return 0;
}

int32_t devapi_get_host_num(int32_t *count)
{
    *count = 3;
    return 0;
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    switch (info->HostIndex) {
    case 1:
        memset(info->Name, 'N', sizeof(AdBaseInfo) - offsetof(AdBaseInfo, Name));
        return 0;
    case 2:
        memcpy(info->ByName, "\xbf\xcd\xcc\xfc", 5); // GBK
        memcpy(info->Name, "unseen", 7);
        memcpy(info->Mac, "\n\x1b[31m", 7);
        return 0;
    default:
        return 1000; // there is no such device, which is not a failure
    }
}

int32_t devapi_get_upnp_state(UpnpState *)
{
    ts_mod_log_printf("test", 3, "no daemon\x1b, Password:%s\n", "hidden");
    ts_mod_log_printf("test", 7, "trace");
    return std::system("upnpc --state");
}

namespace {

SimulatedGatewayProgress report = nullptr;
void *report_context = nullptr;

void report_progress(const char *task, int32_t percent)
{
    if (report != nullptr) {
        report(task, percent, report_context);
    }
}

} // namespace

void simulated_gateway_on_progress(SimulatedGatewayProgress progress, void *context)
{
    report = progress;
    report_context = context;
}

int32_t devapi_download_image(const char *, int32_t)
{
    report_progress("image\n\x1b[31m", -5);
    report_progress(nullptr, 50);
    report_progress("image", 1000);
    report_progress("image", 3);
    return -1;
}

int32_t devapi_get_update_status_info(UpdateStatusInfo *)
{
    return 0;
}

void simulated_gateway_power_cycle(void)
{
    fputs("power cycle\n", stderr);
}
