// SPDX-License-Identifier: MIT
// The log of the process that has loaded the library. Without one, as in tests, standard error.
#pragma once

#include <string>

namespace linux_gateway {

void log_error(const std::string &text);
void log_info(const std::string &text);

} // namespace linux_gateway
