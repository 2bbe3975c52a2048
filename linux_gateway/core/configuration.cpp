// SPDX-License-Identifier: MIT
#include "core/configuration.h"

#include "system/dhcp_server.h"
#include "system/error.h"
#include "system/files.h"
#include "system/mac.h"
#include "system/network_reader.h"
#include "system/text.h"
#include "toml_parser.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdlib>

namespace linux_gateway {
namespace {

constexpr char kDefaultFile[] = "/etc/linux_gateway.toml";
constexpr size_t kMostBytes = 65536;
// Each dot of a key nests a table, and tables are freed recursively.
constexpr auto kMostDots = 200;

std::string file_of_configuration()
{
    const char *named = secure_getenv("LINUX_GATEWAY_CONFIG");
    return named != nullptr && *named != '\0' ? named : kDefaultFile;
}

// A MAC or IP address as hosts are listed with it; empty if the text is neither.
std::string canonical_address(const std::string &text)
{
    if (const std::optional<Mac> mac = parse_mac(text)) {
        return to_text(*mac);
    }
    for (const int family : {AF_INET, AF_INET6}) {
        in6_addr bytes = {};
        char address[INET6_ADDRSTRLEN] = "";
        if (inet_pton(family, text.c_str(), &bytes) == 1 &&
            inet_ntop(family, &bytes, address, sizeof(address)) != nullptr) {
            return address;
        }
    }
    return "";
}

// The LAN bridge: the only one with an IPv4 address, or the only one of those whose hosts get their
// addresses from the DHCP server.
std::string find_bridge(const std::vector<Link> &interfaces, const DhcpServer &server)
{
    std::vector<std::string> bridges;
    std::vector<std::string> served;
    for (const Link &link : interfaces) {
        if (link.kind != "bridge" || link.ipv4.empty()) {
            continue;
        }
        bridges.push_back(link.name);
        const Address &address = link.ipv4.front();
        if (server.range_in(address.text, address.prefix_length) != nullptr) {
            served.push_back(link.name);
        }
    }
    const std::vector<std::string> &found = served.empty() ? bridges : served;
    if (found.empty()) {
        throw Error("no LAN bridge: no interface of this machine is a bridge with an IPv4 address");
    }
    if (found.size() > 1) {
        std::string names;
        for (const std::string &name : found) {
            names += (names.empty() ? "" : ", ") + name;
        }
        throw Error("no LAN bridge: it could be " + names + "; name it as lan_bridge in " +
                    file_of_configuration());
    }
    return found.front();
}

} // namespace

Configuration parse_configuration(const std::string &text, const std::string &file)
{
    size_t line = 0;
    for (const std::string_view one : split(text, '\n')) {
        ++line;
        if (std::ranges::count(one, '.') > kMostDots) {
            throw Error(file + ", line " + std::to_string(line) + ": more than " +
                        std::to_string(kMostDots) + " dots");
        }
    }
    Configuration configuration;
    toml::parse_result parsed;
    try {
        parsed = toml::parse(text);
    } catch (const toml::parse_error &error) {
        throw Error(file + ", line " + std::to_string(error.source().begin.line) + ": " +
                    std::string(error.description()));
    }
    const auto refuse = [&](const toml::key &key, const char *problem) {
        throw Error(file + ", line " + std::to_string(key.source().begin.line) + ": " +
                    printable(key.str()) + ' ' + problem);
    };
    for (const auto &entry : parsed) {
        const toml::key &key = entry.first;
        const toml::node &value = entry.second;
        const auto take = [&](std::string &target) {
            if (!value.is_string() || value.as_string()->get().empty()) {
                refuse(key, "is not a text");
            }
            target = value.as_string()->get();
        };
        const std::string_view name = key.str();
        if (name == "lan_bridge") {
            take(configuration.lan_bridge);
        } else if (name == "wan_port") {
            take(configuration.wan_port);
        } else if (name == "lease_file") {
            take(configuration.lease_file);
        } else if (name == "dnsmasq_configuration") {
            configuration.dnsmasq_configuration.resize(1);
            take(configuration.dnsmasq_configuration.front());
        } else if (name == "resolver_configuration") {
            take(configuration.resolver_configuration);
        } else if (name == "state") {
            take(configuration.state);
        } else if (name == "time_zone") {
            take(configuration.time_zone);
        } else if (name == "package") {
            take(configuration.package);
        } else if (name == "area_code") {
            take(configuration.area_code);
        } else if (name == "management_host") {
            take(configuration.management_host.emplace());
            const std::string address = canonical_address(*configuration.management_host);
            if (address.empty()) {
                refuse(key, "is neither an IP nor a MAC address");
            }
            configuration.management_host = address;
        } else if (name == "remove_at_exit") {
            if (!value.is_boolean()) {
                refuse(key, "is neither true nor false");
            }
            configuration.remove_at_exit = value.as_boolean()->get();
        } else {
            refuse(key, "is not a key of this file");
        }
    }
    return configuration;
}

Configuration find_configuration()
{
    Configuration configuration;
    const std::string path = file_of_configuration();
    if (const std::optional<std::string> text = read_file_unless_missing(path, kMostBytes)) {
        configuration = parse_configuration(*text, path);
    } else if (path != kDefaultFile) {
        throw Error("cannot read the configuration " + path);
    }
    const DhcpServer server = read_dhcp_server(configuration.dnsmasq_configuration);
    if (configuration.lan_bridge.empty()) {
        configuration.lan_bridge = find_bridge(read_interfaces(), server);
    }
    if (configuration.lease_file.empty()) {
        constexpr char of_debian[] = "/var/lib/misc/dnsmasq.leases";
        configuration.lease_file = server.lease_file.empty() ? of_debian : server.lease_file;
    }
    return configuration;
}

} // namespace linux_gateway
