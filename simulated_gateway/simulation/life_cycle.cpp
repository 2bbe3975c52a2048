// SPDX-License-Identifier: MIT
#include "simulation/life_cycle.h"

#include "io/clock.h"
#include "simulation/port_counters.h"
#include "simulation/removed_hosts.h"

namespace simulated_gateway {

void boot(State &state)
{
    state.boot_time = now();
    ++state.boot_count;
    state.wan_time = state.boot_time;
    state.optimization_time = 0;
    state.link_speed_time = 0;
    state.under_way = {};
    state.port_counters = {state.boot_time, {}};
    reattach_all_hosts(state);
    start_firmware(state);
}

void let_time_pass(State &state)
{
    count_traffic(state);
    Home &home = state.home;
    for (GuestNetwork &guest : home.guest_networks) {
        Ssid &ssid = home.ssids[static_cast<size_t>(guest.ssid - 1)];
        if (!ssid.enabled || guest.seconds < 0) {
            guest.end_time = 0;
            continue;
        }
        if (guest.end_time == 0) {
            guest.end_time = later(now(), guest.seconds);
        }
        if (guest.end_time <= now()) {
            switch_network(home, ssid, false);
            guest.end_time = 0;
        }
    }
    reattach_removed_hosts(state);
}

} // namespace simulated_gateway
