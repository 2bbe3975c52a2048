// SPDX-License-Identifier: MIT
#include "simulation/removed_hosts.h"

#include "io/clock.h"
#include "model/address_plan.h"
#include "simulation/host_activity.h"

namespace simulated_gateway {

void remove_host(State &state, const Host &host)
{
    Host removed = host;
    removed.ip.clear();
    removed.alias.clear();
    removed.blocked = false;
    removed.down_limit_kbps = 0;
    removed.address_bound = false;
    std::vector<Host> &hosts = state.home.hosts;
    hosts.erase(hosts.begin() + (&host - hosts.data()));
    // A host that is switched off will not reattach.
    if (removed.online) {
        state.removed_hosts.push_back({std::move(removed), now()});
    }
}

void reattach_removed_hosts(State &state)
{
    std::erase_if(state.removed_hosts, [&](RemovedHost &removed) {
        if (attached_since(state, removed.host) <= removed.time) {
            return false;
        }
        const std::optional<std::string> ip = free_pool_address(state.home);
        if (!ip) {
            return false;
        }
        removed.host.ip = *ip;
        state.home.hosts.push_back(removed.host);
        return true;
    });
}

void reattach_all_hosts(State &state)
{
    for (RemovedHost &removed : state.removed_hosts) {
        removed.time = std::max<int64_t>(0, state.boot_time - 1);
    }
}

} // namespace simulated_gateway
