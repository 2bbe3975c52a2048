// What the command line asks for.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace agent {

// The first entry of the tree of parameters.
constexpr char kMainRouterPath[] = "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.";

// Which libraries are loaded, and what the simulated gateway is told. What is not given is left to
// the gateway's environment and defaults.
struct HostOptions {
    std::string device; // path of the device library; empty: the one that is installed beside us
    std::string plugin; // the same of the plug-in
    std::optional<std::string> scenario;
    std::optional<std::string> state;
    std::vector<std::string> faults;
    std::optional<std::string> trace;
    bool show_secrets = false;
    std::optional<std::string> firmware_folder;
    std::optional<std::string> firmware_key;
    std::optional<int32_t> reboot_seconds; // 0 without
    bool verbose = false;                  // name all that a library lacks
};

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

struct ConformanceOptions {
    bool allow_writes = false;
    std::vector<std::string> commands; // empty: all that can be undone
    int32_t patience = 60;             // seconds for one check
    std::string junit;                 // file; empty: none
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
    std::string router_path = kMainRouterPath; // of the report that speaks of one router
    std::string pattern;                       // of list
    bool list_events = false;                  // instead of commands
    std::string described;                     // the command or event of describe
    std::function<int()>
        other; // runs a subcommand that another part of the agent has; its exit status
};

// Adds subcommands of other parts of the agent; their callbacks set the option `other`.
using AddSubcommands = void (*)(CLI::App &app, Options &options);

// Reads the command line. Nothing when all has been said (--help, --version, a wrong usage): then
// exit_status is what the process ends with.
std::optional<Options> parse_options(int count, char **words, int &exit_status,
                                     AddSubcommands add_others = nullptr);

} // namespace agent
