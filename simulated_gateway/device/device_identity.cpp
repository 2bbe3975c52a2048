// SPDX-License-Identifier: MIT
// The router's identity: serial number and description.
#include "core/device_call.h"

using namespace simulated_gateway;

int32_t devapi_get_sn_info(SnInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        put(info->MAC, state.home.identity.mac);
        put(info->tslinkstatus, state.home.mesh.link_layer_up);
        put(info->DeviceType, state.home.identity.device_type);
        return 0;
    });
}

int32_t devapi_get_system_info(SystemInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Identity &identity = state.home.identity;
        put(info->SWVersion, identity.software_version);
        put(info->HDVersion, identity.hardware_version);
        put(info->ProductCLass, identity.product_class);
        put(info->CPUClass, identity.cpu_class);
        put(info->DEVType, identity.kind);
        put(info->DEVType1, identity.second_kind);
        put(info->Capability, identity.capability);
        put(info->Card, identity.card);
        put(info->UPLink, identity.uplink);
        put(info->Cardno, identity.card_number);
        put(info->IPV6, identity.ipv6);
        put(info->VLANbind, identity.vlan_binding);
        put(info->LED, identity.led);
        put(info->NFC, identity.nfc);
        put(info->VLANCapability, identity.vlan_capability);
        return 0;
    });
}
