// What the host is told of calls that do not succeed.
#pragma once

#include <string>

namespace simulated_gateway {

void report_refusal(const char *function, const std::string &reason);

} // namespace simulated_gateway
