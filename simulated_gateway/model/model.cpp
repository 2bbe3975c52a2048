// SPDX-License-Identifier: MIT
#include "model/model.h"

#include "io/clock.h"

#include <algorithm>

namespace simulated_gateway {

void start_firmware(State &state)
{
    Firmware &firmware = state.firmware;
    firmware.running = firmware.next;
    const FirmwareSlot &started = firmware.slot(firmware.running);
    state.home.identity.software_version = started.version;
    state.home.identity.firmware_date = started.date;
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
