// SPDX-License-Identifier: MIT
// How parental control applies to a device, given by its MAC address.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// The entry of the table; null if there is none.
template <class AnyHome> auto *green_host_of(AnyHome &home, const std::string &mac)
{
    const auto found = std::ranges::find(home.green_net.hosts, mac, &GreenHost::mac);
    return found != home.green_net.hosts.end() ? &*found : nullptr;
}

// Whether it is under parental control: its periods are in force.
bool is_protected(const Home &home, const std::string &mac);

// Whether one of its periods denies it access now.
bool is_restricted(const Home &home, const std::string &mac);

} // namespace simulated_gateway
