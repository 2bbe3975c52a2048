// SPDX-License-Identifier: MIT
// Which libraries the host loads, and how.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace agent {

// Which libraries are loaded, and what the simulated gateway is told. What is not given is left to
// the gateway's environment and defaults.
struct HostOptions {
    std::string device; // path of the device library; empty: the one that is installed beside us
    std::string plugin; // the same of the plug-in
    std::optional<std::string> scenario;
    std::optional<std::string> state;
    std::vector<std::string> faults;
    std::optional<std::string> trace;
    bool show_secrets = false;
    std::optional<std::string> firmware_folder;
    std::optional<std::string> firmware_key;
    std::optional<int32_t> reboot_seconds; // 0 without
    bool verbose = false;                  // name all that a library lacks
};

} // namespace agent
