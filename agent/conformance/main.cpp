// SPDX-License-Identifier: MIT
// hg-conformance, the test of device libraries as a separate program: it runs on routers that lack
// the libraries of the reference agent. It does the same as "hgagent conformance".
#include "conformance/conformance.h"
#include "host/program.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "protocol/log_sink.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <getopt.h>
#include <optional>

namespace {

constexpr char kUsage[] =
    "usage: " PROGRAM_NAME " --device LIB [OPTION...]\n"
    "\n"
    "Tests a device-access library against what the plug-in relies on.\n"
    "\n"
    "  --device LIB        the device library\n"
    "  --plugin LIB        the plug-in; without it libsmart_router_service.so, from where it was\n"
    "                      installed with this program or from the folder lib beside its own\n"
    "  --allow-writes      also test the commands that change settings, and restore these\n"
    "  --command NAME      only this command, also one that cannot be undone; may be repeated\n"
    "  --patience SECONDS  how long one check may take, 60 unless given\n"
    "  --junit FILE        also write the results for a build server\n"
    "  --log-level N       highest level of log lines that are shown, 3 (errors) unless given\n"
    "  --verbose           name all functions that the library lacks\n"
    "  --version, --help\n";

enum Option {
    kDevice,
    kPlugin,
    kWrites,
    kCommand,
    kPatience,
    kJunit,
    kLog,
    kVerbose,
    kVersion,
    kHelp
};

constexpr option kOptions[] = {
    {"device", required_argument, nullptr, kDevice},
    {"plugin", required_argument, nullptr, kPlugin},
    {"allow-writes", no_argument, nullptr, kWrites},
    {"command", required_argument, nullptr, kCommand},
    {"patience", required_argument, nullptr, kPatience},
    {"junit", required_argument, nullptr, kJunit},
    {"log-level", required_argument, nullptr, kLog},
    {"verbose", no_argument, nullptr, kVerbose},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, kHelp},
    {},
};

constexpr int32_t kMostSeconds = 86400;

// Nothing if it is not a number in the range.
std::optional<int32_t> number(const char *text, int32_t least, int32_t most)
{
    char *end = nullptr;
    errno = 0;
    const long value = strtol(text, &end, 10);
    if (end == text || *end != '\0' || errno != 0 || value < least || value > most) {
        return std::nullopt;
    }
    return static_cast<int32_t>(value);
}

struct Options {
    agent::HostOptions host;
    agent::ConformanceOptions conformance;
    int32_t log_level = 3;
};

// Nothing when the process is to exit at once, with exit_status.
std::optional<Options> parse(int count, char **words, int &exit_status)
{
    Options options;
    agent::ConformanceOptions &conformance = options.conformance;
    std::optional<int32_t> patience = conformance.patience;
    std::optional<int32_t> level = options.log_level;
    int given = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there are no other threads yet
    while ((given = getopt_long(count, words, "", kOptions, nullptr)) != -1) {
        switch (given) {
        case kDevice:
            options.host.device = optarg;
            break;
        case kPlugin:
            options.host.plugin = optarg;
            break;
        case kWrites:
            conformance.allow_writes = true;
            break;
        case kCommand:
            conformance.commands.emplace_back(optarg);
            break;
        case kPatience:
            patience = number(optarg, 1, kMostSeconds);
            break;
        case kJunit:
            conformance.junit = optarg;
            break;
        case kLog:
            level = number(optarg, 0, INT_MAX);
            break;
        case kVerbose:
            options.host.verbose = true;
            break;
        case kVersion:
            exit_status = puts(PROGRAM_NAME " " HGAGENT_VERSION) < 0 ? agent::kCannotWrite : 0;
            return std::nullopt;
        case kHelp:
            exit_status = fputs(kUsage, stdout) < 0 ? agent::kCannotWrite : 0;
            return std::nullopt;
        default:
            exit_status = agent::kWrongUsage;
            return std::nullopt;
        }
    }
    exit_status = agent::kWrongUsage;
    if (!patience || !level) {
        agent::print_error(patience ? "--log-level takes a number from 0"
                                    : "--patience takes a number of seconds from 1 to 86400");
        return std::nullopt;
    }
    if (options.host.device.empty() || optind != count) {
        agent::print_error("--device LIB is needed, and options only; --help shows them");
        return std::nullopt;
    }
    conformance.patience = *patience;
    options.log_level = *level;
    return options;
}

int run(int count, char **words)
{
    int exit_status = agent::kSuccess;
    const auto options = parse(count, words, exit_status);
    if (!options) {
        return exit_status;
    }
    agent::set_log({options->log_level, false});
    return agent::run_conformance(options->host, options->conformance);
}

} // namespace

int main(int count, char **words)
{
    return agent::run_program([&] { return run(count, words); });
}
