#include "removed_hosts.h"

#include "address_plan.h"
#include "clock.h"
#include "host_activity.h"

namespace simulated_gateway {

void remove_host(State &state, const Host &host)
{
    Host removed = host;
    removed.ip.clear();
    removed.alias.clear();
    removed.blocked = false;
    removed.down_limit_kbps = 0;
    removed.address_bound = false;
    removed.removed_time = now();
    std::vector<Host> &hosts = state.home.hosts;
    hosts.erase(hosts.begin() + (&host - hosts.data()));
    // One that is switched off will not come back.
    if (removed.online) {
        state.removed_hosts.push_back(std::move(removed));
    }
}

void let_removed_hosts_attach(State &state)
{
    std::erase_if(state.removed_hosts, [&](Host &host) {
        if (attached_since(state, host) <= host.removed_time) {
            return false;
        }
        const std::optional<std::string> ip = free_pool_address(state.home);
        if (!ip) {
            return false;
        }
        host.ip = *ip;
        host.removed_time = 0;
        state.home.hosts.push_back(host);
        return true;
    });
}

void let_all_attach_anew(State &state)
{
    for (Host &host : state.removed_hosts) {
        host.removed_time = state.boot_time - 1;
    }
}

} // namespace simulated_gateway
