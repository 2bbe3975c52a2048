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

int32_t devapi_get_iotagtd_device_mac(char *mac, int32_t size)
{
    return query(__func__, [&](const View &view) {
        const std::string own = to_text(view.network->bridge.mac);
        if (size <= static_cast<int64_t>(own.size())) {
            throw Error("there is no room for the address");
        }
        put_text({mac, static_cast<size_t>(size)}, own);
        return 0;
    });
}
