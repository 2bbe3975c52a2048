// SPDX-License-Identifier: MIT
// What the machine is, and the software on it.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace linux_gateway {

struct Machine {
    std::string product; // "Linux" if the hardware does not say
    std::string hardware_version;
    std::string processor;
};

// What does not change while the machine runs.
Machine read_machine();

struct Software {
    std::string version;
    std::string date; // of the installation, YYYY-MM-DD
};

// Reads those of the package, or of the system if the package is not installed.
class SoftwareReader {
  public:
    explicit SoftwareReader(std::string package);

    Software read();

  private:
    const std::string package_;
    std::mutex mutex_;   // guards everything below
    std::string status_; // identifies the version of dpkg's status file that was read
    Software software_;
};

// The version of an installed package in the text of dpkg's status file.
std::optional<std::string> installed_version(std::string_view status, std::string_view package);

std::string host_name();
int64_t uptime_seconds();
// The temperature of the processor, in degrees Celsius.
std::optional<int64_t> processor_temperature();
bool has_ipv6();

} // namespace linux_gateway
