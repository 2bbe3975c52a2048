// SPDX-License-Identifier: MIT
// The limits of this machine, compared in advance with what a fleet needs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace agent::fleet {

// What the machine has. Nothing: there is no such limit, or it is unknown.
struct Limits {
    std::optional<uint64_t> memory;      // bytes that are free
    std::optional<uint64_t> processes;   // that may still be started
    std::optional<uint64_t> descriptors; // of one process
    std::optional<uint64_t> files;       // that all processes may still open
    std::optional<uint64_t> ports;       // for connections to one address
};

// Of this process and its children. Raises what it may raise.
Limits limits_of_this_machine();

// What a gateway takes after ten minutes under load, kernel memory included (docs/fleet.md).
constexpr uint64_t kMemoryOfGateway = 1200UL * 1024;
constexpr uint64_t kDescriptorsOfGateway = 32;

// Why so many gateways cannot be started; empty if they can.
std::string problem_of(const Limits &limits, uint32_t count);

} // namespace agent::fleet
