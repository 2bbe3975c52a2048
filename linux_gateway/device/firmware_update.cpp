// SPDX-License-Identifier: MIT
// The software that the gateway runs. It is updated by the package manager.
#include "core/device_call.h"
#include "system/machine.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_update_status_info(UpdateStatusInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Software software = view.software.read();
        put(info->Name, gateway_name(view));
        put(info->HWVersion, view.machine.hardware_version);
        put(info->FWVersion, software.version);
        put(info->FWDATA, software.date);
        put(info->DeviceType, view.machine.product);
        put(info->AreaCode, view.configuration.area_code);
        return 0;
    });
}
