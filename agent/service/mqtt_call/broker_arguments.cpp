// SPDX-License-Identifier: MIT
#include "service/mqtt_call/broker_arguments.h"

#include "io/streams.h"
#include "service/common/config_error.h"

#include <sstream>

namespace agent::service {

namespace {

constexpr size_t kMaxIds = 16UL * 1024 * 1024; // bytes of a file

} // namespace

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
