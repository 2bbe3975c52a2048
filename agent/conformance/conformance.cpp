// SPDX-License-Identifier: MIT
#include "conformance/conformance.h"

#include "conformance/report.h"
#include "conformance/worker.h"
#include "host/report_builders.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"

#include <algorithm>
#include <fstream>
#include <map>

namespace agent {

namespace {

std::vector<Check> all_checks()
{
    std::vector<Check> checks = {{kFunctions, kFunctions}};
    for (const Description &command : descriptions()) {
        if (!command["device_calls"].empty()) {
            checks.push_back({command["command"].text(), command["subject"].text(), &command});
        }
    }
    for (const ReportBuilder &report : report_builders()) {
        checks.push_back({std::string("report ") + report.name, "report", nullptr, report.name});
    }
    return checks;
}

bool is_named(const Check &check, const ConformanceOptions &options)
{
    return std::ranges::find(options.commands, check.name) != options.commands.end();
}

// Why the check is skipped; empty when it is run.
std::string reason_to_skip(const Check &check, const ConformanceOptions &options)
{
    const std::string effect =
        check.command != nullptr ? (*check.command)["effect"].text() : "none";
    if (effect == "lasting" && !is_named(check, options)) {
        return "cannot be undone: --allow-writes --command " + check.name;
    }
    return effect == "none" || options.allow_writes ? "" : "changes a setting: --allow-writes";
}

// The first name that belongs to no check; empty when all do.
std::string unknown_name(const std::vector<Check> &checks, const ConformanceOptions &options)
{
    for (const std::string &name : options.commands) {
        if (std::ranges::find(checks, name, &Check::name) == checks.end()) {
            return name;
        }
    }
    return "";
}

// In the order of the checks; after a signal, without the remaining ones.
CheckResults results_of(const std::vector<Check> &checks, const HostOptions &host,
                        const ConformanceOptions &options, const StopSignals &stop)
{
    std::map<std::string, CheckResult> done;
    std::vector<Check> wanted;
    for (const Check &check : checks) {
        const std::string reason = reason_to_skip(check, options);
        if (reason.empty()) {
            wanted.push_back(check);
        } else {
            done[check.name] = {Verdict::kSkipped, {reason}};
        }
    }
    const std::chrono::seconds patience(options.patience);
    run_checks(wanted, host, patience, stop, [&](const Check &check, CheckResult result) {
        done[check.name] = std::move(result);
    });

    CheckResults results;
    for (const Check &check : checks) {
        if (done.contains(check.name)) {
            results.emplace_back(check, done[check.name]);
        }
    }
    return results;
}

bool write_junit(const CheckResults &results, const HostOptions &host, const std::string &file)
{
    if (file.empty()) {
        return true;
    }
    std::ofstream out(file, std::ios::binary);
    out << junit_of(results, host.device.empty() ? "simulated gateway" : host.device);
    out.close();
    if (!out) {
        print_error("cannot write " + file);
    }
    return !out.fail();
}

} // namespace

int run_conformance(const HostOptions &host, const ConformanceOptions &options)
{
    std::vector<Check> checks = all_checks();
    const std::string unknown = unknown_name(checks, options);
    if (!unknown.empty()) {
        print_error(find_description(unknown) == nullptr
                        ? no_such_command(unknown)
                        : unknown + " calls no function of the device library");
        return kUnknownCommand;
    }
    if (!options.commands.empty()) {
        std::erase_if(checks, [&](const Check &check) { return !is_named(check, options); });
    }

    const StopSignals stop;
    ReplyOutput output;
    const CheckResults results = results_of(checks, host, options, stop);
    if (!output.write_line(table_of(results, host.verbose), &stop)) {
        print_error("nobody reads the table");
        return kCannotWrite;
    }
    if (!write_junit(results, host, options.junit)) {
        return kCannotWrite;
    }
    if (stop.arrived() != 0) {
        return kSignalled + stop.arrived();
    }
    return count_of(results, Verdict::kFailed) == 0 ? kSuccess : kCommandFailed;
}

} // namespace agent
