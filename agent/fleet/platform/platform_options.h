// SPDX-License-Identifier: MIT
// What the subcommands of the platform's side have in common: which gateways, on which broker.
#pragma once

#include "service/mqtt_call/broker_arguments.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace agent::fleet::platform {

using service::WrongUsage;

// As given on the command line.
struct PlatformArguments : service::BrokerArguments {
    uint32_t count = 0;
    uint32_t first = 1;
    std::string prefix;
    std::vector<std::string> id_files;
    uint32_t connections = 4;
    double repeat = 5;    // seconds
    double timeout = 120; // seconds
    double wait = 60;     // seconds
    uint64_t seed = 1;
    std::vector<std::string> watched; // NAME=PID
    std::string json;
    std::string page;
    std::string metrics;
};

CLI::Option *add_platform_options(CLI::App &command,
                                  const std::shared_ptr<PlatformArguments> &arguments);

struct WatchedProcess {
    std::string name;
    int process = 0;
};

// The same, checked and read.
struct PlatformOptions : service::BrokerAccess {
    std::vector<std::string> ids;
    uint32_t connections = 0;
    std::chrono::milliseconds repeat{};
    std::chrono::milliseconds timeout{};
    std::chrono::milliseconds wait{};
    uint64_t seed = 0;
    std::vector<WatchedProcess> watched;
    std::string json;          // files; empty: none
    std::string page;          // the same
    std::string page_template; // for the page, if there is to be one
    std::string metrics;       // as json
};

// Throws WrongUsage.
PlatformOptions platform_options(const PlatformArguments &arguments);

} // namespace agent::fleet::platform
