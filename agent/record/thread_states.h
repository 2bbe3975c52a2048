// SPDX-License-Identifier: MIT
// What the threads of this process are doing, from the kernel's point of view.
#pragma once

#include <cstddef>

namespace agent::record {

// The number of threads of this process.
size_t count_of_threads();

// Whether every thread but the caller's is blocked: none is running, or waiting for a processor or
// a disk.
bool are_others_blocked();

} // namespace agent::record
