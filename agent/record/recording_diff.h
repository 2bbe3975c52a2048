// SPDX-License-Identifier: MIT
// The differences between two recordings.
#pragma once

#include <string>

namespace agent::record {

// Prints them by command and device call. Result: the exit status.
int run_diff(const std::string &left, const std::string &right);

} // namespace agent::record
