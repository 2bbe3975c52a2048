// SPDX-License-Identifier: MIT
// The options of the command line.
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
class Option;
} // namespace CLI

namespace agent {

struct CallOptions {
    std::string command;
    std::vector<std::string> request;        // none, a JSON text, "-", or KEY=VALUE words
    std::optional<std::string> request_file; // used instead of these
};

struct ServeOptions {
    std::string listen; // address for the service to connect to; empty: standard input and output
    size_t max_line = 1024UL * 1024; // bytes of a line without its end
    bool events = false;             // also send asynchronous events
};

struct NoticeOptions {
    std::string plugin_name;
    std::string text; // or "-"
};

struct TopologyOptions {
    bool ascii = false; // else line characters if the locale has them
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
    std::optional<std::string> socket; // of a service, instead of libraries
    int32_t log_level = 3;
    bool reasons = false;   // of call and serve: show the device library's reasons for refusals
    bool raw_bytes = false; // of replies: unchanged from the plug-in
    Subcommand subcommand = Subcommand::kCall;
    CallOptions call;
    ServeOptions serve;
    NoticeOptions notice;
    TopologyOptions topology;
    ConformanceOptions conformance;
    int32_t notice_refusal = 0; // result of every notice; 0: accepted
    std::string report;         // empty: all are listed
    std::string update_url;     // of the upgrade report
    // Of the report on one router.
    std::string router_path = kMainRouterPath;
    std::string pattern;      // of list
    bool list_events = false; // list events instead of commands
    std::string described;    // the command or event to describe
    // Runs a subcommand of another part of the agent; returns its exit status.
    std::function<int()> other;
};

// Adds subcommands of other parts of the agent; their callbacks set the option `other`.
using AddSubcommands = void (*)(CLI::App &app, Options &options);

// For subcommands that take a request: adds its name, which is returned, and its other options, and
// reads its words in the subcommand's callback.
CLI::Option *add_request(CLI::App *subcommand, CallOptions &call);
void take_request(const CLI::App &subcommand, CallOptions &call);

// With this option the options for libraries are a usage error.
void exclude_library_options(CLI::App &app, CLI::Option *option);
// For a subcommand that always uses a service. Throws CLI::ExcludesError where the command line has
// such an option.
void refuse_library_options(const CLI::App &app, const std::string &subcommand);

// Parses the command line. Nothing when the process is to exit at once (--help, --version, a usage
// error), with exit_status.
std::optional<Options> parse_options(int count, char **words, int &exit_status,
                                     AddSubcommands add_others = nullptr);

} // namespace agent
