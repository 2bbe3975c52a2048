// SPDX-License-Identifier: MIT
// Reports to the host on failed calls.
#pragma once

#include <string>

namespace simulated_gateway {

void report_refusal(const char *function, const std::string &reason);

} // namespace simulated_gateway
