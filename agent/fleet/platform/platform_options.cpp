// SPDX-License-Identifier: MIT
#include "fleet/platform/platform_options.h"

#include "fleet/gateway_id.h"
#include "fleet/platform/page.h"
#include "service/common/config_error.h"
#include "service/ways_in/mqtt/topics.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <set>

namespace agent::fleet::platform {

namespace {

using service::in_message;

constexpr uint32_t kMostGateways = 1'000'000;
constexpr uint32_t kMostConnections = 64;

std::vector<std::string> ids_of(const PlatformArguments &arguments)
{
    std::vector<std::string> ids;
    if (arguments.count > kLastNumber - arguments.first + 1) {
        throw WrongUsage("--first and --count lead beyond the number " +
                         std::to_string(kLastNumber));
    }
    for (uint32_t number = 0; number < arguments.count; ++number) {
        ids.push_back(gateway_id(arguments.prefix, arguments.first + number));
    }
    for (const std::string &path : arguments.id_files) {
        const std::vector<std::string> listed = service::gateways_in(path);
        ids.insert(ids.end(), listed.begin(), listed.end());
    }
    if (ids.empty()) {
        throw WrongUsage("no gateway is given: --count or --ids");
    }
    if (ids.size() > kMostGateways) {
        throw WrongUsage("more than " + std::to_string(kMostGateways) + " gateways are given");
    }
    std::set<std::string_view> known;
    for (const std::string &id : ids) {
        if (const std::string problem = service::problem_of_gateway_id(id); !problem.empty()) {
            throw WrongUsage(in_message(id) + ": " + problem);
        }
        if (!known.insert(id).second) {
            throw WrongUsage("the gateway " + in_message(id) + " is given twice");
        }
    }
    return ids;
}

WatchedProcess watched_process(const std::string &word)
{
    const size_t equals = word.find('=');
    WatchedProcess watched;
    if (equals != std::string::npos) {
        const char *const end = word.data() + word.size();
        watched.name = word.substr(0, equals);
        const auto [read, error] = std::from_chars(word.data() + equals + 1, end, watched.process);
        if (error == std::errc() && read == end && watched.process > 0 && !watched.name.empty() &&
            watched.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") ==
                std::string::npos) {
            return watched;
        }
    }
    throw WrongUsage("--watch: " + in_message(word) +
                     " is not NAME=PID, with a name of small letters and digits");
}

std::chrono::milliseconds milliseconds(double seconds)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(seconds));
}

} // namespace

CLI::Option *add_platform_options(CLI::App &command,
                                  const std::shared_ptr<PlatformArguments> &arguments)
{
    arguments->prefix = kDefaultPrefix;
    const auto add = [&](const char *name, auto &place, const char *help, const char *type) {
        return command.add_option(name, place, help)->type_name(type)->allow_extra_args(false);
    };
    CLI::Option *broker = service::add_broker_options(command, *arguments);
    add("--count", arguments->count, "Number of gateways", "N")
        ->check(CLI::Range(1U, kMostGateways).description(""));
    add("--first", arguments->first, "Number of the first one; 1 by default", "NUMBER")
        ->check(CLI::Range(1U, kLastNumber).description(""));
    add("--prefix", arguments->prefix,
        "Beginning of their names, PREFIX-NUMBER; \"home\" by default", "PREFIX");
    add("--ids", arguments->id_files, "File with names of gateways, each on a line", "FILE");
    add("--connections", arguments->connections, "Connections to the broker; 4 by default", "N")
        ->check(CLI::Range(1U, kMostConnections).description(""));
    add("--repeat", arguments->repeat,
        "When a request without an answer is sent again; 5 seconds by default", "SECONDS")
        ->check(CLI::Range(0.1, 3600.0).description(""));
    add("--timeout", arguments->timeout,
        "When a request counts as unanswered; 120 seconds by default", "SECONDS")
        ->check(CLI::Range(0.1, 86400.0).description(""));
    add("--wait", arguments->wait, "How long to wait for gateways at first; 60 seconds by default",
        "SECONDS")
        ->check(CLI::Range(0.1, 86400.0).description(""));
    add("--seed", arguments->seed,
        "Start of the random choice of gateways and requests; 1 by default", "SEED");
    add("--watch", arguments->watched,
        "Report the processor time of a process and its children; may be repeated", "NAME=PID");
    add("--json", arguments->json, "Write the report as JSON", "FILE");
    add("--page", arguments->page, "Write the report as one HTML page", "FILE");
    add("--metrics", arguments->metrics,
        "Write metrics for Prometheus every second, for its collector of text files", "FILE");
    return broker;
}

PlatformOptions platform_options(const PlatformArguments &arguments)
{
    PlatformOptions options;
    static_cast<service::BrokerAccess &>(options) = service::broker_access(arguments);
    options.ids = ids_of(arguments);
    options.connections = arguments.connections;
    options.repeat = milliseconds(arguments.repeat);
    options.timeout = milliseconds(arguments.timeout);
    options.wait = milliseconds(arguments.wait);
    options.seed = arguments.seed;
    for (const std::string &word : arguments.watched) {
        options.watched.push_back(watched_process(word));
    }
    options.json = arguments.json;
    options.page = arguments.page;
    if (!options.page.empty()) {
        options.page_template = page_template();
    }
    options.metrics = arguments.metrics;
    return options;
}

} // namespace agent::fleet::platform
