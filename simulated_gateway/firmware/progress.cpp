// SPDX-License-Identifier: MIT
#include "firmware/progress.h"

#include "io/host_listener.h"
#include "simulated_gateway/simulated_gateway.h"

namespace simulated_gateway {
namespace {

// Never destroyed: a worker thread may call the device while the process ends.
HostListener<SimulatedGatewayProgress> &progress_listener()
{
    static auto &only = *new HostListener<SimulatedGatewayProgress>;
    return only;
}

} // namespace

void Progress::report(int32_t percent)
{
    if (percent <= last_) {
        return;
    }
    last_ = percent;
    progress_listener().notify(task_, percent);
}

} // namespace simulated_gateway

void simulated_gateway_on_progress(SimulatedGatewayProgress report, void *context)
{
    simulated_gateway::progress_listener().set(report, context);
}
