// SPDX-License-Identifier: MIT
// What processes take of the machine, from /proc.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace agent::fleet {

// Bytes that no other process shares. Nothing if the process has gone.
std::optional<uint64_t> private_memory_of(pid_t process);
// Of its first thread, in user and kernel mode.
std::optional<std::chrono::nanoseconds> processor_time_of(pid_t process);

} // namespace agent::fleet
