// hgagent, the reference agent: hosts the plug-in and a device library as a gateway's agent does.
#include "call.h"
#include "exit_status.h"
#include "log_sink.h"
#include "options.h"
#include "plugin_host.h"
#include "protocol_pages.h"
#include "serve.h"
#include "streams.h"
#include "text.h"

namespace {

int run(const agent::Options &options)
{
    switch (options.subcommand) {
    case agent::Subcommand::kCall:
        return agent::run_call(options.host, options.call);
    case agent::Subcommand::kServe:
        return agent::run_serve(options.host, options.serve);
    case agent::Subcommand::kList:
        return agent::run_list(options.pattern);
    case agent::Subcommand::kDescribe:
        return agent::run_describe(options.described);
    }
    return agent::kWrongUsage;
}

} // namespace

int main(int count, char **words)
{
    try {
        agent::secure_standard_streams();
        int exit_status = agent::kSuccess;
        const auto options = agent::parse_options(count, words, exit_status);
        if (!options) {
            return exit_status;
        }
        agent::set_log({options->log_level, options->host.show_secrets});
        return run(*options);
    } catch (const agent::HostError &problem) {
        agent::complain(problem.what());
        return problem.status();
    } catch (const agent::StreamError &problem) {
        agent::complain(problem.what());
        return agent::kCannotWrite;
    }
}
