// SPDX-License-Identifier: MIT
// The ports of the main router: their traffic counters and their bindings to WAN connections.
#include "core/device_call.h"
#include "model/port_names.h"
#include "simulation/port_counters.h"

using namespace simulated_gateway;

// ---- Statistics --------------------------------------------------------------------------------

static int64_t packets_of(int64_t bytes)
{
    constexpr int64_t ordinary_size = 800;
    return (bytes + ordinary_size - 1) / ordinary_size;
}

static void fill(PortStatistics &entry, const PortCounter &counter)
{
    put(entry.Port, counter.port);
    put(entry.tx_traffic, counter.sent);
    put(entry.rx_traffic, counter.received);
    put(entry.tx_packets, packets_of(counter.sent));
    put(entry.rx_packets, packets_of(counter.received));
}

int32_t devapi_get_port_statistics_info(PortStatisticsInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const std::vector<std::string> ports = all_ports(state.home);
        auto *entries = allocated<PortStatistics>(ports.size());
        info->entries = entries;
        info->count = static_cast<int32_t>(ports.size());
        for (const std::string &port : ports) {
            fill(*entries++, counter_of(state, port));
        }
        return 0;
    });
}

// ---- Bindings ----------------------------------------------------------------------------------

static void fill(PortBinding &entry, const Home &home, int64_t number, const Wan &wan)
{
    std::string ports;
    for (const BoundPort &binding : home.ports.bindings) {
        if (binding.wan == number) {
            ports += (ports.empty() ? "" : ",") + binding.port;
        }
    }
    put(entry.Index, number);
    put(entry.WANName, wan.name);
    put(entry.BoundPorts, ports);
}

int32_t devapi_get_port_binding_info(PortBindingInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        info->count = 0;
        fill(info->entries[info->count++], home, 1, home.wan);
        for (const Wan &wan : home.other_wans) {
            fill(info->entries[info->count], home, info->count + 1, wan);
            ++info->count;
        }
        return 0;
    });
}

// Keeps the bindings in the order of the ports.
static void bind_ports(Home &home, int64_t wan, const std::vector<std::string> &wanted)
{
    const std::vector<std::string> ports = bindable_ports(home);
    for (const std::string &port : wanted) {
        if (std::ranges::find(ports, port) == ports.end()) {
            throw Error("there is no port " + in_quotes(port));
        }
        if (std::ranges::count(wanted, port) > 1) {
            throw Error("ports names " + port + " twice");
        }
    }
    std::vector<BoundPort> bindings;
    for (const std::string &port : ports) {
        const auto bound = std::ranges::find(home.ports.bindings, port, &BoundPort::port);
        if (std::ranges::find(wanted, port) != wanted.end()) {
            bindings.push_back({port, wan});
        } else if (bound != home.ports.bindings.end() && bound->wan != wan) {
            bindings.push_back(*bound);
        }
    }
    home.ports.bindings = std::move(bindings);
}

int32_t devapi_set_port_binding(const char *index, const char *ports)
{
    return setting(__func__, {request_text("index", index), request_text("ports", ports)},
                   [&](State &state) {
                       Home &home = state.home;
                       const int64_t wan = number_of("index", index);
                       if (wan < 1 || wan > static_cast<int64_t>(home.other_wans.size()) + 1) {
                           throw Error("there is no WAN connection " + std::to_string(wan));
                       }
                       const std::string list = ports;
                       bind_ports(home, wan,
                                  list.empty() || list == kNoValue ? std::vector<std::string>()
                                                                   : split_at_commas(list));
                       return 0;
                   });
}
