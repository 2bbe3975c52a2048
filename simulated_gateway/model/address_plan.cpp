// SPDX-License-Identifier: MIT
#include "model/address_plan.h"

#include <algorithm>
#include <set>

namespace simulated_gateway {
namespace {

uint32_t address(const char *field, const std::string &text)
{
    const std::optional<uint32_t> parsed = parse_ipv4(text);
    if (!parsed) {
        throw Error(std::string(field) + " is not an IPv4 address");
    }
    return *parsed;
}

struct Subnet {
    uint32_t mask;
    uint32_t first; // the network address
    uint32_t last;  // the broadcast address

    Subnet(uint32_t member, uint32_t its_mask)
        : mask(its_mask), first(member & its_mask), last(member | ~its_mask)
    {
    }
    bool holds(uint32_t address) const { return first <= address && address <= last; }
    bool is_host(uint32_t address) const { return first < address && address < last; }
};

// Excludes 0.0.0.0/8, loopback, multicast and reserved addresses.
bool is_unicast(uint32_t address)
{
    const uint32_t first_byte = address >> 24;
    return first_byte != 0 && first_byte != 127 && first_byte < 224;
}

void refuse_address_of_wan(const Subnet &subnet, const Wan &wan)
{
    const std::optional<uint32_t> ip = parse_ipv4(wan.ip);
    if (ip && subnet.holds(*ip)) {
        throw Error("the subnet contains the address of the WAN");
    }
}

Subnet accepted_subnet(const Home &home, const Lan &plan)
{
    const uint32_t gateway = address("GatewayLanIP", plan.ip);
    const uint32_t mask = address("SubnetMask", plan.subnet_mask);
    if (!is_lan_mask(mask)) {
        throw Error("SubnetMask is not a LAN subnet mask");
    }
    if (!is_unicast(gateway)) {
        throw Error("GatewayLanIP is not a host address");
    }
    const Subnet subnet(gateway, mask);
    if (gateway == subnet.first) {
        throw Error("GatewayLanIP is the address of the network");
    }
    if (gateway == subnet.last) {
        throw Error("GatewayLanIP is the broadcast address");
    }
    refuse_address_of_wan(subnet, home.wan);
    for (const Wan &wan : home.other_wans) {
        refuse_address_of_wan(subnet, wan);
    }
    const uint32_t start = address("StartIp", plan.dhcp_pool.start);
    const uint32_t end = address("EndIp", plan.dhcp_pool.end);
    if (!subnet.is_host(start)) {
        throw Error("StartIp is outside the subnet");
    }
    if (!subnet.is_host(end)) {
        throw Error("EndIp is outside the subnet");
    }
    if (end < start) {
        throw Error("EndIp is before StartIp");
    }
    if (start <= gateway && gateway <= end) {
        throw Error("the pool from StartIp to EndIp contains GatewayLanIP");
    }
    return subnet;
}

// All LAN addresses in use except that of the gateway.
std::vector<std::string *> held_addresses(Home &home)
{
    std::vector<std::string *> held;
    for (ChildRouter &router : home.mesh.child_routers) {
        held.push_back(&router.ip);
    }
    for (Host &host : home.hosts) {
        if (!host.ip.empty()) {
            held.push_back(&host.ip);
        }
    }
    return held;
}

} // namespace

void move_lan(Home &home, const Lan &plan)
{
    const Subnet subnet = accepted_subnet(home, plan);
    const uint32_t old_mask = *parse_ipv4(home.lan.subnet_mask);
    std::set<uint32_t> taken = {*parse_ipv4(plan.ip)};
    std::vector<std::string *> displaced;
    for (std::string *ip : held_addresses(home)) {
        const uint32_t old = *parse_ipv4(*ip);
        const uint32_t kept = subnet.is_host(old) ? old : subnet.first + (old & ~old_mask);
        if (subnet.is_host(kept) && taken.insert(kept).second) {
            *ip = ipv4_text(kept);
        } else {
            displaced.push_back(ip);
        }
    }
    const uint32_t end = *parse_ipv4(plan.dhcp_pool.end);
    uint32_t next = *parse_ipv4(plan.dhcp_pool.start);
    for (std::string *ip : displaced) {
        while (next <= end && !taken.insert(next).second) {
            ++next;
        }
        if (next > end) {
            throw Error("the pool is too small for the attached devices");
        }
        *ip = ipv4_text(next);
    }
    home.lan = plan;
}

void require_free_address(const Home &home, const Host &host, const std::string &ip)
{
    const uint32_t wanted = address("ip", ip);
    const Subnet subnet(*parse_ipv4(home.lan.ip), *parse_ipv4(home.lan.subnet_mask));
    if (!subnet.is_host(wanted)) {
        throw Error("ip is not a LAN address");
    }
    if (ip == home.lan.ip) {
        throw Error("ip is the address of the gateway");
    }
    for (const ChildRouter &router : home.mesh.child_routers) {
        if (ip == router.ip) {
            throw Error("ip belongs to " + router.name);
        }
    }
    for (const Host &other : home.hosts) {
        if (ip == other.ip && &other != &host) {
            throw Error("ip belongs to " + other.name);
        }
    }
}

std::optional<std::string> free_pool_address(const Home &home)
{
    std::set<std::string> held;
    for (const ChildRouter &router : home.mesh.child_routers) {
        held.insert(router.ip);
    }
    for (const Host &host : home.hosts) {
        held.insert(host.ip);
    }
    const uint32_t end = *parse_ipv4(home.lan.dhcp_pool.end);
    for (uint32_t next = *parse_ipv4(home.lan.dhcp_pool.start); next <= end; ++next) {
        std::string ip = ipv4_text(next);
        if (!held.contains(ip)) {
            return ip;
        }
    }
    return std::nullopt;
}

} // namespace simulated_gateway
