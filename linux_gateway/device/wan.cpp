// SPDX-License-Identifier: MIT
// The WAN connection. There is one, over the WAN port.
#include "core/device_call.h"
#include "core/internet.h"
#include "system/dhcp_server.h"

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace linux_gateway;

constexpr char kConnectionName[] = "Internet";

int32_t devapi_get_wan_num(WanNum *info)
{
    return query(__func__, [&](const View &) {
        put(info->NUM, 1);
        put(info->Description, kConnectionName);
        return 0;
    });
}

// The first two servers of a family; empty texts where there are none.
static std::array<std::string, 2> servers_of(const std::vector<std::string> &all, bool is_ipv6)
{
    std::array<std::string, 2> servers;
    size_t count = 0;
    for (const std::string &server : all) {
        if ((server.find(':') != std::string::npos) == is_ipv6 && count < servers.size()) {
            servers.at(count++) = server;
        }
    }
    return servers;
}

static const char *protocols_of(const Link &wan)
{
    if (wan.ipv4.empty()) {
        return wan.ipv6.empty() ? "" : "IPv6";
    }
    return wan.ipv6.empty() ? "IPv4" : "IPv4/IPv6";
}

int32_t devapi_query_wan_info(WanInfo *info)
{
    return query(__func__, [&](const View &view) {
        if (taken(info->WANName) != kConnectionName) {
            throw Error("WANName: there is only the connection " + std::string(kConnectionName));
        }
        const Network &network = *view.network;
        const Link wan = network.wan.value_or(Link());
        const std::vector<std::string> servers = name_servers(view.configuration);
        const auto [dns1, dns2] = servers_of(servers, false);
        const auto [ipv6_dns1, ipv6_dns2] = servers_of(servers, true);
        const Address ipv4 = wan.ipv4.empty() ? Address() : wan.ipv4.front();
        const Address lan_ipv6 =
            network.bridge.ipv6.empty() ? Address() : network.bridge.ipv6.front();
        put(info->INDEX, 1);
        put(info->IFNAME, network.wan_name);
        put(info->CONNECTIONSTATUS,
            connection_state(wan.is_up && !wan.ipv4.empty() && network.has_ipv4_route));
        put(info->CONNECTIONTYPE, "IP_Routed");
        put(info->PROTOCOL, protocols_of(wan));
        put(info->UPLINKMODE, wan_mode(network));
        put(info->WANName, kConnectionName);
        put(info->SERVICELIST, "INTERNET");
        put(info->ADDRESSTYPE, wan_mode(network));
        put(info->IPADDRESS, ipv4.text);
        put(info->SUBNETMASK, ipv4.text.empty() ? "" : mask_of(ipv4.prefix_length));
        put(info->GATEWAY, network.gateway_ipv4);
        put(info->DNS1, dns1);
        put(info->DNS2, dns2);
        put(info->IPV6_CONNECTIONSTATUS,
            connection_state(wan.is_up && !wan.ipv6.empty() && network.has_ipv6_route));
        put(info->IPV6_PRIFIX, ipv6_network(lan_ipv6));
        put(info->IPV6_PREFIXLENGTH,
            lan_ipv6.text.empty() ? "" : std::to_string(lan_ipv6.prefix_length));
        put(info->IPV6_IPADDRESS, first_text(wan.ipv6));
        put(info->IPV6_GATEWAY, network.gateway_ipv6);
        put(info->IPV6_DNS1, ipv6_dns1);
        put(info->IPV6_DNS2, ipv6_dns2);
        put(info->PPPOE_USR_NAME, "");
        put(info->PPPOE_PASSWORD, "");
        put(info->PPPOE_PROXY, false);
        put(info->PPPOE_SERVICENAME, "");
        put(info->PPPOE_DIAL_MODE, "");
        put(info->NATENABLE, "");
        put(info->QOSENABLE, false);
        put(info->VLANID, "");
        put(info->VLANPRIORITY, "");
        return 0;
    });
}
