// SPDX-License-Identifier: MIT
#include "service/subcommands.h"

#include "service/config.h"
#include "service/mqtt_call/mqtt_call.h"
#include "service/policy_test.h"
#include "service/run.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace agent::service {

namespace {

using namespace std::string_literals;

// The values are ignored here: they are read from the options themselves.
void ignore_count(int64_t) {}
void ignore_text(const std::string &) {}
void ignore_texts(const std::vector<std::string> &) {}

void add_setting(CLI::App *run, const Setting &setting)
{
    if (*setting.value_name == '\0') {
        run->add_flag_function(setting.option, ignore_count, setting.help);
        return;
    }
    // The value is checked together with those of the file.
    using List = std::vector<std::string> &(*)(ServiceConfig &);
    CLI::Option *option =
        std::holds_alternative<List>(setting.place)
            ? run->add_option_function<std::vector<std::string>>(setting.option, ignore_texts,
                                                                 setting.help)
            : run->add_option_function<std::string>(setting.option, ignore_text, setting.help);
    option->type_name(setting.value_name)->allow_extra_args(false);
    if (setting.without_value != nullptr) {
        option->expected(0, 1)->type_name("["s + setting.value_name + "]");
    }
}

// The settings given on the command line, in their order.
std::vector<RunOptions::Given> given_settings(const CLI::App &app, const CLI::App &run)
{
    std::vector<RunOptions::Given> given;
    for (const Setting &setting : settings()) {
        for (const CLI::App *place : {&app, &run}) { // some options belong to both
            const CLI::Option *option = place->get_option_no_throw(setting.option);
            if (option != nullptr && option->count() > 0) {
                given.push_back({setting.key, setting.option, option->results()});
            }
        }
    }
    if (run.count("--in-process") > 0) {
        given.push_back({"worker.kind", "--in-process", {"in-process"}});
    }
    return given;
}

void add_run(CLI::App &app, Options &options)
{
    CLI::App *run = app.add_subcommand(
        "run", "Serve many clients at once, by Unix socket, MQTT and HTTP, under a policy");
    auto chosen = std::make_shared<RunOptions>();
    run->add_option("--config", chosen->config, "File with the configuration, in TOML")
        ->type_name("FILE")
        ->allow_extra_args(false);
    run->add_flag("--check-config", chosen->check,
                  "Only check the configuration, and report errors with file, line and key");
    for (const Setting &setting : settings()) {
        if (!setting.belongs_to_agent()) {
            add_setting(run, setting);
        }
    }
    run->add_flag_function("--in-process", ignore_count, "The same as --worker in-process")
        ->excludes(run->get_option("--worker"));
    run->footer(R"(
Without a policy it serves the user who started it, clients with the console's token,
and a local broker for queries without secrets.
Options take precedence over the file. SIGHUP loads the file again.)");
    run->callback([&app, run, chosen, &options] {
        chosen->given = given_settings(app, *run);
        options.subcommand = Subcommand::kOther;
        options.other = [chosen] {
            return chosen->check ? check_config(*chosen) : run_service(*chosen);
        };
    });
}

void add_policy(CLI::App &app, Options &options)
{
    CLI::App *policy = app.add_subcommand("policy", "Try out who may do what with the service");
    CLI::App *test = policy->add_subcommand(
        "test", "Report whether a request would be allowed, and by which rule");
    policy->require_subcommand(1);
    auto question = std::make_shared<PolicyQuestion>();
    test->add_option("FILE", question->file, "File with the roles: a policy or a configuration")
        ->type_name("")
        ->required();
    test->add_option("REQUEST", question->request,
                     "Name of a command, or report:NAME, notice:NAME, event:NAME or control:NAME")
        ->type_name("")
        ->required();
    test->add_option("--as", question->principals,
                     "Who sends it: owner, or a member of a role, such as user:NAME or "
                     "topic-root:ROOT; may be repeated")
        ->type_name("WHO")
        ->required()
        ->allow_extra_args(false);
    test->footer(R"(
For a user that this system knows, number and groups are added.
The exit status is 0 when the request would be allowed, 1 when it would be denied, 2 when something is
wrong with the file, and 3 when there is no such request.)");
    test->callback([question, &options] {
        options.subcommand = Subcommand::kOther;
        options.other = [question] {
            return test_policy(*question);
        };
    });
}

void add_listen(CLI::App &app, Options &options)
{
    app.get_subcommand("serve")
        ->add_option("--listen", options.serve.listen,
                     "Serve the service that connects here, for run --worker unix:PATH")
        ->type_name("unix:PATH")
        ->allow_extra_args(false);
}

} // namespace

void add_subcommands(CLI::App &app, Options &options)
{
    add_listen(app, options);
    add_run(app, options);
    add_policy(app, options);
    add_mqtt_call(app, options);
}

} // namespace agent::service
