// SPDX-License-Identifier: MIT
// hgagent, the reference agent: hosts the plug-in and a device library like a gateway's agent.
#include "commands/call.h"
#include "commands/hosts.h"
#include "commands/notice.h"
#include "commands/options.h"
#include "commands/protocol_pages.h"
#include "commands/report.h"
#include "commands/serve.h"
#ifdef SMART_ROUTER_SERVICE
#include "commands/shell.h"
#endif
#include "commands/topology.h"
#include "conformance/conformance.h"
#include "host/plugin_seam.h"
#include "host/program.h"
#include "io/exit_status.h"
#include "io/process_memory.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "record/recorded_device.h"
#include "record/recording.h"
#include "record/recording_reader.h"
#ifdef SMART_ROUTER_SERVICE
#include "fleet/platform/subcommands.h"
#include "fleet/subcommands.h"
#include "service/subcommands.h"
#include "service/worker/listen.h"
#endif

#include <memory>

namespace {

#ifdef SMART_ROUTER_SERVICE
void add_others(CLI::App &app, agent::Options &options)
{
    agent::service::add_subcommands(app, options);
    agent::add_shell(app, options);
    agent::fleet::add_fleet(app, options);
    agent::fleet::platform::add_subcommands(app, options);
}
constexpr agent::AddSubcommands kAddOthers = add_others;
#else
constexpr agent::AddSubcommands kAddOthers = nullptr;
#endif

int run(const agent::Options &options)
{
    switch (options.subcommand) {
    case agent::Subcommand::kCall:
        return agent::run_call(options);
    case agent::Subcommand::kServe:
#ifdef SMART_ROUTER_SERVICE
        if (!options.serve.listen.empty()) {
            agent::service::wait_for_service(options.serve.listen);
        }
#endif
        return agent::run_serve(options);
    case agent::Subcommand::kNotice:
        return agent::run_notice(options);
    case agent::Subcommand::kReport:
        return agent::run_report(options);
    case agent::Subcommand::kHosts:
        return agent::run_hosts(options);
    case agent::Subcommand::kTopology:
        return agent::run_topology(options);
    case agent::Subcommand::kList:
        return options.list_events ? agent::run_list_of_events(options.pattern)
                                   : agent::run_list(options.pattern);
    case agent::Subcommand::kDescribe:
        return agent::run_describe(options.described);
    case agent::Subcommand::kConformance:
        return agent::run_conformance(options.host, options.conformance);
    case agent::Subcommand::kOther:
        return options.other();
    }
    return agent::kWrongUsage;
}

// The device library of --device-recording. Result: whether the subcommand can use it.
bool use_recorded_device(agent::Options &options)
{
    if (options.subcommand == agent::Subcommand::kOther ||
        options.subcommand == agent::Subcommand::kConformance) {
        agent::print_error(
            "--device-recording is for call, serve, notice, report, hosts and topology");
        return false;
    }
    // Workers of the plug-in may use it until the process ends.
    static std::unique_ptr<agent::DeviceStage> device;
    device = std::make_unique<agent::record::RecordedDevice>(options.host.device_recording);
    options.host.device_stage = device.get();
    return true;
}

int run(int count, char **words)
{
    agent::set_up_memory();
    int exit_status = agent::kSuccess;
    auto options = agent::parse_options(count, words, exit_status, kAddOthers);
    if (!options) {
        return exit_status;
    }
    agent::use_seams(agent::record::find_recording);
    agent::set_log({options->log_level, options->host.show_secrets});
    try {
        if (!options->host.device_recording.empty() && !use_recorded_device(*options)) {
            return agent::kWrongUsage;
        }
    } catch (const agent::record::BadRecording &problem) {
        agent::print_error(problem.what());
        return agent::kCannotLoad;
    }
    return run(*options);
}

} // namespace

int main(int count, char **words)
{
    return agent::run_program([&] { return run(count, words); });
}
