// SPDX-License-Identifier: MIT
#include "model/consistency.h"

#include <set>

namespace simulated_gateway {
namespace {

void check_connection(const Wan &wan, const std::string &path)
{
    if (wan.connected && !wan.bridged &&
        (wan.ip.empty() || wan.gateway.empty() || wan.primary_dns.empty())) {
        refuse(path + "/connected", "needs ip, gateway and primary_dns");
    }
    if (wan.connected != wan.fault.empty()) {
        refuse(path + "/fault", wan.connected ? "is set, but there is a connection"
                                              : "is missing, and there is no connection");
    }
}

void check_routed(const Home &home, const Wan &wan, const std::string &path)
{
    if (wan.mode.empty()) {
        refuse(path + "/mode", "is missing, and the connection is not bridged");
    }
    if (wan.mode == kPppoeMode && wan.pppoe_account.empty()) {
        refuse(path + "/pppoe_account", "is missing, and the mode is PPPoE");
    }
    const std::optional<uint32_t> ip = parse_ipv4(wan.ip);
    const std::optional<uint32_t> mask = parse_ipv4(wan.subnet_mask);
    const std::optional<uint32_t> gateway = parse_ipv4(wan.gateway);
    const uint32_t lan_mask = *parse_ipv4(home.lan.subnet_mask);
    if (ip && (*ip & lan_mask) == (*parse_ipv4(home.lan.ip) & lan_mask)) {
        refuse(path + "/ip", wan.ip + " is in the LAN");
    }
    if (mask && !is_mask(*mask)) {
        refuse(path + "/subnet_mask", wan.subnet_mask + " is not a subnet mask");
    }
    if (wan.mode != kStaticMode) {
        return;
    }
    if (!ip || !mask || !gateway || wan.primary_dns.empty()) {
        refuse(path + "/mode", "needs ip, subnet_mask, gateway and primary_dns");
    }
    if ((*ip & *mask) != (*gateway & *mask)) {
        refuse(path + "/gateway", wan.gateway + " is outside the subnet");
    }
}

void check_bridged(const Wan &wan, const std::string &path)
{
    Wan bridge;
    bridge.name = wan.name;
    bridge.interface = wan.interface;
    bridge.services = wan.services;
    bridge.bridged = true;
    bridge.connected = wan.connected;
    bridge.fault = wan.fault;
    bridge.qos = wan.qos;
    bridge.vlan_id = wan.vlan_id;
    bridge.vlan_priority = wan.vlan_priority;
    if (wan != bridge) {
        refuse(path + "/bridged", "excludes addresses, an account and nat");
    }
}

void check_ipv6(const Home &home, const Wan &wan, const std::string &path)
{
    if (wan.ipv6_prefix.empty() != (wan.ipv6_prefix_length == 0)) {
        refuse(path + "/ipv6_prefix", "needs a length, and the length needs a prefix");
    }
    if (!wan.ipv6_address.empty() && !home.identity.ipv6) {
        refuse(path + "/ipv6_address", "the router has no IPv6");
    }
}

bool is_for_the_internet(const Wan &wan)
{
    const std::vector<std::string> services = split_at_commas(wan.services);
    return std::ranges::find(services, kInternetService) != services.end();
}

void check_wan(const Home &home, const Wan &wan, const std::string &path)
{
    check_connection(wan, path);
    if (wan.bridged) {
        check_bridged(wan, path);
    } else {
        check_routed(home, wan, path);
    }
    check_ipv6(home, wan, path);
    if (wan.vlan_priority != 0 && wan.vlan_id == 0) {
        refuse(path + "/vlan_priority", "needs a vlan_id");
    }
}

} // namespace

void check_wans(const Home &home, const std::string &path)
{
    check_wan(home, home.wan, path + "/wan");
    if (home.wan.bridged) {
        refuse(path + "/wan/bridged", "the connection to the Internet is routed");
    }
    if (!is_for_the_internet(home.wan)) {
        refuse(path + "/wan/services", "do not include INTERNET");
    }
    std::set<std::string> names = {home.wan.name};
    std::set<std::string> interfaces = {home.wan.interface};
    for (size_t at = 0; at < home.other_wans.size(); ++at) {
        const Wan &wan = home.other_wans[at];
        const std::string place = item(path + "/other_wans", at);
        check_wan(home, wan, place);
        if (is_for_the_internet(wan)) {
            refuse(place + "/services", "INTERNET is reserved for /wan");
        }
        if (!names.insert(wan.name).second) {
            refuse(place + "/name", "there is another " + in_quotes(wan.name));
        }
        if (!interfaces.insert(wan.interface).second) {
            refuse(place + "/interface", "there is another " + in_quotes(wan.interface));
        }
    }
}

} // namespace simulated_gateway
