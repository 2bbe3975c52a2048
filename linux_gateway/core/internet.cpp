// SPDX-License-Identifier: MIT
#include "core/internet.h"

#include "system/error.h"
#include "system/files.h"
#include "system/machine.h"
#include "system/probes.h"

#include <algorithm>
#include <arpa/inet.h>

namespace linux_gateway {

const char *connection_state(bool is_connected)
{
    return is_connected ? "Connected" : "Disconnected";
}

std::string_view wan_mode(const Network &network)
{
    if (network.wan && network.wan->is_point_to_point) {
        return "PPPoE";
    }
    const bool is_dynamic =
        network.is_route_by_dhcp ||
        (network.wan && !network.wan->ipv4.empty() && network.wan->ipv4.front().is_dynamic);
    return is_dynamic ? "DHCP" : kStaticMode;
}

int64_t wan_uptime(const Network &network)
{
    if (!network.is_wan_connected()) {
        return 0;
    }
    const std::vector<Address> &addresses =
        network.wan->ipv4.empty() ? network.wan->ipv6 : network.wan->ipv4;
    return std::max<int64_t>(0, uptime_seconds() - addresses.front().created_seconds);
}

std::vector<std::string> name_servers(const Configuration &configuration)
{
    constexpr size_t most_bytes = 65536;
    return name_servers_in(
        read_file_if_there(configuration.resolver_configuration, most_bytes).value_or(""));
}

std::string ipv6_network(const Address &address)
{
    in6_addr bytes = {};
    if (inet_pton(AF_INET6, address.text.c_str(), &bytes) != 1) {
        return "";
    }
    for (int bit = std::max(address.prefix_length, 0); bit < 128; ++bit) {
        bytes.s6_addr[bit / 8] &= static_cast<uint8_t>(~(0x80 >> bit % 8));
    }
    char text[INET6_ADDRSTRLEN] = "";
    return inet_ntop(AF_INET6, &bytes, text, sizeof(text)) != nullptr ? text : "";
}

std::string first_text(const std::vector<Address> &addresses)
{
    return addresses.empty() ? "" : addresses.front().text;
}

Address lan_address(const Network &network)
{
    if (network.bridge.ipv4.empty()) {
        throw Error("the LAN bridge " + network.bridge.name + " has no IPv4 address");
    }
    return network.bridge.ipv4.front();
}

} // namespace linux_gateway
