// SPDX-License-Identifier: MIT
#include "service/config.h"

#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "service/common/toml_file.h"
#include "service/gate/policy_reader.h"
#include "service/ways_in/http/origin.h"
#include "service/ways_in/mqtt/broker_address.h"
#include "service/ways_in/mqtt/topics.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <map>
#include <sys/un.h>

namespace agent::service {

namespace {

constexpr char kCommandLine[] = "command line";
constexpr char kUnix[] = "unix:";
constexpr int64_t kMostSeconds = 7L * 24 * 3600;
constexpr int64_t kMostBytes = 1L << 30;
// What all brokers accept.
constexpr int64_t kMostKeepAlive = 1160;
constexpr int64_t kMostSession = 8L * 3600;

template <auto Part, auto Member> auto &place_in(ServiceConfig &config)
{
    return config.*Part.*Member;
}

template <auto Member> auto &place_of(ServiceConfig &config)
{
    return config.*Member;
}

template <auto Member> auto &place_in_host(ServiceConfig &config)
{
    return config.worker.host.*Member;
}

using Form = Setting::Form;

constexpr Setting kSettings[] = {
    {"audit", "--audit", "FILE", "File to which a line of JSON is appended for each request",
     place_of<&ServiceConfig::audit>, 0, 0, Form::kPath},
    {"log-level", "--log-level", "0..7", "", place_of<&ServiceConfig::log_level>, 0, 7},
    {"policy", "--policy", "FILE", "File with the roles, who they are and what they may do",
     place_of<&ServiceConfig::policy_file>, 0, 0, Form::kPath},
    {"socket.path", "--socket", "PATH",
     "Unix socket to serve instead of $XDG_RUNTIME_DIR/hgagent.sock",
     place_in<&ServiceConfig::socket, &SocketConfig::path>, 0, 0, Form::kSocketPath, true},
    {"socket.group", "--socket-group", "GROUP", "Group that the socket is given",
     place_in<&ServiceConfig::socket, &SocketConfig::group>, 0, 0, Form::kGroup, true},
    {"socket.mode", "--socket-mode", "MODE", "Permissions of the socket, in octal; 0600 by default",
     place_in<&ServiceConfig::socket, &SocketConfig::mode>, 0, 0, Form::kMode, true},
    {"console.address", "--console", "ADDRESS:PORT",
     "Serve the console and HTTP as well, at 127.0.0.1:8080 unless given; port 0 for any",
     place_in<&ServiceConfig::console, &ConsoleConfig::address>, 0, 0, Form::kConsole, true,
     "127.0.0.1:8080"},
    {"console.certificate", "--console-certificate", "FILE",
     "Certificate chain in PEM for TLS, which other addresses than this host's own need",
     place_in<&ServiceConfig::console, &ConsoleConfig::certificate>, 0, 0, Form::kPath},
    {"console.key", "--console-key", "FILE", "Private key of the certificate, in PEM",
     place_in<&ServiceConfig::console, &ConsoleConfig::key>, 0, 0, Form::kPath},
    {"console.passwords", "--console-passwords", "FILE",
     "Users and their passwords, as lines USER:HASH with hashes by argon2 -id -e",
     place_in<&ServiceConfig::console, &ConsoleConfig::passwords>, 0, 0, Form::kPath},
    {"console.names", "--console-name", "HOST",
     "Name of this host that clients may use instead of its address; may be repeated",
     place_in<&ServiceConfig::console, &ConsoleConfig::names>},
    {"console.folder", "--console-folder", "FOLDER",
     "Folder with the console's files, instead of the installed one",
     place_in<&ServiceConfig::console, &ConsoleConfig::folder>, 0, 0, Form::kPath},
    {"console.session-seconds", "--console-session-seconds", "SECONDS",
     "After how long without a request a login ends; 43200 by default",
     place_in<&ServiceConfig::console, &ConsoleConfig::session_seconds>, 1, kMostSeconds},
    {"worker.kind", "--worker", "KIND",
     "child (the default), in-process, or unix:PATH for a worker that listens there",
     place_in<&ServiceConfig::worker, &WorkerConfig::kind>, 0, 0, Form::kWorker, true},
    {"worker.plugin", "--plugin", "LIB", "", place_in_host<&HostOptions::plugin>, 0, 0,
     Form::kPath},
    {"worker.device", "--device", "LIB", "", place_in_host<&HostOptions::device>, 0, 0,
     Form::kPath},
    {"worker.scenario", "--scenario", "NAME|FILE", "", place_in_host<&HostOptions::scenario>},
    {"worker.state", "--state", "FILE", "", place_in_host<&HostOptions::state>, 0, 0, Form::kPath},
    {"worker.faults", "--fault", "FAULT", "", place_in_host<&HostOptions::faults>},
    {"worker.trace", "--trace", "FILE|-", "", place_in_host<&HostOptions::trace>, 0, 0,
     Form::kPath},
    {"worker.record", "--record", "FILE", "", place_in_host<&HostOptions::record>, 0, 0,
     Form::kPath},
    {"worker.record-limit", "--record-limit", "BYTES", "",
     place_in_host<&HostOptions::record_limit>, kLeastRecordLimit, kMostRecordLimit},
    {"worker.mask-key", "--mask-key", "FILE", "", place_in_host<&HostOptions::mask_key>, 0, 0,
     Form::kPath},
    {"worker.firmware-folder", "--firmware-folder", "FOLDER", "",
     place_in_host<&HostOptions::firmware_folder>, 0, 0, Form::kPath},
    {"worker.firmware-key", "--firmware-key", "FILE", "", place_in_host<&HostOptions::firmware_key>,
     0, 0, Form::kPath},
    {"worker.show-secrets", "--show-secrets", "", "", place_in_host<&HostOptions::show_secrets>},
    {"worker.verbose", "--verbose", "", "", place_in_host<&HostOptions::verbose>},
    {"worker.refuse-notices", "--refuse-notices", "RESULT", "",
     place_in<&ServiceConfig::worker, &WorkerConfig::refuse_notices>, INT32_MIN, INT32_MAX},
    {"worker.raw-bytes", "--raw-bytes", "", "",
     place_in<&ServiceConfig::worker, &WorkerConfig::raw_bytes>},
    {"worker.reasons", "--reasons", "",
     "Report what the device library says about calls that it refuses",
     place_in<&ServiceConfig::worker, &WorkerConfig::reasons>},
    {"worker.reboot-seconds", "--reboot-seconds", "SECONDS",
     "How long a reboot of the simulated gateway takes; 45 by default",
     place_in<&ServiceConfig::worker, &WorkerConfig::reboot_seconds>, 0, kMostSeconds},
    {"worker.command-seconds", "--command-seconds", "SECONDS",
     "How long a command may take; 30 by default, and longer where the protocol says so",
     place_in<&ServiceConfig::worker, &WorkerConfig::command_seconds>, 1, kMostSeconds},
    {"worker.background-seconds", "--background-seconds", "SECONDS",
     "How long a Wi-Fi batch or an update may take; 1800 by default",
     place_in<&ServiceConfig::worker, &WorkerConfig::background_seconds>, 1, kMostSeconds},
    {"limits.clients", "--max-clients", "COUNT", "Clients at the same time; 256 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::clients>, 1, 100000},
    {"limits.line", "--max-line", "BYTES", "Longest request; 1048576 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::line>, 1, kMostBytes},
    {"limits.pending-output", "--max-pending-output", "BYTES",
     "Answers that a client may leave unread; 4194304 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::pending_output>, 1, kMostBytes},
    {"limits.idle-seconds", "--idle-seconds", "SECONDS",
     "When a client without requests and subscriptions is disconnected; never by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::idle_seconds>, 0, kMostSeconds},
    {"limits.queue", "--max-queue", "COUNT", "Requests of one client that may wait; 16 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::queue>, 1, 100000},
    {"limits.answers", "--max-answers", "COUNT",
     "Answers kept ten minutes for clients that repeat changes; 16384 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::answers>, 1, 10'000'000},
    {"limits.answer-bytes", "--max-answer-bytes", "BYTES",
     "Bytes of all kept answers; 8388608 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::answer_bytes>, 1, kMostBytes},
    {"mqtt.brokers", "--broker", "URL",
     "Broker to connect to, mqtt://HOST[:PORT] or mqtts:// with TLS; of several the first that "
     "answers",
     place_in<&ServiceConfig::mqtt, &MqttConfig::brokers>, 0, 0, Form::kBroker, true},
    {"mqtt.id", "--id", "ID", "Name of this gateway on the broker",
     place_in<&ServiceConfig::mqtt, &MqttConfig::id>, 0, 0, Form::kGatewayId, true},
    {"mqtt.root", "--root", "ROOT", "Beginning of its topics; \"gateway\" by default",
     place_in<&ServiceConfig::mqtt, &MqttConfig::root>, 0, 0, Form::kTopicRoot, true},
    {"mqtt.response-topics", "--response-topic", "TOPIC",
     "Topic for answers besides those below ROOT/ID/reply/; all below it with a slash at its end",
     place_in<&ServiceConfig::mqtt, &MqttConfig::response_topics>, 0, 0, Form::kResponseTopic,
     true},
    {"mqtt.trust", "--trust", "", "Allow everything to a broker on this machine",
     place_in<&ServiceConfig::mqtt, &MqttConfig::trust>, 0, 0, Form::kAny, true},
    {"mqtt.insecure", "--insecure", "", "Connect to a broker on another machine without TLS",
     place_in<&ServiceConfig::mqtt, &MqttConfig::insecure>, 0, 0, Form::kAny, true},
    {"mqtt.credentials", "--broker-credentials", "FILE",
     "File with the user and the password for the broker, each on a line",
     place_in<&ServiceConfig::mqtt, &MqttConfig::credentials>, 0, 0, Form::kPath, true},
    {"mqtt.ca", "--broker-ca", "FILE",
     "Certificates that the broker's has to be signed by, instead of the system's",
     place_in<&ServiceConfig::mqtt, &MqttConfig::ca>, 0, 0, Form::kPath, true},
    {"mqtt.certificate", "--broker-certificate", "FILE", "Certificate of this gateway",
     place_in<&ServiceConfig::mqtt, &MqttConfig::certificate>, 0, 0, Form::kPath, true},
    {"mqtt.key", "--broker-key", "FILE", "Private key of that certificate",
     place_in<&ServiceConfig::mqtt, &MqttConfig::key>, 0, 0, Form::kPath, true},
    {"mqtt.alpn", "--broker-alpn", "NAME", "Application protocol to negotiate in TLS (ALPN)",
     place_in<&ServiceConfig::mqtt, &MqttConfig::alpn>, 0, 0, Form::kName, true},
    {"mqtt.server-name", "--broker-server-name", "NAME",
     "Name in the broker's certificate, instead of its host",
     place_in<&ServiceConfig::mqtt, &MqttConfig::server_name>, 0, 0, Form::kName, true},
    {"mqtt.keep-alive-seconds", "--broker-keep-alive", "SECONDS",
     "When a silent connection is checked; 60 by default",
     place_in<&ServiceConfig::mqtt, &MqttConfig::keep_alive_seconds>, 5, kMostKeepAlive, Form::kAny,
     true},
    {"mqtt.session-seconds", "--broker-session", "SECONDS",
     "How long the broker keeps requests for an absent gateway; 3600 by default",
     place_in<&ServiceConfig::mqtt, &MqttConfig::session_seconds>, 0, kMostSession, Form::kAny,
     true},
    {"mqtt.max-packet", "--max-packet", "BYTES",
     "Largest packet with an answer, where the broker does not say; 0, the default, means any",
     place_in<&ServiceConfig::mqtt, &MqttConfig::max_packet>, 0, kMostBytes, Form::kAny, true},
    {"limits.request-seconds", "--request-seconds", "SECONDS",
     "How long a request by HTTP may take to arrive; 10 by default",
     place_in<&ServiceConfig::limits, &LimitsConfig::request_seconds>, 1, kMostSeconds},
};

std::string out_of_range(const Setting &setting)
{
    return "has to be from " + std::to_string(setting.least) + " to " +
           std::to_string(setting.most);
}

std::string problem_of_socket_path(std::string_view path)
{
    constexpr size_t kMost = sizeof(sockaddr_un::sun_path) - 1;
    if (path.empty()) {
        return "names no file";
    }
    return path.size() > kMost
               ? "the path of a socket has at most " + std::to_string(kMost) + " bytes"
               : "";
}

std::string problem_of_mode(const std::string &text)
{
    const bool is_mode = (text.size() == 3 || (text.size() == 4 && text.front() == '0')) &&
                         text.find_first_not_of("01234567") == std::string::npos;
    if (!is_mode) {
        return in_message(text) + " is not a mode such as 0660";
    }
    const bool is_own = text[text.size() - 3] >= '6';
    return is_own ? "" : in_message(text) + " does not let the service itself read and write";
}

std::string problem_of_group(const std::string &name)
{
    constexpr size_t kMaxEntry = 65536;
    group entry = {};
    group *found = nullptr;
    std::vector<char> buffer(kMaxEntry);
    getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr ? "there is no group " + in_message(name) : "";
}

std::string problem_of_worker(std::string_view kind)
{
    if (kind == "child" || kind == "in-process") {
        return "";
    }
    return kind.starts_with(kUnix) ? problem_of_socket_path(kind.substr(sizeof(kUnix) - 1))
                                   : in_message(kind) + " is not child, in-process or unix:PATH";
}

std::string problem_of_broker(const std::string &url)
{
    try {
        parse_broker(url);
        return "";
    } catch (const std::invalid_argument &problem) {
        return in_message(url) + ": " + problem.what();
    }
}

std::string problem_of_name(std::string_view name)
{
    constexpr size_t kMost = 255;
    return name.empty() || name.size() > kMost
               ? "has to have from 1 to " + std::to_string(kMost) + " bytes"
               : "";
}

std::string problem_of_console(const std::string &address)
{
    try {
        ListenAddress::parse(address);
    } catch (const std::runtime_error &problem) {
        return problem.what();
    }
    return "";
}

// What is wrong with the text; empty if it is valid.
std::string problem_of(const Setting &setting, const std::string &text)
{
    if (text.find('\0') != std::string::npos) {
        return "has a NUL in it";
    }
    switch (setting.form) {
    case Form::kAny:
        return "";
    case Form::kPath:
        return text.empty() ? "names no file" : "";
    case Form::kSocketPath:
        return problem_of_socket_path(text);
    case Form::kMode:
        return problem_of_mode(text);
    case Form::kGroup:
        return problem_of_group(text);
    case Form::kWorker:
        return problem_of_worker(text);
    case Form::kBroker:
        return problem_of_broker(text);
    case Form::kGatewayId:
        return problem_of_gateway_id(text);
    case Form::kTopicRoot:
        return problem_of_topic_root(text);
    case Form::kResponseTopic:
        return problem_of_response_topic(text);
    case Form::kName:
        return problem_of_name(text);
    case Form::kConsole:
        return problem_of_console(text);
    }
    return "";
}

// ---- The file ----------------------------------------------------------------------------------

// A path from the file, relative to the service's working directory.
std::string from_folder_of(const std::string &file, const std::string &path)
{
    return path == "-" ? path : (std::filesystem::path(file).parent_path() / path).string();
}

std::string placed_text(const Setting &setting, const std::string &file, const std::string &text)
{
    if (setting.form == Form::kPath || setting.form == Form::kSocketPath) {
        return from_folder_of(file, text);
    }
    if (setting.form == Form::kWorker && text.starts_with(kUnix)) {
        return kUnix + from_folder_of(file, text.substr(sizeof(kUnix) - 1));
    }
    return text;
}

class FileReader {
  public:
    FileReader(ServiceConfig &config, std::string file, std::vector<ConfigProblem> &problems)
        : config_(config), file_(std::move(file)), problems_(problems)
    {
    }

    void read(const toml::table &document)
    {
        TomlReader top(document, file_, "", problems_);
        std::map<std::string, TomlReader> tables;
        for (const char *name : {"socket", "console", "worker", "limits", "mqtt"}) {
            if (const toml::table *table = top.table(name)) {
                tables.try_emplace(name, *table, file_, name, problems_);
            }
        }
        for (const Setting &setting : settings()) {
            const std::string_view key = setting.key;
            const size_t dot = key.find('.');
            if (dot == std::string_view::npos) {
                read_setting(setting, top, key);
            } else if (const auto table = tables.find(std::string(key.substr(0, dot)));
                       table != tables.end()) {
                read_setting(setting, table->second, key.substr(dot + 1));
            }
        }
        read_roles(top);
        top.refuse_other_keys();
        for (auto &[name, table] : tables) {
            table.refuse_other_keys();
        }
    }

    // The line of the key "policy"; 0 if absent.
    size_t policy_line() const { return policy_line_; }

  private:
    void read_setting(const Setting &setting, TomlReader &reader, std::string_view key)
    {
        std::visit([&](auto *place) { read_value(setting, reader, key, place(config_)); },
                   setting.place);
    }

    void read_value(const Setting &setting, TomlReader &reader, std::string_view key,
                    int64_t &value)
    {
        const std::optional<int64_t> number = reader.whole_number(key);
        if (number && (*number < setting.least || *number > setting.most)) {
            reader.add_problem(reader.line_of(key), key, out_of_range(setting));
        }
        value = number.value_or(value);
    }

    void read_value(const Setting &, TomlReader &reader, std::string_view key, bool &value)
    {
        value = reader.flag(key).value_or(value);
    }

    void read_value(const Setting &setting, TomlReader &reader, std::string_view key,
                    std::vector<std::string> &value)
    {
        for (auto &[text, line] : reader.texts(key)) {
            const std::string problem = problem_of(setting, text);
            if (!problem.empty()) {
                reader.add_problem(line, key, problem);
            }
            value.push_back(text);
        }
    }

    template <typename Text>
    void read_value(const Setting &setting, TomlReader &reader, std::string_view key, Text &value)
    {
        const std::string *text = reader.text(key);
        if (text == nullptr) {
            return;
        }
        const std::string placed = text->empty() ? "" : placed_text(setting, file_, *text);
        const std::string problem = problem_of(setting, placed);
        if (!problem.empty()) {
            reader.add_problem(reader.line_of(key), key, problem);
        }
        value = placed;
    }

    void read_roles(TomlReader &top)
    {
        const toml::table *roles = top.table("roles");
        policy_line_ = top.line_of("policy");
        if (roles == nullptr) {
            return;
        }
        if (policy_line_ > 0) {
            top.add_problem(policy_line_, "policy", "there are roles in this file as well");
        }
        config_.policy = PolicyReader::read(*roles, file_, problems_);
    }

    ServiceConfig &config_;
    const std::string file_;
    std::vector<ConfigProblem> &problems_;
    size_t policy_line_ = 0;
};

// ---- The command line --------------------------------------------------------------------------

class OptionReader {
  public:
    OptionReader(ServiceConfig &config, std::vector<ConfigProblem> &problems)
        : config_(config), problems_(problems)
    {
    }

    void read(const RunOptions::Given &given)
    {
        const auto *setting = std::ranges::find(
            kSettings, given.key, [](const Setting &one) { return std::string_view(one.key); });
        std::visit([&](auto *place) { take(*setting, given, place(config_)); }, setting->place);
    }

  private:
    void take(const Setting &setting, const RunOptions::Given &given, int64_t &value)
    {
        const std::string &text = given.values.back();
        const char *end = text.data() + text.size();
        int64_t number = 0;
        const auto [stop, problem] = std::from_chars(text.data(), end, number);
        if (problem != std::errc() || stop != end) {
            refuse(given, in_message(text) + " is not a whole number");
        } else if (number < setting.least || number > setting.most) {
            refuse(given, out_of_range(setting));
        }
        value = number;
    }

    static void take(const Setting &, const RunOptions::Given &, bool &value) { value = true; }

    void take(const Setting &setting, const RunOptions::Given &given,
              std::vector<std::string> &value)
    {
        for (const std::string &text : given.values) {
            const std::string problem = problem_of(setting, text);
            if (!problem.empty()) {
                refuse(given, problem);
            }
        }
        value = given.values;
    }

    template <typename Text>
    void take(const Setting &setting, const RunOptions::Given &given, Text &value)
    {
        const bool is_default = setting.without_value != nullptr && given.values.back().empty();
        const std::string text = is_default ? setting.without_value : given.values.back();
        const std::string problem = problem_of(setting, text);
        if (!problem.empty()) {
            refuse(given, problem);
        }
        value = text;
    }

    void refuse(const RunOptions::Given &given, std::string text)
    {
        problems_.push_back({kCommandLine, 0, given.option, std::move(text)});
    }

    ServiceConfig &config_;
    std::vector<ConfigProblem> &problems_;
};

ServiceConfig defaults()
{
    ServiceConfig config;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment meanwhile
    if (const char *folder = getenv("XDG_RUNTIME_DIR"); folder != nullptr && *folder == '/') {
        config.socket.path = std::string(folder) + "/hgagent.sock";
    }
    return config;
}

// If the policy file cannot be read, the problem is reported where the file is named.
void read_policy_file(ServiceConfig &config, const std::string &named_by, size_t line,
                      std::vector<ConfigProblem> &problems)
{
    try {
        config.policy = Policy::parse(read_toml_file(config.policy_file), config.policy_file);
    } catch (const ConfigError &wrong) {
        if (wrong.problems().front().line == 0) { // the file cannot be read
            problems.push_back({named_by, line, line > 0 ? "policy" : "--policy",
                                wrong.problems().front().message()});
            return;
        }
        problems.insert(problems.end(), wrong.problems().begin(), wrong.problems().end());
    }
}

// What is wrong with the settings of MQTT together; empty if nothing is.
std::string problem_of_mqtt(const ServiceConfig &config)
{
    const MqttConfig &mqtt = config.mqtt;
    if (mqtt.brokers.empty()) {
        return "";
    }
    if (mqtt.id.empty()) {
        return "a gateway on a broker needs a name: --id, or id in [mqtt]";
    }
    if (std::string problem = problem_of_client_identifier(mqtt.root, mqtt.id); !problem.empty()) {
        return problem;
    }
    if (mqtt.certificate.empty() != mqtt.key.empty()) {
        return "a certificate and its key are given together";
    }
    for (const std::string &url : mqtt.brokers) {
        const BrokerAddress broker = parse_broker(url);
        if (broker.is_local()) {
            continue;
        }
        if (!broker.is_tls && !mqtt.insecure) {
            return broker.url() +
                   " is on another machine: use mqtts://, or --insecure to do without TLS";
        }
        if (mqtt.trust) {
            return broker.url() + " is on another machine: --trust is for local brokers only";
        }
        if (!config.policy.has_roles()) {
            return broker.url() +
                   " is on another machine: a policy has to say what it may do, with members = "
                   "[\"topic-root:" +
                   mqtt.root + "\"] in a role";
        }
    }
    return "";
}

void throw_if_any(std::vector<ConfigProblem> problems)
{
    if (!problems.empty()) {
        throw ConfigError(std::move(problems));
    }
}

// What the settings of the console have to do with each other.
void check_console(const ConsoleConfig &console, std::vector<ConfigProblem> &problems)
{
    const auto add = [&](const char *key, const char *text) {
        problems.push_back({"the configuration", 0, key, text});
    };
    if (console.certificate.empty() != console.key.empty()) {
        add(console.key.empty() ? "console.key" : "console.certificate",
            "certificate and key are given together");
    }
    if (console.address.empty() || ListenAddress::parse(console.address).is_loopback) {
        return;
    }
    if (console.certificate.empty()) {
        add("console.certificate", "other addresses than this host's own need TLS");
    }
    if (console.passwords.empty()) {
        add("console.passwords", "other addresses than this host's own need users with passwords");
    }
}

ServiceConfig combine(const toml::table *document, const RunOptions &options)
{
    ServiceConfig config = defaults();
    std::vector<ConfigProblem> problems;
    FileReader file(config, options.config, problems);
    if (document != nullptr) {
        file.read(*document);
    }
    OptionReader command_line(config, problems);
    bool policy_given = false;
    for (const RunOptions::Given &given : options.given) {
        command_line.read(given);
        policy_given = policy_given || given.key == "policy";
    }
    throw_if_any(problems);
    if (!config.policy_file.empty()) {
        read_policy_file(config, policy_given ? kCommandLine : options.config,
                         policy_given ? 0 : file.policy_line(), problems);
    }
    check_console(config.console, problems);
    throw_if_any(problems);
    if (const std::string problem = problem_of_mqtt(config); !problem.empty()) {
        throw ConfigError(
            {{options.config.empty() ? kCommandLine : options.config, 0, "", problem}});
    }
    return config;
}

// ---- Reload ------------------------------------------------------------------------------------

// Gives the setting in the loaded configuration the value that is in use. Result: whether it was
// another one.
bool take_back(const Setting &setting, ServiceConfig &in_use, ServiceConfig &loaded)
{
    return std::visit(
        [&](auto *place) { return std::exchange(place(loaded), place(in_use)) != place(in_use); },
        setting.place);
}

} // namespace

mode_t SocketConfig::mode_bits() const
{
    mode_t bits = 0;
    for (const char digit : mode) {
        bits = bits * 8 + static_cast<mode_t>(digit - '0');
    }
    return bits;
}

bool MqttConfig::is_local() const
{
    return std::ranges::all_of(brokers,
                               [](const std::string &url) { return parse_broker(url).is_local(); });
}

std::string WorkerConfig::unit_socket() const
{
    return kind.starts_with(kUnix) ? kind.substr(sizeof(kUnix) - 1) : "";
}

std::span<const Setting> settings()
{
    return kSettings;
}

ServiceConfig parse_config(std::string_view toml, const std::string &file)
{
    const toml::table document = parse_toml(toml, file);
    RunOptions options;
    options.config = file;
    return combine(&document, options);
}

ServiceConfig load_config(const RunOptions &options)
{
    if (options.config.empty()) {
        return combine(nullptr, options);
    }
    const toml::table document = parse_toml(read_toml_file(options.config), options.config);
    return combine(&document, options);
}

std::optional<ServiceConfig> reload_config(const RunOptions &options, const ServiceConfig &old,
                                           std::string &said)
{
    std::optional<ServiceConfig> loaded;
    try {
        loaded = load_config(options);
    } catch (const ConfigError &wrong) {
        const size_t count = wrong.problems().size();
        said = "the configuration stays as it was, because " + wrong.problems().front().message();
        if (count > 1) {
            said += " (and " + std::to_string(count - 1) + " more)";
        }
        return std::nullopt;
    }
    said = "the configuration is loaded again";
    ServiceConfig in_use = old;
    const char *separator = "; only a restart takes ";
    for (const Setting &setting : settings()) {
        if (setting.needs_restart && take_back(setting, in_use, *loaded)) {
            said += std::string(separator) + setting.key;
            separator = ", ";
        }
    }
    return loaded;
}

int check_config(const RunOptions &options)
{
    try {
        load_config(options);
    } catch (const ConfigError &wrong) {
        return report_problems(wrong);
    }
    return show("the configuration is valid\n");
}

std::vector<std::string> worker_arguments(const ServiceConfig &config)
{
    std::vector<std::string> words;
    ServiceConfig values = config;
    const auto add = [&words](const Setting &setting, const std::string &value) {
        words.push_back(std::string(setting.option) + "=" + value);
    };
    struct Add {
        const Setting &setting;
        const decltype(add) &add_word;
        std::vector<std::string> &words;
        void operator()(const std::string &text) const
        {
            if (!text.empty()) {
                add_word(setting, text);
            }
        }
        void operator()(const std::optional<std::string> &text) const
        {
            if (text) {
                add_word(setting, *text);
            }
        }
        void operator()(const std::vector<std::string> &texts) const
        {
            for (const std::string &text : texts) {
                add_word(setting, text);
            }
        }
        void operator()(int64_t number) const { add_word(setting, std::to_string(number)); }
        void operator()(bool flag) const
        {
            if (flag) {
                words.emplace_back(setting.option);
            }
        }
    };
    for (const Setting &setting : settings()) {
        if (setting.belongs_to_agent()) {
            std::visit(
                [&](auto *place) {
                    Add{setting, add, words}(place(values));
                },
                setting.place);
        }
    }
    words.emplace_back("serve");
    words.push_back("--max-line=" + std::to_string(config.limits.line));
    if (config.worker.reasons) {
        words.emplace_back("--reasons");
    }
    return words;
}

} // namespace agent::service
