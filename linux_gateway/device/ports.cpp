// SPDX-License-Identifier: MIT
// The traffic counters of the ports: the WAN, and the ports of the LAN bridge.
#include "core/device_call.h"

#include "smart_router_service/device_access.h"

#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

using namespace linux_gateway;

static void fill(PortStatistics &entry, const std::string &name, const Link &link)
{
    put(entry.Port, name);
    put(entry.tx_traffic, link.sent_bytes);
    put(entry.rx_traffic, link.received_bytes);
    put(entry.tx_packets, link.sent_packets);
    put(entry.rx_packets, link.received_packets);
}

int32_t devapi_get_port_statistics_info(PortStatisticsInfo *info)
{
    return query(__func__, [&](const View &view) {
        std::vector<std::pair<std::string, const Link *>> ports;
        if (view.network->wan) {
            ports.emplace_back("WAN", &*view.network->wan);
        }
        int number = 0;
        for (const Link &link : view.network->ports) {
            ports.emplace_back("LAN" + std::to_string(++number), &link);
        }
        if (ports.empty()) {
            return 0;
        }
        // The plug-in frees it.
        auto *entries = static_cast<PortStatistics *>(calloc(ports.size(), sizeof(PortStatistics)));
        if (entries == nullptr) {
            throw std::bad_alloc();
        }
        info->entries = entries;
        info->count = static_cast<int32_t>(ports.size());
        for (const auto &[name, link] : ports) {
            fill(*entries++, name, *link);
        }
        return 0;
    });
}
