// SPDX-License-Identifier: MIT
// The configuration of the service: one structure for the file and the command line.
#pragma once

#include "commands/options.h"
#include "service/common/config_error.h"
#include "service/gate/policy.h"
#include "service/ways_in/mqtt/topics.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace agent::service {

struct SocketConfig {
    std::string path;  // by default $XDG_RUNTIME_DIR/hgagent.sock; empty without that variable
    std::string group; // empty: the service's group
    std::string mode = "0600"; // octal, as chmod takes it

    mode_t mode_bits() const;
};

struct WorkerConfig {
    std::string kind = "child"; // "child", "in-process" or "unix:PATH"
    HostOptions host;           // the libraries, and options of the simulated gateway
    int64_t refuse_notices = 0;
    bool raw_bytes = false;
    bool reasons = false;
    int64_t reboot_seconds = 45;
    int64_t command_seconds = 30;      // for commands without a time in the protocol
    int64_t background_seconds = 1800; // for a Wi-Fi batch or an update

    bool in_process() const { return kind == "in-process"; }
    std::string unit_socket() const; // PATH of unix:PATH, otherwise empty
};

struct ConsoleConfig {
    std::string address; // ADDRESS:PORT; empty: no console
    std::string folder;  // of its files; empty: the installed one
    std::string certificate;
    std::string key;
    std::string passwords; // file of lines USER:HASH
    std::vector<std::string> names;
    int64_t session_seconds = 12L * 3600;
};

struct LimitsConfig {
    int64_t clients = 256;
    int64_t line = 1024L * 1024;               // bytes of a request, as for serve
    int64_t pending_output = 4L * 1024 * 1024; // bytes that a client has not read
    int64_t idle_seconds = 0;                  // without a request or a subscription; 0: no limit
    int64_t queue = 16;                        // waiting requests of one client
    int64_t answers = 16384;                   // kept for repetitions
    int64_t answer_bytes = 8L * 1024 * 1024;   // of all of them
    int64_t request_seconds = 10;              // for a request by HTTP to arrive
};

// A gateway on a broker; without a broker there is none.
struct MqttConfig {
    std::vector<std::string> brokers; // URLs, in the order in which they are tried
    std::string id;
    std::string root = kDefaultRoot;
    std::vector<std::string> response_topics; // besides those below reply/
    bool trust = false;                       // local brokers only: everything is allowed
    bool insecure = false;                    // other brokers without TLS
    std::string credentials;                  // file
    std::string ca;                           // file; empty: the system's
    std::string certificate;                  // file; empty: none
    std::string key;                          // file
    std::string alpn;
    std::string server_name; // empty: the host's
    int64_t keep_alive_seconds = 60;
    int64_t session_seconds = 3600;
    int64_t max_packet = 0; // of an answer; 0: what the broker carries

    // Whether all brokers are on this machine.
    bool is_local() const;
};

struct ServiceConfig {
    SocketConfig socket;
    ConsoleConfig console;
    WorkerConfig worker;
    LimitsConfig limits;
    MqttConfig mqtt;
    std::string policy_file;
    Policy policy;
    std::string audit; // file; empty: none
    int64_t log_level = 3;
};

// The command line of `run`: the files, and settings by their keys.
struct RunOptions {
    std::string config; // empty: none
    bool check = false; // only report validation errors
    struct Given {
        std::string key;    // "limits.queue"
        std::string option; // "--max-queue", for messages
        std::vector<std::string> values;
    };
    std::vector<Given> given;
};

// One setting, which has a key in the file and an option on the command line.
struct Setting {
    const char *key;        // "limits.queue"
    const char *option;     // "--max-queue"
    const char *value_name; // "COUNT"
    const char *help;       // empty: an option of the agent, before the subcommand
    using Place = std::variant<std::string &(*)(ServiceConfig &),
                               std::optional<std::string> &(*)(ServiceConfig &),
                               std::vector<std::string> &(*)(ServiceConfig &),
                               int64_t &(*)(ServiceConfig &), bool &(*)(ServiceConfig &)>;
    Place place;
    int64_t least = 0; // minimum of a number
    int64_t most = 0;
    enum class Form {
        kAny,
        kPath,
        kSocketPath,
        kMode,
        kGroup,
        kWorker,
        kConsole,
        kBroker,
        kGatewayId,
        kTopicRoot,
        kResponseTopic,
        kName
    };
    Form form = Form::kAny;
    bool needs_restart = false;          // changes take effect only after a restart
    const char *without_value = nullptr; // the value of the option by itself

    bool belongs_to_agent() const { return *help == '\0'; }
};
std::span<const Setting> settings();

// The defaults, then the file, then the command line. A relative path in the file is relative to
// the file's directory. Throws ConfigError with all problems.
ServiceConfig load_config(const RunOptions &options);

// The same for a file's text, for tests.
ServiceConfig parse_config(std::string_view toml, const std::string &file);

// For a running service. Result: the new configuration, in which the settings that need a restart
// are as before, or nothing when it is invalid and the old one stays in use; in both cases said is
// a line for the log, with the changes that need a restart.
std::optional<ServiceConfig> reload_config(const RunOptions &options, const ServiceConfig &old,
                                           std::string &said);

// Prints whether the configuration is valid. Result: the exit status.
int check_config(const RunOptions &options);

// The arguments of a worker that is a child of the service, without the program's name.
std::vector<std::string> worker_arguments(const ServiceConfig &config);

} // namespace agent::service
