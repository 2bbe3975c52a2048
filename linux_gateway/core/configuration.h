// SPDX-License-Identifier: MIT
// Where on this machine the library finds what it needs.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace linux_gateway {

struct Configuration {
    std::string lan_bridge;
    std::string wan_port; // empty: the one that the default route uses
    std::string lease_file;
    // Files and folders. Debian's unit of dnsmasq names the folder on the command line.
    std::vector<std::string> dnsmasq_configuration = {"/etc/dnsmasq.conf", "/etc/dnsmasq.d"};
    std::string resolver_configuration = "/etc/resolv.conf";
    std::string state = "/var/lib/linux_gateway/state.json";
    std::string time_zone;                      // empty: the machine's
    std::string package = "linux-gateway";      // whose version is the gateway's firmware version
    std::string area_code;                      // of the operator
    std::optional<std::string> management_host; // IP or MAC address that the agent is reached from
    bool remove_at_exit = false;                // take the rules out of the kernel at the end
};

// What the text of a file says; file is its path, for errors. Throws an Error.
Configuration parse_configuration(const std::string &text, const std::string &file);

// The file that LINUX_GATEWAY_CONFIG names, or the default one if it is there, with what it does
// not name found on the machine. Throws an Error that says what is missing or wrong.
Configuration find_configuration();

} // namespace linux_gateway
