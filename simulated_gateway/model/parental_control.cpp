// SPDX-License-Identifier: MIT
#include "model/parental_control.h"

#include "io/clock.h"
#include "model/weekly_period.h"

namespace simulated_gateway {

bool is_protected(const Home &home, const std::string &mac)
{
    const GreenHost *entry = green_host_of(home, mac);
    return home.green_net.enabled && entry != nullptr && entry->is_protected;
}

bool is_restricted(const Home &home, const std::string &mac)
{
    if (!home.green_net.access_restricted || !is_protected(home, mac)) {
        return false;
    }
    return std::ranges::any_of(green_host_of(home, mac)->periods, [](const ProtectPeriod &period) {
        return period.enabled && is_within({period.start, period.end, period.days}, now());
    });
}

} // namespace simulated_gateway
