// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include "conformance/conformance.h"
#include "host/options.h"
#include "host/report_builders.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace agent {

struct CallOptions {
    std::string command;
    std::vector<std::string> request;        // nothing, a JSON text, "-", or KEY=VALUE words
    std::optional<std::string> request_file; // instead of these
};

struct ServeOptions {
    std::string listen;              // where a service connects; empty: standard input and output
    size_t max_line = 1024UL * 1024; // bytes of a line, its end not counted
    bool events = false;             // tell of everything that happens by itself, as events
};

struct NoticeOptions {
    std::string plugin_name;
    std::string text; // or "-"
};

struct TopologyOptions {
    bool ascii = false; // or with the lines that the locale has
    bool dot = false;   // for Graphviz
};

enum class Subcommand {
    kCall,
    kServe,
    kNotice,
    kReport,
    kHosts,
    kTopology,
    kList,
    kDescribe,
    kConformance,
    kOther
};

struct Options {
    HostOptions host;
    std::optional<std::string> socket; // of a service, in place of libraries
    int32_t log_level = 3;
    bool reasons = false;   // of call and serve: tell what the device library says of refusals
    bool raw_bytes = false; // of replies: as the plug-in left them
    Subcommand subcommand = Subcommand::kCall;
    CallOptions call;
    ServeOptions serve;
    NoticeOptions notice;
    TopologyOptions topology;
    ConformanceOptions conformance;
    int32_t notice_refusal = 0; // what every notice is answered with; 0: it is accepted
    std::string report;         // empty: all are listed
    std::string update_url;     // of the report that upgrades
    // Of the report that speaks of one router.
    std::string router_path = kMainRouterPath;
    std::string pattern;      // of list
    bool list_events = false; // instead of commands
    std::string described;    // the command or event of describe
    // Runs a subcommand that another part of the agent has; its exit status.
    std::function<int()> other;
};

// Adds subcommands of other parts of the agent; their callbacks set the option `other`.
using AddSubcommands = void (*)(CLI::App &app, Options &options);

// Reads the command line. Nothing when all has been said (--help, --version, a wrong usage): then
// exit_status is what the process ends with.
std::optional<Options> parse_options(int count, char **words, int &exit_status,
                                     AddSubcommands add_others = nullptr);

} // namespace agent
