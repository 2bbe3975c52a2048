// SPDX-License-Identifier: MIT
#include "fleet/subcommands.h"

#include "fleet/fleet.h"
#include "fleet/options.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace agent::fleet {

namespace {

// The counts of gateways and their numbers; the value's name already describes them.
CLI::Validator gateway_number()
{
    return CLI::Range(uint32_t{1}, kLastNumber).description("");
}

} // namespace

void add_fleet(CLI::App &app, Options &options)
{
    CLI::App *command =
        app.add_subcommand("fleet", "Simulate thousands of gateways on an MQTT broker");
    auto fleet = std::make_shared<FleetOptions>();
    const auto add = [command](const char *name, auto &place, const char *help, const char *type) {
        return command->add_option(name, place, help)->type_name(type)->allow_extra_args(false);
    };
    add("--count", fleet->count, "How many gateways", "N")->check(gateway_number());
    // Needed only without a subcommand.
    service::add_broker_options(*command, fleet->broker)->required(false);
    add("--first", fleet->first, "Number of the first one; 1 by default", "NUMBER")
        ->check(gateway_number());
    add("--prefix", fleet->prefix, "Beginning of their names, PREFIX-NUMBER; \"home\" by default",
        "PREFIX");
    add("--scenario", fleet->mix, "Homes that they start from, with weights", "NAME[=WEIGHT],...");
    add("--seed", fleet->seed, "Start of the random choice of homes and faults; 1 by default",
        "SEED");
    add("--ramp", fleet->ramp, "Gateways that start each second; by default as the broker allows",
        "PER_SECOND")
        ->check(CLI::Range(0.1, 1e6).description(""));
    add("--states", fleet->states, "Folder in which the gateways keep their states", "FOLDER");
    command->add_flag(
        "--churn", fleet->churn,
        "Let power, connections, device libraries and updates fail by a plan from the "
        "seed");
    add("--policy", fleet->policy, "File with the policy; needed for a broker elsewhere", "FILE");
    add("--reconnect-spread", fleet->reconnect_spread,
        "Time within which gateways that have lost the broker come back", "SECONDS")
        ->check(CLI::Range(0.1, 86400.0).description(""));
    add("--metrics", fleet->metrics,
        "File for the metrics of the fleet, in the text format of Prometheus", "FILE");
    add("--log", fleet->log, "File for what the gateways write, each line with its name", "FILE");
    command->require_subcommand(0, 1);
    command->footer(R"(
hgagent fleet --count N --broker URL [OPTION ...]
The gateways are PREFIX-NUMBER on the broker, such as home-17. On a broker of this machine everything is
allowed to its clients. docs/fleet.md describes homes, faults and memory.)");
    command->callback([command, fleet, &options] {
        if (!command->get_subcommands().empty()) {
            return; // which has its own callback
        }
        for (const char *needed : {"--count", "--broker"}) {
            if (command->count(needed) == 0) {
                throw CLI::RequiredError(needed);
            }
        }
        options.subcommand = Subcommand::kOther;
        fleet->host = options.host;
        fleet->log_level = options.log_level;
        options.other = [fleet] {
            return run_fleet(*fleet);
        };
    });
}

} // namespace agent::fleet
