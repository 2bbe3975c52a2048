// SPDX-License-Identifier: MIT
#include "core/obstacles.h"

#include "enforcement/download_limits.h"
#include "system/dhcp_server.h"
#include "system/files.h"
#include "system/flow_tables.h"
#include "system/text.h"

#include <optional>
#include <unistd.h>

namespace linux_gateway {

static bool is_on(const char *switch_file)
{
    constexpr size_t most_bytes = 16;
    return trimmed(read_file_if_there(switch_file, most_bytes).value_or("")) == "1";
}

std::vector<std::string> obstacles(const Configuration &configuration, const Network &network)
{
    std::vector<std::string> sentences;
    if (network.wan_name.empty()) {
        sentences.emplace_back(
            "there is no default route, so the WAN port is not known: name it as "
            "wan_port in the configuration");
    } else if (!network.wan) {
        sentences.push_back("there is no WAN port " + in_quotes(network.wan_name));
    }
    if (!is_dhcp_server_running()) {
        sentences.emplace_back(
            "no DHCP server is running on this machine: start dnsmasq, which gives the hosts their "
            "addresses and the gateway their names");
    } else if (access(configuration.lease_file.c_str(), R_OK) != 0) {
        sentences.push_back("the lease file " + configuration.lease_file +
                            " cannot be read, so hosts have no names: name dnsmasq's file as "
                            "lease_file in the configuration");
    }
    if (!is_on("/proc/sys/net/ipv4/ip_forward")) {
        sentences.emplace_back("this machine does not route: net.ipv4.ip_forward is 0");
    }
    // Their folders are there while they run.
    if (access("/run/NetworkManager", F_OK) == 0) {
        sentences.push_back("NetworkManager is running: exclude " + configuration.lan_bridge +
                            " and its ports from it, since it may take them over");
    }
    if (access("/run/firewalld", F_OK) == 0) {
        sentences.emplace_back("firewalld is running: when it reloads, its rules and those of the "
                               "gateway apply both");
    }
    for (const std::string &table : find_flow_tables()) {
        sentences.push_back(flow_table_sentence(table));
    }
    if (const std::optional<std::string> kind =
            DownloadLimits().foreign_root(configuration.lan_bridge)) {
        sentences.push_back(configuration.lan_bridge + " has another program's queueing root (" +
                            *kind + "): remove it, or do without download limits");
    }
    return sentences;
}

} // namespace linux_gateway
