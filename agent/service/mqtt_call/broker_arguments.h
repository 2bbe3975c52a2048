// SPDX-License-Identifier: MIT
// What the clients of gateways on a broker have in common on their command lines.
#pragma once

#include "service/ways_in/mqtt/broker_address.h"
#include "service/ways_in/mqtt/credentials.h"
#include "service/ways_in/mqtt/tls.h"
#include "service/ways_in/mqtt/topics.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace agent::service {

// The command line, or a file that it names, is not valid.
class WrongUsage : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// As given on the command line.
struct BrokerArguments {
    std::vector<std::string> brokers;
    std::string root = kDefaultRoot;
    bool insecure = false;
    std::string credentials; // a file; empty: none
    TlsOptions tls;
};

// Adds the options; returns that of the broker. The arguments have to outlive the command.
CLI::Option *add_broker_options(CLI::App &command, BrokerArguments &arguments);

// The same, checked and read.
struct BrokerAccess {
    std::vector<BrokerAddress> brokers; // the first one that can be reached is used
    Credentials credentials;
    TlsOptions tls;
    std::string root;
};

// Throws WrongUsage.
BrokerAccess broker_access(const BrokerArguments &arguments);

// The lines of the file, without empty ones and comments. Throws as read_all_of().
std::vector<std::string> gateways_in(const std::string &path);

} // namespace agent::service
