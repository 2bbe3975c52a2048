// SPDX-License-Identifier: MIT
// Which libraries the host loads, and how.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace agent {

// Which of many homes to make of a scenario.
struct HomeOptions {
    uint64_t seed = 0;
    uint32_t number = 0;
};

constexpr int64_t kLeastRecordLimit = 64L * 1024;
constexpr int64_t kMostRecordLimit = 1L << 30;

class DeviceStage;

// The libraries to load, and the options of the simulated gateway. For an option that is not given,
// the gateway uses its environment and defaults.
struct HostOptions {
    std::string device;                  // path of the device library; empty: the installed one
    std::string device_recording;        // path of a recording in place of a device library
    DeviceStage *device_stage = nullptr; // answers all calls in place of a device library
    std::string plugin;                  // path of the plug-in; likewise
    std::optional<std::string> scenario;
    std::optional<std::string> state;
    std::vector<std::string> faults;
    std::optional<std::string> trace;
    bool show_secrets = false;
    std::optional<std::string> firmware_folder;
    std::optional<std::string> firmware_key;
    std::optional<int32_t> reboot_seconds;    // 0 without
    std::optional<HomeOptions> home;          // without: as the scenario has it
    std::optional<std::string> record;        // file of a recording
    int64_t record_limit = 64L * 1024 * 1024; // bytes of that file
    std::string mask_key; // file with the key of its pseudonyms; empty: a random key
    bool verbose = false; // list all symbols that a library lacks
};

} // namespace agent
