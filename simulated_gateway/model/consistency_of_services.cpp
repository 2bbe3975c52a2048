// SPDX-License-Identifier: MIT
#include "model/consistency.h"
#include "model/port_names.h"
#include "model/traffic_type.h"

#include <set>

namespace simulated_gateway {
namespace {

void check_bindings(const Home &home, const std::string &path)
{
    std::set<std::string> bound;
    for (size_t at = 0; at < home.ports.bindings.size(); ++at) {
        const BoundPort &binding = home.ports.bindings[at];
        const std::string place = item(path + "/ports/bindings", at);
        const std::vector<std::string> ports = bindable_ports(home);
        if (std::ranges::find(ports, binding.port) == ports.end()) {
            refuse(place + "/port", "there is no port " + in_quotes(binding.port));
        }
        if (!bound.insert(binding.port).second) {
            refuse(place + "/port", binding.port + " is already bound");
        }
        if (binding.wan > static_cast<int64_t>(home.other_wans.size()) + 1) {
            refuse(place + "/wan", "there is no WAN connection " + std::to_string(binding.wan));
        }
    }
}

void check_qos(const Qos &qos, const std::string &path)
{
    std::set<int64_t> numbers;
    for (size_t at = 0; at < qos.rules.size(); ++at) {
        const Classification &rule = qos.rules[at];
        const std::string place = item(path + "/rules", at);
        if (!numbers.insert(rule.number).second) {
            refuse(place + "/number", "there is another rule " + std::to_string(rule.number));
        }
        for (size_t type = 0; type < rule.traffic.size(); ++type) {
            const std::string wrong = validation_error(rule.traffic[type]);
            if (!wrong.empty()) {
                refuse(item(place + "/traffic", type), wrong);
            }
        }
    }
}

} // namespace

void check_services(const Home &home, const std::string &path)
{
    if (home.service_switches.multiservice_mode == kByVlan && !home.identity.vlan_binding) {
        refuse(path + "/service_switches/multiservice_mode", "the router binds no VLANs");
    }
    check_bindings(home, path);
    check_qos(home.qos, path + "/qos");
}

} // namespace simulated_gateway
