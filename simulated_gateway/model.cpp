#include "model.h"

#include "clock.h"

namespace simulated_gateway {

void boot(State &state)
{
    state.boot_time = now();
    ++state.boot_count;
    state.wan_time = state.boot_time;
    state.optimization_time = 0;
}

void reconnect(State &state)
{
    Wan &wan = state.home.wan;
    if (wan.fault == kCableFault) {
        return;
    }
    wan.connected = !wan.ip.empty() && !wan.gateway.empty() && !wan.primary_dns.empty();
    wan.fault = wan.connected ? "" : kAddressFault;
    state.wan_time = now();
}

const char *connection_state(const Wan &wan)
{
    return wan.connected ? "Connected" : "Disconnected";
}

} // namespace simulated_gateway
