// SPDX-License-Identifier: MIT
#include "core/update_report.h"

#include "io/host_listener.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace simulated_gateway {
namespace {

constexpr std::string_view kSteps[] = {"devapi_download_image", "devapi_update_image",
                                       "devapi_flash_update_image"};

// Never destroyed: a worker thread may call the device while the process ends.
HostListener<SimulatedGatewayUpdate> &update_listener()
{
    static auto &only = *new HostListener<SimulatedGatewayUpdate>;
    return only;
}

HostListener<SimulatedGatewayReboot> &reboot_listener()
{
    static auto &only = *new HostListener<SimulatedGatewayReboot>;
    return only;
}

} // namespace

void report_flashed_image(const std::string &version)
{
    update_listener().notify(version.c_str(), nullptr);
}

void report_failed_update(const char *function, const std::string &reason)
{
    if (std::ranges::find(kSteps, function) != std::end(kSteps)) {
        update_listener().notify(nullptr, reason.c_str());
    }
}

void report_reboot(int32_t seconds)
{
    reboot_listener().notify(seconds);
}

} // namespace simulated_gateway

void simulated_gateway_on_update(SimulatedGatewayUpdate report, void *context)
{
    simulated_gateway::update_listener().set(report, context);
}

void simulated_gateway_on_reboot(SimulatedGatewayReboot report, void *context)
{
    simulated_gateway::reboot_listener().set(report, context);
}
