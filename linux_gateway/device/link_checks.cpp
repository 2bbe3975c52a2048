// SPDX-License-Identifier: MIT
// Checks of the links, and whether an address answers.
#include "core/device_call.h"
#include "core/internet.h"
#include "system/probes.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_link_info(LinkInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Network &network = *view.network;
        const bool is_connected = network.is_wan_connected();
        // There is no radio that this library knows.
        put(info->Wifi24Enable, false);
        put(info->Wifi24Channel, 0);
        put(info->Wifi24ChannelCheck, "NONE");
        put(info->Wifi58Enable, false);
        put(info->Wifi58ChannelCheck, "NONE");
        put(info->Wifi58Channel, 0);
        put(info->LanIP, first_text(network.bridge.ipv4));
        put(info->WanIp, network.wan ? first_text(network.wan->ipv4) : "");
        put(info->DnsCheck,
            is_connected && does_name_server_answer(name_servers(view.configuration)));
        return 0;
    });
}

int32_t devapi_get_ping_check(const char *target)
{
    return query(__func__, [&](const View &) {
        ping(target);
        return 0;
    });
}
