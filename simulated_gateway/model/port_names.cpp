// SPDX-License-Identifier: MIT
#include "model/port_names.h"

namespace simulated_gateway {
namespace {

std::vector<std::string> lan_ports(const Home &home)
{
    std::vector<std::string> names;
    for (int64_t number = 1; number <= home.ports.lan; ++number) {
        names.push_back(lan_port(number));
    }
    return names;
}

} // namespace

std::string lan_port(int64_t number)
{
    return "LAN" + std::to_string(number);
}

std::vector<std::string> all_ports(const Home &home)
{
    std::vector<std::string> names = lan_ports(home);
    names.insert(names.begin(), kWanPort);
    for (const Radio &radio : home.radios) {
        names.push_back(radio.band);
    }
    return names;
}

std::vector<std::string> bindable_ports(const Home &home)
{
    std::vector<std::string> names = lan_ports(home);
    for (size_t number = 1; number <= home.ssids.size(); ++number) {
        names.push_back("SSID" + std::to_string(number));
    }
    return names;
}

} // namespace simulated_gateway
