// SPDX-License-Identifier: MIT
#include "fleet/limits.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

namespace agent::fleet {

namespace {

std::optional<uint64_t> number_in(const std::string &file)
{
    uint64_t number = 0;
    std::ifstream in(file);
    return in >> number ? std::optional(number) : std::nullopt;
}

std::optional<uint64_t> least(std::optional<uint64_t> one, std::optional<uint64_t> other)
{
    return one && other ? std::min(*one, *other) : (one ? one : other);
}

std::optional<uint64_t> difference(std::optional<uint64_t> limit, std::optional<uint64_t> used)
{
    return limit && used ? std::optional(*limit > *used ? *limit - *used : 0) : std::nullopt;
}

// The folder of this process's control group; both versions are in use.
std::string group_folder(const std::string &controller)
{
    std::ifstream in("/proc/self/cgroup");
    std::string line;
    while (std::getline(in, line)) {
        const size_t first = line.find(':');
        const size_t second = line.find(':', first + 1);
        if (first == std::string::npos || second == std::string::npos) {
            continue;
        }
        const std::string controllers = line.substr(first + 1, second - first - 1);
        const std::string path = line.substr(second + 1);
        if (controllers.empty()) {
            return "/sys/fs/cgroup" + path;
        }
        if (controllers.find(controller) != std::string::npos) {
            return std::string("/sys/fs/cgroup/").append(controllers).append(path);
        }
    }
    return {};
}

std::optional<uint64_t> free_memory()
{
    std::ifstream in("/proc/meminfo");
    std::string name;
    uint64_t kilobytes = 0;
    std::string rest;
    std::optional<uint64_t> available;
    while (in >> name >> kilobytes && std::getline(in, rest)) {
        if (name == "MemAvailable:") {
            available = kilobytes * 1024;
        }
    }
    const std::string group = group_folder("memory");
    const auto in_group =
        least(difference(number_in(group + "/memory.max"), number_in(group + "/memory.current")),
              difference(number_in(group + "/memory.limit_in_bytes"),
                         number_in(group + "/memory.usage_in_bytes")));
    return least(available, in_group);
}

// All threads of the machine.
std::optional<uint64_t> threads()
{
    std::ifstream in("/proc/loadavg");
    std::string word;
    for (int at = 0; at < 4; ++at) {
        in >> word;
    }
    const size_t slash = word.find('/');
    uint64_t count = 0;
    std::istringstream text(slash == std::string::npos ? "" : word.substr(slash + 1));
    return text >> count ? std::optional(count) : std::nullopt;
}

// Its soft limit is raised to the hard one.
std::optional<uint64_t> resource_limit(__rlimit_resource resource)
{
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0) {
        return std::nullopt;
    }
    limit.rlim_cur = limit.rlim_max;
    setrlimit(resource, &limit);
    getrlimit(resource, &limit);
    return limit.rlim_cur != RLIM_INFINITY ? std::optional<uint64_t>(limit.rlim_cur) : std::nullopt;
}

std::optional<uint64_t> free_processes()
{
    const auto used = threads();
    auto free = least(difference(number_in("/proc/sys/kernel/pid_max"), used),
                      difference(number_in("/proc/sys/kernel/threads-max"), used));
    const std::string group = group_folder("pids");
    free =
        least(free, difference(number_in(group + "/pids.max"), number_in(group + "/pids.current")));
    // The system counts all processes of a user, but none of root's.
    return geteuid() != 0 ? least(free, resource_limit(RLIMIT_NPROC)) : free;
}

std::optional<uint64_t> free_files()
{
    uint64_t used = 0;
    uint64_t unused = 0;
    uint64_t most = 0;
    std::ifstream in("/proc/sys/fs/file-nr");
    return in >> used >> unused >> most ? difference(most, used) : std::nullopt;
}

std::optional<uint64_t> ports()
{
    uint64_t first = 0;
    uint64_t last = 0;
    std::ifstream in("/proc/sys/net/ipv4/ip_local_port_range");
    return in >> first >> last && last >= first ? std::optional(last - first + 1) : std::nullopt;
}

std::string megabytes(uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MB";
}

} // namespace

Limits limits_of_this_machine()
{
    Limits limits;
    limits.memory = free_memory();
    limits.processes = free_processes();
    limits.descriptors = resource_limit(RLIMIT_NOFILE);
    limits.files = free_files();
    limits.ports = ports();
    return limits;
}

std::string problem_of(const Limits &limits, uint32_t count)
{
    const std::string gateways = std::to_string(count) + (count == 1 ? " gateway" : " gateways");
    const auto at_most = [](uint64_t number) {
        return "at most " + std::to_string(number) + " can be started";
    };
    if (limits.memory && count * kMemoryOfGateway > *limits.memory) {
        return gateways + " need about " + megabytes(count * kMemoryOfGateway) +
               " of memory, and " + megabytes(*limits.memory) +
               " are free: " + at_most(*limits.memory / kMemoryOfGateway);
    }
    if (limits.processes && count > *limits.processes) {
        return gateways + " are as many processes, and the system allows " +
               std::to_string(*limits.processes) + " more (ulimit -u, pids.max, pid_max)";
    }
    if (limits.descriptors && kDescriptorsOfGateway > *limits.descriptors) {
        return "a gateway needs " + std::to_string(kDescriptorsOfGateway) +
               " descriptors, and a process may have " + std::to_string(*limits.descriptors) +
               " (ulimit -n)";
    }
    if (limits.files && count * kDescriptorsOfGateway > *limits.files) {
        return gateways + " open up to " + std::to_string(count * kDescriptorsOfGateway) +
               " files, and the system allows " + std::to_string(*limits.files) +
               " more (fs.file-max)";
    }
    if (limits.ports && count > *limits.ports) {
        return gateways +
               " need a port each for the connection to the broker, and the system has " +
               std::to_string(*limits.ports) + " for one address (net.ipv4.ip_local_port_range)";
    }
    return {};
}

} // namespace agent::fleet
