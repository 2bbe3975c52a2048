// SPDX-License-Identifier: MIT
// Reports firmware updates and reboots to the host.
#pragma once

#include <cstdint>
#include <string>

namespace simulated_gateway {

void report_flashed_image(const std::string &version);

// For a device call that has failed. If it is a step of an update, the update has failed.
void report_failed_update(const char *function, const std::string &reason);

void report_reboot(int32_t seconds);

} // namespace simulated_gateway
