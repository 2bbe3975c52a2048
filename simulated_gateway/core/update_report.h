// SPDX-License-Identifier: MIT
// What the host is told of firmware updates and of reboots.
#pragma once

#include <cstdint>
#include <string>

namespace simulated_gateway {

void report_flashed_image(const std::string &version);

// Of a device call that has failed: where it was a step of an update, the update has failed.
void report_failed_update(const char *function, const std::string &reason);

void report_reboot(int32_t seconds);

} // namespace simulated_gateway
