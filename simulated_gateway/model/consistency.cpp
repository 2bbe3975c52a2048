// SPDX-License-Identifier: MIT
#include "model/consistency.h"

namespace simulated_gateway {
namespace {

uint32_t number(const std::string &ip)
{
    return *parse_ipv4(ip);
}

void check_schedules(const Home &home, const std::string &path)
{
    const RebootSchedule &reboot = home.reboot_schedule;
    if (reboot.enabled && (reboot.time.empty() || reboot.days.empty())) {
        refuse(path + "/reboot_schedule", "needs time and days");
    }
    const UpdateWindow &update = home.update_schedule;
    if (update.enabled &&
        (update.start.empty() || update.end.empty() || update.start == update.end)) {
        refuse(path + "/update_schedule", "needs a start and a different end");
    }
    const SleepSchedule &sleep = home.sleep;
    if (sleep.gateway || sleep.wifi || sleep.leds) {
        if (sleep.start.empty() || sleep.end.empty() || sleep.start == sleep.end) {
            refuse(path + "/sleep", "needs a start and a different end");
        }
    }
    for (size_t at = 0; at < home.wifi_sleep.size(); ++at) {
        if (home.wifi_sleep[at].start == home.wifi_sleep[at].end) {
            refuse(item(path + "/wifi_sleep", at), "ends when it starts");
        }
    }
}

void check_lan(const Lan &lan, const std::string &path, Addresses &addresses)
{
    if (!is_lan_mask(number(lan.subnet_mask))) {
        refuse(path + "/subnet_mask", lan.subnet_mask + " is not a LAN subnet mask");
    }
    addresses.claim_lan_address(lan.ip, path + "/ip");
    addresses.require_in_lan(lan.dhcp_pool.start, path + "/dhcp_pool/start");
    addresses.require_in_lan(lan.dhcp_pool.end, path + "/dhcp_pool/end");
    if (number(lan.dhcp_pool.end) < number(lan.dhcp_pool.start)) {
        refuse(path + "/dhcp_pool/end", lan.dhcp_pool.end + " is before the start of the pool");
    }
    if (number(lan.dhcp_pool.start) <= number(lan.ip) &&
        number(lan.ip) <= number(lan.dhcp_pool.end)) {
        refuse(path + "/dhcp_pool", "contains the address of the router");
    }
}

void claim(std::map<std::string, std::string> &owners, const std::string &address,
           const std::string &path)
{
    const auto [owner, is_new] = owners.emplace(address, path);
    if (!is_new) {
        refuse(path, address + " belongs to " + owner->second);
    }
}

} // namespace

void refuse(const std::string &path, const std::string &reason)
{
    throw Error(path + ": " + reason);
}

std::string item(const std::string &list, size_t at)
{
    return list + "/" + std::to_string(at);
}

void Addresses::require_in_lan(const std::string &ip, const std::string &path) const
{
    const uint32_t mask = number(lan_.subnet_mask);
    const uint32_t subnet = number(lan_.ip) & mask;
    if ((number(ip) & mask) != subnet || number(ip) == subnet || number(ip) == (subnet | ~mask)) {
        refuse(path, ip + " is not a LAN address");
    }
}

void Addresses::claim_lan_address(const std::string &ip, const std::string &path)
{
    require_in_lan(ip, path);
    claim(ips_, ip, path);
}

void Addresses::claim_mac(const std::string &mac, const std::string &path)
{
    claim(macs_, mac, path);
}

void check_consistency(const Home &home, const std::string &path, Addresses &addresses)
{
    check_schedules(home, path);
    check_lan(home.lan, path + "/lan", addresses);
    addresses.claim_mac(home.identity.mac, path + "/identity/mac");
    check_wans(home, path);
    check_wifi(home, path, addresses);
    check_mesh(home, path + "/mesh", addresses);
    check_hosts(home, path, addresses);
    check_services(home, path);
    check_green_net(home.green_net, path + "/green_net");
}

} // namespace simulated_gateway
