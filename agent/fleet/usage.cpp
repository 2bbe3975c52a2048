// SPDX-License-Identifier: MIT
#include "fleet/usage.h"

#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

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

std::optional<std::chrono::milliseconds> processor_time_of(pid_t process)
{
    std::string line;
    if (!std::getline(std::ifstream(file_of(process, "stat")), line)) {
        return std::nullopt;
    }
    // The name in parentheses may contain anything; the times are the 12th and 13th word behind it.
    const size_t end = line.rfind(')');
    std::istringstream rest(end == std::string::npos ? "" : line.substr(end + 1));
    std::string word;
    for (int at = 0; at < 11; ++at) {
        rest >> word;
    }
    int64_t user = 0;
    int64_t kernel = 0;
    if (!(rest >> user >> kernel)) {
        return std::nullopt;
    }
    return std::chrono::milliseconds((user + kernel) * 1000 / sysconf(_SC_CLK_TCK));
}

} // namespace agent::fleet
