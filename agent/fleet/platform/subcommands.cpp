// SPDX-License-Identifier: MIT
#include "fleet/platform/subcommands.h"

#include "fleet/platform/campaign.h"
#include "fleet/platform/drive.h"
#include "io/text.h"
#include "service/common/config_error.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <sstream>

namespace agent::fleet::platform {

namespace {

// Seconds, or a number with s, m or h.
std::chrono::seconds seconds_from(const std::string &text)
{
    size_t end = 0;
    double number = 0;
    try {
        number = std::stod(text, &end);
    } catch (const std::logic_error &) {
        end = 0;
    }
    const std::string unit = text.substr(end);
    const double factor = unit.empty() || unit == "s" ? 1
                          : unit == "m"               ? 60
                          : unit == "h"               ? 3600
                                                      : 0;
    constexpr double kLongest = 7 * 24 * 3600;
    if (end == 0 || factor == 0 || !(number * factor >= 1) || number * factor > kLongest) {
        throw WrongUsage(service::in_message(text) +
                         " is not a time from 1s to a week, such as 90s, 10m or 2h");
    }
    return std::chrono::seconds(static_cast<int64_t>(number * factor));
}

// Runs what the command line asks for; what is wrong with it is reported.
template <class Function> int with_usage_errors(Function function)
{
    try {
        return function();
    } catch (const WrongUsage &problem) {
        print_error(problem.what());
    } catch (const service::ConfigError &wrong) {
        return service::report_problems(wrong);
    }
    return kWrongUsage;
}

std::vector<double> waves_from(const std::string &text)
{
    std::vector<double> waves;
    std::istringstream words(text);
    for (std::string word; std::getline(words, word, ',');) {
        size_t end = 0;
        double percent = 0;
        try {
            percent = std::stod(word, &end);
        } catch (const std::logic_error &) {
            end = 0;
        }
        if (end != word.size() || word.empty() || !(percent > (waves.empty() ? 0 : waves.back())) ||
            percent > 100) {
            throw WrongUsage("--waves: " + service::in_message(text) +
                             " are not percentages that rise, such as 1,10,100");
        }
        waves.push_back(percent);
    }
    if (waves.empty()) {
        throw WrongUsage("--waves: there is none");
    }
    return waves;
}

struct CampaignArguments {
    std::string url;
    std::string version;
    std::string waves = "1,10,100";
    double stop_at = 5;
    double rate = 10;
    std::string time = "10m";
};

struct DriveArguments {
    std::string time;
    double rate = 0;
    std::string mix;
    bool has_churn = false;
};

void add_drive(CLI::App &fleet, Options &options)
{
    CLI::App *command = fleet.add_subcommand(
        "drive", "Send commands to the gateways of a fleet, and check that nothing is lost");
    auto platform = std::make_shared<PlatformArguments>();
    auto drive = std::make_shared<DriveArguments>();
    add_platform_options(*command, platform);
    command->add_option("--rate", drive->rate, "Requests per second")
        ->type_name("R")
        ->required()
        ->allow_extra_args(false)
        ->check(CLI::Range(0.01, 100000.0).description(""));
    command->add_option("--for", drive->time, "How long, such as 90s, 10m or 2h")
        ->type_name("TIME")
        ->required()
        ->allow_extra_args(false);
    command
        ->add_option("--mix", drive->mix, "Commands and their weights, instead of the usual ones")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command->add_flag(
        "--churn", drive->has_churn,
        "The fleet has --churn and this seed: count failures of its faulty gateways separately");
    command->footer(R"(
Each request is sent at its time, regardless of open ones, and repeated until it is answered. Each reply is checked
against its description. What has been set is read back at the end and compared. The exit status is 0 when
every request was answered as described, nothing was lost and nothing was executed twice, otherwise 1.)");
    command->callback([platform, drive, &options] {
        options.subcommand = Subcommand::kOther;
        options.other = [platform, drive] {
            return with_usage_errors([&] {
                DriveOptions given;
                given.platform = platform_options(*platform);
                given.rate = drive->rate;
                given.time = seconds_from(drive->time);
                if (given.rate * static_cast<double>(given.time.count()) < 1) {
                    throw WrongUsage("--rate and --for: that is less than one request");
                }
                given.has_churn = drive->has_churn;
                given.first = platform->first;
                if (given.has_churn && !platform->id_files.empty()) {
                    throw WrongUsage("--churn needs --count instead of --ids");
                }
                given.mix = drive->mix.empty() ? parse_mix(default_mix(), "the usual mix")
                                               : read_mix(drive->mix);
                return Drive(std::move(given)).run();
            });
        };
    });
}

void add_campaign(CLI::App &fleet, Options &options)
{
    CLI::App *command =
        fleet.add_subcommand("campaign", "Update the firmware of a fleet's gateways in waves");
    auto platform = std::make_shared<PlatformArguments>();
    auto campaign = std::make_shared<CampaignArguments>();
    add_platform_options(*command, platform);
    const auto add = [command](const char *name, auto &place, const char *help, const char *type) {
        return command->add_option(name, place, help)->type_name(type)->allow_extra_args(false);
    };
    add("--url", campaign->url, "Address of the image, as the gateways reach it", "URL")
        ->required();
    add("--firmware", campaign->version, "Version that runs after the update", "VERSION")
        ->required();
    add("--waves", campaign->waves,
        "Percentages of the gateways, each with those before; 1,10,100 by default", "PERCENT,...");
    add("--stop-at", campaign->stop_at, "The campaign stops when more of a wave fail; 5 by default",
        "PERCENT")
        ->check(CLI::Range(0.0, 100.0).description(""));
    add("--rate", campaign->rate, "Gateways started per second; 10 by default", "R")
        ->check(CLI::Range(0.01, 10000.0).description(""));
    add("--within", campaign->time,
        "Time in which a gateway has to run the version; 10m by default", "TIME");
    command->footer(R"(
A wave begins when every gateway of the one before has updated or failed. The exit status is 0 when the
campaign was not stopped, otherwise 1.)");
    command->callback([platform, campaign, &options] {
        options.subcommand = Subcommand::kOther;
        options.other = [platform, campaign] {
            return with_usage_errors([&] {
                CampaignOptions given;
                given.platform = platform_options(*platform);
                given.url = campaign->url;
                given.version = campaign->version;
                given.waves = waves_from(campaign->waves);
                given.stop_at = campaign->stop_at;
                given.rate = campaign->rate;
                given.time = seconds_from(campaign->time);
                return Campaign(std::move(given)).run();
            });
        };
    });
}

} // namespace

void add_subcommands(CLI::App &app, Options &options)
{
    CLI::App &fleet = *app.get_subcommand("fleet");
    add_drive(fleet, options);
    add_campaign(fleet, options);
}

} // namespace agent::fleet::platform
