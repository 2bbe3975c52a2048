// SPDX-License-Identifier: MIT
// Serial number and description of the gateway.
#include "core/device_call.h"
#include "system/machine.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_sn_info(SnInfo *info)
{
    return query(__func__, [&](const View &view) {
        put(info->MAC, to_text(view.network->bridge.mac));
        put(info->tslinkstatus, false);
        put(info->DeviceType, view.machine.product);
        return 0;
    });
}

int32_t devapi_get_system_info(SystemInfo *info)
{
    return query(__func__, [&](const View &view) {
        put(info->SWVersion, view.software.read().version);
        put(info->HDVersion, view.machine.hardware_version);
        put(info->ProductCLass, view.machine.product);
        put(info->CPUClass, view.machine.processor);
        put(info->DEVType, "Router");
        put(info->DEVType1, "");
        put(info->Capability, "greennet");
        put(info->Card, "");
        put(info->UPLink, "LAN");
        put(info->Cardno, "");
        put(info->IPV6, has_ipv6());
        put(info->VLANbind, false);
        put(info->LED, false);
        put(info->NFC, false);
        put(info->VLANCapability, "");
        return 0;
    });
}
