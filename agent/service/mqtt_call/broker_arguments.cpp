// SPDX-License-Identifier: MIT
#include "service/mqtt_call/broker_arguments.h"

#include "io/streams.h"
#include "service/common/config_error.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace agent::service {

namespace {

constexpr size_t kMaxIds = 16UL * 1024 * 1024; // bytes of a file

} // namespace

CLI::Option *add_broker_options(CLI::App &command, BrokerArguments &arguments)
{
    const auto add = [&command](const char *name, auto &place, const char *help, const char *type) {
        return command.add_option(name, place, help)->type_name(type)->allow_extra_args(false);
    };
    CLI::Option *broker =
        add("--broker", arguments.brokers,
            "Broker, mqtt://HOST[:PORT] or mqtts:// with TLS; of several the first that answers",
            "URL")
            ->required();
    add("--root", arguments.root, "Beginning of the gateways' topics; \"gateway\" by default",
        "ROOT");
    command.add_flag("--insecure", arguments.insecure,
                     "Connect to a broker on another machine without TLS");
    add("--broker-credentials", arguments.credentials,
        "File with the user and the password for the broker, each on a line", "FILE");
    add("--broker-ca", arguments.tls.ca,
        "Certificates that the broker's has to be signed by, instead of the system's", "FILE");
    add("--broker-certificate", arguments.tls.certificate, "Certificate of this client", "FILE");
    add("--broker-key", arguments.tls.key, "Private key of that certificate", "FILE");
    add("--broker-alpn", arguments.tls.alpn, "Application protocol to negotiate in TLS (ALPN)",
        "NAME");
    add("--broker-server-name", arguments.tls.server_name,
        "Name in the broker's certificate, instead of its host", "NAME");
    return broker;
}

BrokerAccess broker_access(const BrokerArguments &arguments)
{
    BrokerAccess access;
    for (const std::string &url : arguments.brokers) {
        try {
            access.brokers.push_back(parse_broker(url));
        } catch (const std::invalid_argument &problem) {
            throw WrongUsage("--broker: " + in_message(url) + ": " + problem.what());
        }
        const BrokerAddress &broker = access.brokers.back();
        if (!broker.is_tls && !broker.is_local() && !arguments.insecure) {
            throw WrongUsage(broker.url() + " is on another machine: use mqtts://, or --insecure "
                                            "to do without TLS");
        }
    }
    if (const std::string problem = problem_of_topic_root(arguments.root); !problem.empty()) {
        throw WrongUsage(problem);
    }
    access.root = arguments.root;
    if (arguments.tls.certificate.empty() != arguments.tls.key.empty()) {
        throw WrongUsage("a certificate and its key are given together");
    }
    access.tls = arguments.tls;
    if (!arguments.credentials.empty()) {
        try {
            access.credentials = read_credentials(arguments.credentials);
        } catch (const std::runtime_error &problem) {
            throw WrongUsage(problem.what());
        }
    }
    return access;
}

std::vector<std::string> gateways_in(const std::string &path)
{
    std::vector<std::string> ids;
    std::istringstream file(read_all_of(path, kMaxIds));
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.front() != '#') {
            ids.push_back(line);
        }
    }
    return ids;
}

} // namespace agent::service
