// SPDX-License-Identifier: MIT
// Fuzzes the files that the library for Linux reads: the input is the library's configuration, its
// state, the leases of dnsmasq, and the configuration of dnsmasq; each is read from the same text.
//
// What hosts and other programs have written has to be valid when it has been read. An error is on
// one line, a state that is accepted is the same after it has been saved, and so is a
// configuration's address.
#include "core/configuration.h"
#include "core/state.h"
#include "give_up.h"
#include "mutator.h"
#include "request.h"
#include "smart_router_service/device_access.h"
#include "system/dhcp_server.h"
#include "system/error.h"
#include "system/leases.h"
#include "system/network_reader.h"
#include "system/text.h"

#include <arpa/inet.h>

using namespace fuzz;
using namespace linux_gateway;

// Only to link the configuration: no network is read.
std::vector<Link> linux_gateway::read_interfaces()
{
    return {};
}

namespace {

constexpr char kFile[] = "input.toml";

bool is_ipv4(const std::string &text)
{
    in_addr address = {};
    return inet_pton(AF_INET, text.c_str(), &address) == 1;
}

void check(const Error &error)
{
    if (*error.what() == '\0' || printable(error.what()) != error.what()) {
        give_up("not a message", error.what());
    }
}

void check_leases(std::string_view text)
{
    constexpr size_t kLongest = 255UL * 3; // bytes that are not UTF-8 take three
    for (const Lease &lease : parse_leases(text)) {
        if (!is_ipv4(lease.ipv4) || printable(lease.name) != lease.name ||
            lease.name.size() > kLongest || parse_mac(to_text(lease.mac)) != lease.mac) {
            give_up("not a lease: " + lease.ipv4 + ' ' + lease.name);
        }
    }
}

void check_dhcp_settings(std::string_view text)
{
    DhcpServer server;
    add_dhcp_settings(server, text);
    for (const DhcpServer::Range &range : server.ranges) {
        if (!is_ipv4(range.start) || !is_ipv4(range.end)) {
            give_up("not a range: " + range.start + ' ' + range.end);
        }
    }
    if (!server.router.empty() && !is_ipv4(server.router)) {
        give_up("not a router", server.router);
    }
    server.range_in("192.168.1.1", 24);
}

void check_state(const std::string &text)
{
    try {
        const State state = read_state(text);
        if (read_state(to_json(state)) != state) {
            give_up("a state that differs after it has been saved", to_json(state));
        }
        const Rules rules = rules_of(state, "br0", std::nullopt);
        for (const Mac &mac : rules.blocked) {
            if (!state.hosts.at(mac).blocked) {
                give_up("a host is blocked that is not");
            }
        }
        if (state.hosts.size() > kMostHostSettings ||
            state.green_hosts.size() > GREENNET_MAX_HOSTS) {
            give_up("a state that is too large");
        }
    } catch (const Error &error) {
        check(error);
    }
}

void check_configuration(const std::string &text)
{
    try {
        const Configuration read = parse_configuration(text, kFile);
        if (read.state.empty() || read.resolver_configuration.empty() || read.package.empty() ||
            read.dnsmasq_configuration.empty()) {
            give_up("a configuration without what it has by default");
        }
        if (read.management_host) {
            const std::string again = "management_host = \"" + *read.management_host + "\"\n";
            if (parse_configuration(again, kFile).management_host != read.management_host) {
                give_up("an address that differs when it is read again", again);
            }
        }
    } catch (const Error &error) {
        check(error);
        if (!std::string_view(error.what()).starts_with(kFile)) {
            give_up("a message without the file", error.what());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(fuzz::text_of(data, size));
    check_leases(text);
    check_dhcp_settings(text);
    check_state(text);
    check_configuration(text);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    const std::string_view text = fuzz::text_of(data, size);
    Request state;
    state.object.reset(cJSON_ParseWithLength(text.data(), text.size()));
    if (state.object == nullptr || mutator.one_in(4)) {
        return LLVMFuzzerMutate(data, size, room);
    }
    mutator.change(state);
    return write_out(print(state.object.get()), data, size, room);
}
