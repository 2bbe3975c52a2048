// hgagent, the reference agent: hosts the plug-in and a device library as a gateway's agent does.
#include "commands/call.h"
#include "commands/hosts.h"
#include "commands/notice.h"
#include "commands/options.h"
#include "commands/protocol_pages.h"
#include "commands/report.h"
#include "commands/serve.h"
#include "commands/topology.h"
#include "conformance/conformance.h"
#include "host/program.h"
#include "io/exit_status.h"
#include "io/process_memory.h"
#include "protocol/log_sink.h"

namespace {

int run(const agent::Options &options)
{
    switch (options.subcommand) {
    case agent::Subcommand::kCall:
        return agent::run_call(options);
    case agent::Subcommand::kServe:
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
    }
    return agent::kWrongUsage;
}

int run(int count, char **words)
{
    agent::set_up_memory();
    int exit_status = agent::kSuccess;
    const auto options = agent::parse_options(count, words, exit_status);
    if (!options) {
        return exit_status;
    }
    agent::set_log({options->log_level, options->host.show_secrets});
    return run(*options);
}

} // namespace

int main(int count, char **words)
{
    return agent::run_program([&] { return run(count, words); });
}
