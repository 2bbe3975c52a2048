// SPDX-License-Identifier: MIT
#include "fleet/usage.h"

#include <fstream>
#include <string>

namespace agent::fleet {

namespace {

std::string file_of(pid_t process, const char *name)
{
    return "/proc/" + std::to_string(process) + "/" + name;
}

} // namespace

std::optional<uint64_t> private_memory_of(pid_t process)
{
    std::ifstream in(file_of(process, "smaps_rollup"));
    uint64_t kilobytes = 0;
    bool is_known = false;
    std::string line;
    while (std::getline(in, line)) {
        if (line.starts_with("Private_Clean:") || line.starts_with("Private_Dirty:")) {
            kilobytes += std::stoull(line.substr(line.find(':') + 1));
            is_known = true;
        }
    }
    return is_known ? std::optional(kilobytes * 1024) : std::nullopt;
}

// The times in /proc/PID/stat are too coarse for processes that sleep most of the time.
std::optional<std::chrono::nanoseconds> processor_time_of(pid_t process)
{
    int64_t nanoseconds = 0;
    return std::ifstream(file_of(process, "schedstat")) >> nanoseconds
               ? std::optional(std::chrono::nanoseconds(nanoseconds))
               : std::nullopt;
}

} // namespace agent::fleet
