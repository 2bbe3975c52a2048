// SPDX-License-Identifier: MIT
// The record of an attached device, which several device lists contain.
#pragma once

#include "core/device_call.h"

namespace simulated_gateway {

// The clock in which a record gives the time of attachment.
enum class Clock { kUtc, kLocal };

void fill(AdBaseInfo &info, const State &state, const Host &host, Clock clock);

// The host with the index; null if there is none.
const Host *host_at(const Home &home, int64_t index);
int32_t index_of(const Home &home, const Host &host);

// The host with the MAC address in any notation. Throws an Error that starts with the given name if
// there is none.
Host &named_host(Home &home, const char *name, const std::string &mac);

// The number as text; empty for 0.
std::string number_or_none(int64_t number);

// The unique identifier of a device: its MAC address without the colons.
std::string identifier_of(const std::string &mac);

} // namespace simulated_gateway
