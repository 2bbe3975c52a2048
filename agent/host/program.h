// SPDX-License-Identifier: MIT
// What the programs that host the plug-in have in common from their start to their end.
#pragma once

#include <functional>

namespace agent {

// Does the work and returns its exit status. Whatever goes wrong is said in a sentence.
int run_program(const std::function<int()> &work);

} // namespace agent
