// SPDX-License-Identifier: MIT
#include "commands/options.h"

#include "commands/image_upgrade.h"
#include "commands/recordings.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "protocol/protocol.h"

#include <CLI/CLI.hpp>

namespace agent {

namespace {

constexpr char kFooter[] = R"(
Exit status:
  0  done; for call and report: the reply's "Status" is "0", or there is none; run: ended by SIGTERM
     or SIGINT
  1  call, report, hosts, topology: the reply's "Status" is anything else; report: its function
     failed; report image-upgrade: an error was logged; notice: refused; list: nothing found;
     conformance: a check failed; replay, diff: a difference; with --socket: the service refused;
     mqtt-call: as call, or a gateway refused or did not answer
  2  usage error, a request that is not a JSON object, or a file that is not a recording
  3  no such command, report or event
  4  a library cannot be loaded, the simulated gateway cannot be opened, or a service or broker cannot
     be reached
  5  standard input or output failed, or the file of --junit, --request-file or --ids
  6  out of memory
  128 + N  call, serve, report image-upgrade, conformance, shell or mqtt-call was ended by signal N

Examples:
  hgagent call GET_SN_INFO
  hgagent call RESPONSE_ROUTER_VERSION VersionInfo="app 5.2.0"
  hgagent call RESPONSE_ROUTER_VERSION '{"VersionInfo": "app 5.2.0"}'
  hgagent report home-page
  hgagent --scenario operator_variant topology
  hgagent notice --plugin-name parental_control "A new phone is in the home"
  hgagent --fault devapi_get_sn_info=-1 call GET_SN_INFO
  echo '{"id": 1, "command": "GET_SN_INFO", "params": {}}' | hgagent serve
)";

// Omits the check from the help text: the value's name already describes it.
CLI::Validator silent(CLI::Validator check)
{
    return check.description("");
}

void add_host_options(CLI::App &app, Options &options)
{
    HostOptions &host = options.host;
    app.add_option("--device", host.device,
                   "Device library to load instead of the simulated gateway")
        ->type_name("LIB");
    CLI::Option *recorded =
        app.add_option("--device-recording", host.device_recording,
                       "Recording whose device calls answer queries instead of a device library")
            ->type_name("FILE");
    app.add_option("--plugin", host.plugin, "Plug-in to load instead of the one next to the agent")
        ->type_name("LIB");
    app.add_option("--scenario", host.scenario,
                   "Home that the simulated gateway starts from: a built-in name or a file")
        ->type_name("NAME|FILE");
    app.add_option("--state", host.state, "File in which the simulated gateway keeps its state")
        ->type_name("FILE");
    app.add_option("--fault", host.faults,
                   "Let a device call fail: FUNCTION=RESULT[*COUNT][@DELAYms]; may be repeated")
        ->type_name("FAULT")
        ->allow_extra_args(false); // otherwise it would take the subcommand as an argument
    app.add_option("--trace", host.trace,
                   "File to which every device call is written; - is standard error")
        ->type_name("FILE|-");
    app.add_option("--record", host.record,
                   "File to which a recording of commands and device calls is appended")
        ->type_name("FILE");
    app.add_option("--record-limit", host.record_limit,
                   "Largest recording, such as 64M, the default; the one before is kept as FILE.1")
        ->type_name("BYTES")
        ->transform(silent(CLI::AsSizeValue(false)))
        ->check(silent(CLI::Range(kLeastRecordLimit, kMostRecordLimit)))
        ->allow_extra_args(false);
    app.add_option("--mask-key", host.mask_key,
                   "File that keeps the key of a recording's pseudonyms, for comparisons")
        ->type_name("FILE");
    app.add_option("--firmware-folder", host.firmware_folder,
                   "Folder from which file:// addresses may fetch firmware; none without it")
        ->type_name("FOLDER");
    app.add_option("--firmware-key", host.firmware_key,
                   "File with the public key by which firmware has to be signed")
        ->type_name("FILE");
    app.add_option("--reboot-seconds", host.reboot_seconds,
                   "How long a reboot of the simulated gateway takes; 0 unless given")
        ->type_name("SECONDS")
        ->check(silent(CLI::Range(0, 86400)))
        ->allow_extra_args(false);
    app.add_option("--log-level", options.log_level,
                   "Highest level of log lines that are shown: 3 errors, 7 everything")
        ->type_name("0..7")
        ->check(silent(CLI::Range(0, 7)))
        ->capture_default_str();
    app.add_flag("--show-secrets", host.show_secrets,
                 "Show passwords and keys in the log, in the trace and in a recording");
    app.add_option("--refuse-notices", options.notice_refusal,
                   "Answer every notice to the app with this result; 0 refuses none")
        ->type_name("RESULT")
        ->allow_extra_args(false);
    app.add_flag("--verbose", host.verbose,
                 "Name all that a library lacks, not only the first few");
    app.add_flag("--raw-bytes", options.raw_bytes,
                 "Print replies as the plug-in leaves them, without converting their encoding");
    for (const char *other : {"--device", "--scenario", "--state", "--fault", "--firmware-folder",
                              "--firmware-key", "--reboot-seconds"}) {
        recorded->excludes(app.get_option(other));
    }
}

CLI::Option *add_reasons(CLI::App *subcommand, Options &options)
{
    return subcommand->add_flag("--reasons", options.reasons,
                                "Report what the device library says about calls that it refuses");
}

// For the subcommands that can also use a service. It excludes the options for libraries.
void add_socket(CLI::App &app, CLI::App *subcommand, Options &options)
{
    CLI::Option *socket =
        subcommand
            ->add_option("--socket", options.socket,
                         "Unix socket of a running service, which is used instead of libraries")
            ->type_name("PATH")
            ->allow_extra_args(false);
    exclude_library_options(app, socket);
}

void add_call(CLI::App &app, Options &options)
{
    CLI::App *call = app.add_subcommand("call", "Run one command and print its reply");
    add_request(call, options.call)->required();
    CLI::Option *reasons = add_reasons(call, options);
    add_socket(app, call, options);
    call->get_option("--socket")->excludes(reasons);
    call->footer(R"(
hgagent call NAME [JSON | - | KEY=VALUE ...]
The request is a JSON object, - to read it from standard input, or KEY=VALUE words, each a string, in their
order; without any of them {}. Everybody on the machine can read the words of a command line: pass a
password on standard input or in a file.)");
    call->callback([call, &options] {
        options.subcommand = Subcommand::kCall;
        take_request(*call, options.call);
    });
}

void add_serve(CLI::App &app, Options &options)
{
    CLI::App *serve = app.add_subcommand(
        "serve",
        "Answer requests, one JSON object per line, from standard input on standard output");
    serve->add_option("--max-line", options.serve.max_line, "Longest line that is served")
        ->type_name("BYTES")
        ->check(silent(CLI::PositiveNumber))
        ->capture_default_str();
    serve->add_flag("--events", options.serve.events,
                    "Report all events in lines {\"event\": NAME, ...}");
    add_reasons(serve, options);
    serve->footer(R"(
Request: {"id": ANY, "command": "NAME", "params": {...}}; id and params may be left out.
Answer:  {"id": ANY, "result": 0, "reply": {...}}; result is -3 when there is no such command.
A line that is not a request is answered with {"id": null, "error": "...", "code": "bad-request"}, one that
is too long with the code "too-large", and all during a reboot with "rebooting".
A report is built by {"id": ANY, "report": "NAME", "params": {...}} and answered likewise; {"hello": {}} is
answered with the versions of protocol and agent. {"control": {...}} changes faults, scenario, clock and trace of
the simulated gateway.
A notice to the app is raised with {"id": ANY, "notice": {"plugin_name": TEXT, "text": TEXT}}, and
answered with {"id": ANY, "result": 0} when it was accepted.
Between answers there are lines {"notice": {...}} for what is pushed to the app, and
{"progress": {"task": "firmware", "percent": 0..100}} while an image is fetched. With --events these and
all other events are lines {"event": NAME, "data": {...}}; hgagent list --events names them.
With --reasons an answer has "reasons": [TEXT, ...] after its reply; those of a worker are a separate
line, {"reasons": [TEXT]}.)");
    serve->callback([&options] { options.subcommand = Subcommand::kServe; });
}

void add_notice(CLI::App &app, Options &options)
{
    CLI::App *notice =
        app.add_subcommand("notice", "Raise a notice to the app and print what is pushed");
    notice
        ->add_option("--plugin-name", options.notice.plugin_name,
                     "Part of the system that raises it")
        ->type_name("NAME")
        ->required()
        ->allow_extra_args(false);
    add_socket(app, notice, options);
    notice->add_option("TEXT", options.notice.text, "Text of the notice, or - for standard input")
        ->type_name("")
        ->required();
    notice->callback([&options] { options.subcommand = Subcommand::kNotice; });
}

void refuse_unless_for(const CLI::App *report, const char *option, bool takes_it)
{
    if (report->count(option) > 0 && !takes_it) {
        throw CLI::ExtrasError("report", {option});
    }
}

void add_report(CLI::App &app, Options &options)
{
    CLI::App *report = app.add_subcommand(
        "report", "Print a report that the plug-in builds without a command, or list the reports");
    CLI::Option *name =
        report->add_option("NAME", options.report, "Name of the report")->type_name("");
    report->add_option("--url", options.update_url, "Address of the image for image-upgrade")
        ->type_name("URL")
        ->needs(name)
        ->allow_extra_args(false);
    report
        ->add_option("--path", options.router_path,
                     "Path of the router in the tree of parameters for stations")
        ->type_name("PATH")
        ->needs(name)
        ->allow_extra_args(false)
        ->capture_default_str();
    add_socket(app, report, options);
    report->footer(R"(
hgagent report image-upgrade --url URL
Fetches the image and flashes it; the new firmware runs after the next reboot. The exit status is 1
when the plug-in logged an error meanwhile.)");
    report->callback([report, &options] {
        options.subcommand = Subcommand::kReport;
        refuse_unless_for(report, "--url", options.report == kImageUpgrade);
        refuse_unless_for(report, "--path", options.report == kStations);
    });
}

void add_hosts(CLI::App &app, Options &options)
{
    CLI::App *hosts = app.add_subcommand("hosts", "Show the devices attached to the gateway");
    add_socket(app, hosts, options);
    hosts->callback([&options] { options.subcommand = Subcommand::kHosts; });
}

void add_topology(CLI::App &app, Options &options)
{
    CLI::App *topology =
        app.add_subcommand("topology", "Draw the routers of the mesh and what is attached to each");
    add_socket(app, topology, options);
    CLI::Option *ascii = topology->add_flag("--ascii", options.topology.ascii,
                                            "Draw with - and | also where the locale is UTF-8");
    topology->add_flag("--dot", options.topology.dot, "Print a graph for Graphviz instead")
        ->excludes(ascii);
    topology->callback([&options] { options.subcommand = Subcommand::kTopology; });
}

void add_protocol_pages(CLI::App &app, Options &options)
{
    CLI::App *list = app.add_subcommand("list", "List the commands, or the events");
    list->add_flag("--events", options.list_events, "List the events instead of the commands");
    list->add_option("PATTERN", options.pattern, "Part of the names, or a pattern with * and ?")
        ->type_name("");
    list->callback([&options] { options.subcommand = Subcommand::kList; });

    CLI::App *describe = app.add_subcommand(
        "describe", "Show what a command takes and replies, or what an event contains");
    describe->add_option("NAME", options.described, "Name of the command or event")
        ->type_name("")
        ->required();
    describe->callback([&options] { options.subcommand = Subcommand::kDescribe; });
}

void add_conformance(CLI::App &app, Options &options)
{
    ConformanceOptions &conformance = options.conformance;
    CLI::App *subcommand = app.add_subcommand(
        "conformance", "Test a device library against what the plug-in relies on");
    subcommand->add_flag("--allow-writes", conformance.allow_writes,
                         "Run settings as well: change, read back, restore");
    subcommand
        ->add_option("--command", conformance.commands,
                     "Test only this command, also one that cannot be undone; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false);
    subcommand
        ->add_option("--patience", conformance.patience,
                     "How long one check may take before it counts as hanging")
        ->type_name("SECONDS")
        ->check(silent(CLI::Range(1, 86400)))
        ->capture_default_str();
    subcommand->add_option("--junit", conformance.junit, "File for the results in JUnit's format")
        ->type_name("FILE");
    subcommand->footer(R"(
A command that cannot be undone runs only when it is named and writes are allowed.
The exit status is 1 when a check has failed; what is not supported or skipped is no failure.)");
    subcommand->callback([&options] { options.subcommand = Subcommand::kConformance; });
}

// ---- Usage errors ------------------------------------------------------------------------------

constexpr size_t kMaxWord = 64;

std::string quoted_word(const std::string &word)
{
    return "\"" + one_line(word, kMaxWord) + "\"";
}

std::vector<const CLI::App *> subcommands_of(const CLI::App &app)
{
    return app.get_subcommands([](const CLI::App *) { return true; });
}

std::string about_subcommand(const CLI::App &app, const std::string &word)
{
    constexpr size_t kMostMistakes = 2;
    if (find_description(word) != nullptr) {
        return word + " is a command: hgagent call " + word;
    }
    const std::string beginning = word.substr(0, kMaxWord);
    for (size_t mistakes = 1; mistakes <= kMostMistakes; ++mistakes) {
        for (const CLI::App *subcommand : subcommands_of(app)) {
            if (edit_distance(beginning, subcommand->get_name()) == mistakes) {
                return "no subcommand " + quoted_word(word) + "; was " + subcommand->get_name() +
                       " meant?";
            }
        }
    }
    return "no subcommand " + quoted_word(word);
}

// The correct place of a misplaced option; empty when no such option exists.
std::string about_place(const CLI::App &app, const std::string &option)
{
    if (app.get_option_no_throw(option) != nullptr) {
        return option + " belongs before the subcommand: hgagent " + option + " ... " +
               app.get_subcommands().front()->get_name() + " ...";
    }
    std::string owners;
    for (const CLI::App *subcommand : subcommands_of(app)) {
        if (subcommand->get_option_no_throw(option) != nullptr) {
            owners += (owners.empty() ? "" : " or ") + subcommand->get_name();
        }
    }
    return owners.empty() ? "" : option + " belongs behind the subcommand " + owners;
}

// A hint derived from the unrecognised words; empty when there is none.
std::string hint_for(const CLI::App &app)
{
    for (const std::string &word : app.remaining(true)) {
        const std::string option = word.substr(0, word.find('='));
        if (option.starts_with("--")) {
            std::string place = about_place(app, option);
            if (!place.empty()) {
                return place;
            }
        } else if (app.get_subcommands().empty()) {
            return about_subcommand(app, word);
        }
    }
    return "";
}

// Which options exclude each other is left out: the lists are longer than what the options mean.
class HelpFormatter : public CLI::Formatter {
  public:
    std::string make_option_opts(const CLI::Option *option) const override
    {
        const std::string text = CLI::Formatter::make_option_opts(option);
        return text.substr(0, std::min(text.find(" Needs:"), text.find(" Excludes:")));
    }
};

std::string failure_message(const CLI::App *app, const CLI::Error &problem)
{
    const std::string hint = hint_for(*app);
    return hint.empty() ? CLI::FailureMessage::simple(app, problem)
                        : "hgagent: " + hint + "\nRun with --help for more information.\n";
}

} // namespace

CLI::Option *add_request(CLI::App *subcommand, CallOptions &call)
{
    CLI::Option *name =
        subcommand->add_option("NAME", call.command, "Name of the command")->type_name("");
    subcommand
        ->add_option("--request-file", call.request_file, "File with the request, a JSON object")
        ->type_name("FILE")
        ->allow_extra_args(false);
    subcommand->allow_extras();
    return name;
}

// Takes the words after the name unchanged. A CLI11 list option would split a JSON array into
// elements.
void take_request(const CLI::App &subcommand, CallOptions &call)
{
    call.request = subcommand.remaining();
    if (call.request_file && !call.request.empty()) {
        throw CLI::ExtrasError(subcommand.get_name(), call.request);
    }
    for (const std::string &word : call.request) {
        if (word.starts_with('-') && word != "-") {
            throw CLI::ExtrasError(subcommand.get_name(), {word});
        }
    }
}

namespace {

constexpr const char *kLibraryOptions[] = {"--device",          "--device-recording",
                                           "--plugin",          "--scenario",
                                           "--state",           "--fault",
                                           "--trace",           "--record",
                                           "--record-limit",    "--mask-key",
                                           "--firmware-folder", "--firmware-key",
                                           "--reboot-seconds",  "--refuse-notices"};

} // namespace

void exclude_library_options(CLI::App &app, CLI::Option *option)
{
    for (const char *excluded : kLibraryOptions) {
        option->excludes(app.get_option(excluded));
    }
}

void refuse_library_options(const CLI::App &app, const std::string &subcommand)
{
    for (const char *option : kLibraryOptions) {
        if (app.get_option(option)->count() > 0) {
            throw CLI::ExcludesError(subcommand, option);
        }
    }
}

std::optional<Options> parse_options(int count, char **words, int &exit_status,
                                     AddSubcommands add_others)
{
    Options options;
    CLI::App app(
        "Reference agent: loads the plug-in and a device library as a gateway's agent does, "
        "runs commands and prints the replies.",
        "hgagent");
    app.set_version_flag("--version", "hgagent " HGAGENT_VERSION);
    app.failure_message(failure_message);
    app.formatter(std::make_shared<HelpFormatter>()); // before the subcommands, which take it over
    app.require_subcommand(1);
    add_host_options(app, options);
    add_call(app, options);
    add_serve(app, options);
    add_notice(app, options);
    add_report(app, options);
    add_hosts(app, options);
    add_topology(app, options);
    add_protocol_pages(app, options);
    add_conformance(app, options);
    add_recordings(app, options);
    if (add_others != nullptr) {
        add_others(app, options);
    }
    app.footer(kFooter); // after the subcommands, which would inherit it

    try {
        app.parse(count, words);
    } catch (const CLI::ParseError &outcome) {
        const bool all_well = app.exit(outcome) == 0;
        exit_status = all_well ? kSuccess : kWrongUsage;
        return std::nullopt;
    }
    return options;
}

} // namespace agent
