// SPDX-License-Identifier: MIT
// Reports device calls to the host.
#pragma once

#include <cstdint>
#include <string>

namespace simulated_gateway {

// Whether the host listens: composing a line for each call takes time.
bool is_call_reported();
void report_call(const char *function, int32_t result, const std::string &line);

} // namespace simulated_gateway
