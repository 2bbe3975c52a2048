// SPDX-License-Identifier: MIT
// What the subcommands of the platform's side have in common: which gateways, on which broker.
#pragma once

#include "service/ways_in/mqtt/broker_address.h"
#include "service/ways_in/mqtt/credentials.h"
#include "service/ways_in/mqtt/tls.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace agent::fleet::platform {

// The command line, or a file that it names, is not valid.
class WrongUsage : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// As given on the command line.
struct PlatformArguments {
    std::vector<std::string> brokers;
    uint32_t count = 0;
    uint32_t first = 1;
    std::string prefix;
    std::vector<std::string> id_files;
    std::string root = "gateway";
    bool insecure = false;
    std::string credentials;
    service::TlsOptions tls;
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
struct PlatformOptions {
    std::vector<service::BrokerAddress> brokers;
    service::Credentials credentials;
    service::TlsOptions tls;
    std::string root;
    std::vector<std::string> ids;
    uint32_t connections = 0;
    std::chrono::milliseconds repeat{};
    std::chrono::milliseconds timeout{};
    std::chrono::milliseconds wait{};
    uint64_t seed = 0;
    std::vector<WatchedProcess> watched;
    std::string json;    // files; empty: none
    std::string page;    // the same
    std::string metrics; // the same
};

// Throws WrongUsage.
PlatformOptions platform_options(const PlatformArguments &arguments);

} // namespace agent::fleet::platform
