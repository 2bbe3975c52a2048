// SPDX-License-Identifier: MIT
// Serial number and description of the gateway.
#include "core/device_call.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_sn_info(SnInfo *info)
{
    return query(__func__, [&](const View &view) {
        put(info->MAC, to_text(view.network->bridge.mac));
        put(info->tslinkstatus, false);
        put(info->DeviceType, "Linux");
        return 0;
    });
}
