// SPDX-License-Identifier: MIT
#include "core/refusal.h"

#include "io/host_listener.h"
#include "simulated_gateway/simulated_gateway.h"

namespace simulated_gateway {
namespace {

// Never destroyed: a worker thread may call the device while the process ends.
HostListener<SimulatedGatewayRefusal> &refusal_listener()
{
    static auto &only = *new HostListener<SimulatedGatewayRefusal>;
    return only;
}

} // namespace

void report_refusal(const char *function, const std::string &reason)
{
    refusal_listener().notify(function, reason.c_str());
}

} // namespace simulated_gateway

void simulated_gateway_on_refusal(SimulatedGatewayRefusal report, void *context)
{
    simulated_gateway::refusal_listener().set(report, context);
}
