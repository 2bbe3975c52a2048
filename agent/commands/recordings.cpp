// SPDX-License-Identifier: MIT
#include "commands/recordings.h"

#include "record/recording_diff.h"
#include "record/replay.h"
#include "record/test_case.h"

#include <CLI/CLI.hpp>

namespace agent {

namespace {

constexpr size_t kMostCommands = 1'000'000'000;

void add_file(CLI::App *subcommand, const char *name, std::string &file, const char *meaning)
{
    subcommand->add_option(name, file, meaning)->type_name("")->required();
}

void add_replay(CLI::App &app, Options &options)
{
    CLI::App *replay =
        app.add_subcommand("replay", "Play a recording against the plug-in, and show differences");
    const auto given = std::make_shared<record::ReplayOptions>();
    add_file(replay, "FILE", given->file, "The recording");
    replay
        ->add_option("--plugin", given->plugin,
                     "Plug-in to test instead of the one next to the agent")
        ->type_name("LIB")
        ->allow_extra_args(false);
    replay->add_flag("--all", given->shows_all, "Show every difference, not only the first");
    replay->footer(R"(
The recording takes the place of the device library: its requests are run in the recorded order, and each device
call gets the recorded answer. Replies, device calls with what they pass, and log lines are compared. The exit
status is 0 without a difference, 1 with one, and 2 if FILE is not a recording.)");
    replay->callback([&options, given] {
        options.subcommand = Subcommand::kOther;
        given->plugin = given->plugin.empty() ? options.host.plugin : given->plugin;
        options.other = [given] {
            return record::run_replay(*given);
        };
    });
}

void add_diff(CLI::App &app, Options &options)
{
    CLI::App *diff = app.add_subcommand("diff", "Compare two recordings, without their times");
    const auto files = std::make_shared<std::pair<std::string, std::string>>();
    add_file(diff, "A", files->first, "A recording");
    add_file(diff, "B", files->second, "Another one");
    diff->footer(R"(
Commands are compared in their order, and the device calls of each. Values of secrets are comparable if both
were recorded with the same --mask-key. The exit status is 0 without a difference, 1 with one, and 2 if a file is
not a recording.)");
    diff->callback([&options, files] {
        options.subcommand = Subcommand::kOther;
        options.other = [files] {
            return record::run_diff(files->first, files->second);
        };
    });
}

void add_make_test(CLI::App &app, Options &options)
{
    CLI::App *make_test =
        app.add_subcommand("make-test", "Print a part of a recording as a test case");
    const auto given = std::make_shared<record::TestCaseOptions>();
    add_file(make_test, "FILE", given->file, "The recording");
    make_test->add_option("--command", given->command, "Only the command with this number, from 1")
        ->type_name("N")
        ->check(CLI::Range(size_t{1}, kMostCommands).description(""))
        ->allow_extra_args(false);
    make_test->footer(R"(
Prints the command with all that it led to, also in threads that it started, as a recording without times,
which hgagent replay plays.)");
    make_test->callback([&options, given] {
        options.subcommand = Subcommand::kOther;
        options.other = [given] {
            return record::run_make_test(*given);
        };
    });
}

} // namespace

void add_recordings(CLI::App &app, Options &options)
{
    add_replay(app, options);
    add_diff(app, options);
    add_make_test(app, options);
}

} // namespace agent
