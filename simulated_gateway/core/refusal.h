// SPDX-License-Identifier: MIT
// Reports failed calls to the host.
#pragma once

#include <string>

namespace simulated_gateway {

void report_refusal(const char *function, const std::string &reason);

} // namespace simulated_gateway
