// SPDX-License-Identifier: MIT
#include "core/call_report.h"

#include "io/host_listener.h"
#include "simulated_gateway/simulated_gateway.h"

#include <atomic>

namespace simulated_gateway {
namespace {

std::atomic<bool> is_reported = false;

// Never destroyed: a worker thread may call the device while the process ends.
HostListener<SimulatedGatewayCall> &call_listener()
{
    static auto &only = *new HostListener<SimulatedGatewayCall>;
    return only;
}

} // namespace

bool is_call_reported()
{
    return is_reported;
}

void report_call(const char *function, int32_t result, const std::string &line)
{
    call_listener().notify(function, result, line.c_str());
}

} // namespace simulated_gateway

void simulated_gateway_on_call(SimulatedGatewayCall report, void *context)
{
    simulated_gateway::is_reported = report != nullptr;
    simulated_gateway::call_listener().set(report, context);
}
