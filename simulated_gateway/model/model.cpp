#include "model/model.h"

#include "io/clock.h"
#include "simulation/port_counters.h"
#include "simulation/removed_hosts.h"

#include <algorithm>

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
    let_all_attach_anew(state);
    start_firmware(state);
}

void start_firmware(State &state)
{
    Firmware &firmware = state.firmware;
    firmware.running = firmware.next;
    const FirmwareSlot &started = firmware.slot(firmware.running);
    state.home.identity.software_version = started.version;
    state.home.identity.firmware_date = started.date;
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
    let_removed_hosts_attach(state);
}

void switch_network(Home &home, Ssid &ssid, bool on)
{
    if (on && !ssid.enabled) {
        ssid.on_since = now();
    }
    ssid.enabled = on;
    const bool last_went_off = std::ranges::none_of(
        home.ssids, [&](const Ssid &it) { return it.band == ssid.band && it.enabled; });
    if (on || last_went_off) {
        radio_of(home, ssid.band)->enabled = on;
    }
}

void reconnect(Wan &wan)
{
    if (wan.fault == kCableFault) {
        return;
    }
    const bool has_addresses = !wan.ip.empty() && !wan.gateway.empty() && !wan.primary_dns.empty();
    wan.connected = wan.bridged || has_addresses;
    wan.fault = wan.connected ? "" : kAddressFault;
}

void reconnect(State &state)
{
    Wan &wan = state.home.wan;
    reconnect(wan);
    if (wan.fault != kCableFault) {
        state.wan_time = now();
    }
}

const char *connection_state(const Wan &wan)
{
    return wan.connected ? "Connected" : "Disconnected";
}

} // namespace simulated_gateway
