// What the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace agent {

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
    bool verbose = false; // name all that a library lacks
};

struct CallOptions {
    std::string command;
    std::vector<std::string> request;        // nothing, a JSON text, "-", or KEY=VALUE words
    std::optional<std::string> request_file; // instead of these
};

struct ServeOptions {
    size_t max_line = 1024UL * 1024; // bytes of a line, its end not counted
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

struct ShellOptions {
    std::string socket; // path; empty: where a service listens unless it is told otherwise
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
    kShell
};

struct Options {
    HostOptions host;
    int32_t log_level = 3;
    bool reasons = false;   // of call and serve: tell what the device library says of refusals
    bool raw_bytes = false; // of replies: as the plug-in left them
    Subcommand subcommand = Subcommand::kCall;
    CallOptions call;
    ServeOptions serve;
    NoticeOptions notice;
    TopologyOptions topology;
    ConformanceOptions conformance;
    ShellOptions shell;
    int32_t notice_refusal = 0; // what every notice is answered with; 0: it is accepted
    std::string report;         // empty: all are listed
    std::string update_url;     // of the report that upgrades
    // Of the report that speaks of one router; the first entry of the tree is the main router.
    std::string router_path = "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.";
    std::string pattern;   // of list
    std::string described; // the command of describe
};

// Reads the command line. Nothing when all has been said (--help, --version, a wrong usage): then
// exit_status is what the process ends with.
std::optional<Options> parse_options(int count, char **words, int &exit_status);

} // namespace agent
