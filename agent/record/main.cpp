// SPDX-License-Identifier: MIT
// hg-replay, which plays recordings, as a separate program: it runs where the libraries of the
// reference agent are missing, such as a 32-bit plug-in's processor under an emulator. It does the
// same as "hgagent replay".
#include "host/program.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "record/replay.h"

#include <cstdio>
#include <getopt.h>

namespace {

constexpr char kUsage[] =
    "usage: " PROGRAM_NAME " FILE [OPTION...]\n"
    "\n"
    "Plays a recording against the plug-in, and shows differences.\n"
    "\n"
    "  --plugin LIB  the plug-in; without it libsmart_router_service.so, from where it was\n"
    "                installed with this program or from the folder lib next to its own\n"
    "  --all         show every difference, not only the first\n"
    "  --version, --help\n";

enum Option { kPlugin, kAll, kVersion, kHelp };

constexpr option kOptions[] = {
    {"plugin", required_argument, nullptr, kPlugin},
    {"all", no_argument, nullptr, kAll},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, kHelp},
    {},
};

int run(int count, char **words)
{
    agent::record::ReplayOptions options;
    int given = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there are no other threads yet
    while ((given = getopt_long(count, words, "", kOptions, nullptr)) != -1) {
        switch (given) {
        case kPlugin:
            options.plugin = optarg;
            break;
        case kAll:
            options.shows_all = true;
            break;
        case kVersion:
            return puts(PROGRAM_NAME " " HGAGENT_VERSION) < 0 ? agent::kCannotWrite : 0;
        case kHelp:
            return fputs(kUsage, stdout) < 0 ? agent::kCannotWrite : 0;
        default:
            return agent::kWrongUsage;
        }
    }
    if (optind + 1 != count) {
        agent::print_error("one FILE is needed; --help shows the options");
        return agent::kWrongUsage;
    }
    options.file = words[optind];
    return agent::record::run_replay(options);
}

} // namespace

int main(int count, char **words)
{
    return agent::run_program([&] { return run(count, words); });
}
