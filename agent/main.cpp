// hgagent, the reference agent: hosts the plug-in and a device library as a gateway's agent does.
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
#include "host/plugin_host.h"
#include "host/workers.h"
#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/process_memory.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#ifdef SMART_ROUTER_SERVICE
#include "service/subcommands.h"
#include "service/worker/listen.h"
#endif

#include <cstdio>
#include <exception>
#include <new>
#include <unistd.h>

namespace {

#ifdef SMART_ROUTER_SERVICE
void add_others(CLI::App &app, agent::Options &options)
{
    agent::service::add_subcommands(app, options);
    agent::add_shell(app, options);
}
constexpr agent::AddSubcommands kAddOthers = add_others;
#else
constexpr agent::AddSubcommands kAddOthers = nullptr;
#endif

// Has room for the names of all that a library may lack.
constexpr size_t kMaxHostError = 65536;

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
        return agent::run_conformance(options);
    case agent::Subcommand::kOther:
        return options.other();
    }
    return agent::kWrongUsage;
}

// Whatever goes wrong is said in a sentence.
int run(int count, char **words)
{
    try {
        agent::set_up_memory();
        agent::secure_standard_streams();
        agent::open_error_output();
        int exit_status = agent::kSuccess;
        const auto options = agent::parse_options(count, words, exit_status, kAddOthers);
        if (!options) {
            return exit_status;
        }
        agent::set_log({options->log_level, options->host.show_secrets});
        return run(*options);
    } catch (const agent::HostError &problem) {
        agent::complain(problem.what(), kMaxHostError);
        return problem.status();
    } catch (const agent::StreamError &problem) {
        agent::complain(problem.what());
        return agent::kCannotWrite;
    } catch (const std::bad_alloc &) {
        agent::complain_of_memory();
        return agent::kOutOfMemory;
    } catch (const std::exception &problem) { // of the system, while the libraries are brought up
        agent::complain(problem.what());
        return agent::kCannotLoad;
    }
}

} // namespace

int main(int count, char **words)
{
    const int exit_status = run(count, words);
    agent::finish_error_output();
    if (agent::has_other_threads()) {
        // A worker of the plug-in may still run: nothing that it uses may be taken from it.
        fflush(nullptr);
        _exit(exit_status);
    }
    return exit_status;
}
