// SPDX-License-Identifier: MIT
// Start and end of a process, common to the programs that host the plug-in.
#pragma once

#include <functional>

namespace agent {

// Does the work and returns its exit status. Prints an error message on failure.
int run_program(const std::function<int()> &work);

} // namespace agent
