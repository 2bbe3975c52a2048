// The record of an attached device, which several lists of devices are made of.
#pragma once

#include "core/device_call.h"

namespace simulated_gateway {

// The clock by which a record says since when the device is attached.
enum class Clock { kUtc, kLocal };

void fill(AdBaseInfo &info, const State &state, const Host &host, Clock clock);

// The host with the index; null when there is none.
const Host *host_at(const Home &home, int64_t index);
int32_t index_of(const Home &home, const Host &host);

// The host with the MAC address in any form; throws an Error, in the given name, when there is
// none.
Host &named_host(Home &home, const char *name, const std::string &mac);

// The number, or nothing for 0.
std::string number_or_none(int64_t number);

// What tells a device from all others: its MAC address without the colons.
std::string identifier_of(const std::string &mac);

} // namespace simulated_gateway
