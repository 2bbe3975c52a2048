// SPDX-License-Identifier: MIT
// The control interface: settings from the host and the environment, and the one open gateway.
#include "core/control.h"

#include "core/fields.h"
#include "io/clock.h"
#include "model/scenario.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace simulated_gateway {
namespace {

struct Control {
    std::mutex mutex;
    std::shared_ptr<Gateway> gateway;
    bool environment_failed = false; // reported once, not at every call
};

// Never destroyed: a worker thread may call the device while the process ends.
Control &control()
{
    static Control &only = *new Control;
    return only;
}

// An empty variable counts as unset, but an empty option is an error of the host's user.
std::optional<std::string> given(const char *name, const char *option, const char *variable)
{
    if (option != nullptr && *option == '\0') {
        throw Error(std::string(name) + ": is empty");
    }
    // Reading the environment is safe as long as nobody writes it; a host with threads does not.
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    const char *value = option != nullptr ? option : std::getenv(variable);
    return value != nullptr && *value != '\0' ? std::optional<std::string>(value) : std::nullopt;
}

std::vector<std::string> split(const std::string &list)
{
    std::vector<std::string> parts(1);
    for (const char letter : list) {
        if (letter == ',') {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    return parts;
}

std::optional<int64_t> number_in(const char *variable, const Range &range, const char *meaning)
{
    const auto text = given(variable, nullptr, variable);
    if (!text) {
        return std::nullopt;
    }
    int64_t number = 0;
    const char *end = text->data() + text->size();
    const auto [rest, error] = std::from_chars(text->data(), end, number);
    if (error != std::errc() || rest != end || !validation_error(number, range).empty()) {
        throw Error(std::string(variable) + ": " + in_quotes(*text) + " is no " + meaning);
    }
    return number;
}

// Without links.
std::string real_folder(const std::string &folder)
{
    std::error_code failure;
    const std::filesystem::path real = std::filesystem::canonical(folder, failure);
    if (!failure && !std::filesystem::is_directory(real, failure) && !failure) {
        failure = std::make_error_code(std::errc::not_a_directory);
    }
    if (failure) {
        throw Error(folder + ": " + failure.message());
    }
    if (real == real.root_path()) {
        throw Error(folder + ": is the root of the file system");
    }
    return real.string();
}

FetchLimits fetch_limits(const char *file_folder)
{
    constexpr Range seconds{1, 86400};
    constexpr char meaning[] = "number of seconds from 1 to 86400";
    FetchLimits limits;
    if (const auto bytes = number_in("SIMULATED_GATEWAY_LARGEST_IMAGE", {1, INT64_C(1) << 40},
                                     "number of bytes from 1 to 2^40")) {
        limits.largest_image = static_cast<uint64_t>(*bytes);
    }
    if (const auto time = number_in("SIMULATED_GATEWAY_CONNECT_TIMEOUT", seconds, meaning)) {
        limits.connect_timeout = std::chrono::seconds(*time);
    }
    if (const auto time = number_in("SIMULATED_GATEWAY_STALL_TIMEOUT", seconds, meaning)) {
        limits.stall_timeout = std::chrono::seconds(*time);
    }
    if (const auto time = number_in("SIMULATED_GATEWAY_TRANSFER_TIMEOUT", seconds, meaning)) {
        limits.transfer_timeout = std::chrono::seconds(*time);
    }
    if (const auto folder =
            given("firmware folder", file_folder, "SIMULATED_GATEWAY_FIRMWARE_FOLDER")) {
        limits.file_folder = real_folder(*folder);
    }
    limits.ca_file = given("CA file", nullptr, "SIMULATED_GATEWAY_CA_FILE").value_or("");
    return limits;
}

Settings settings_from(const SimulatedGatewayOptions &options)
{
    Settings settings;
    settings.scenario = given("scenario", options.scenario, "SIMULATED_GATEWAY_SCENARIO");
    settings.state_file = given("state file", options.state_file, "SIMULATED_GATEWAY_STATE");
    settings.trace = given("trace", options.trace, "SIMULATED_GATEWAY_TRACE");
    if (options.faults != nullptr) {
        for (const char *const *fault = options.faults; *fault != nullptr; ++fault) {
            settings.faults.emplace_back(*fault);
        }
    } else if (const auto faults = given("faults", nullptr, "SIMULATED_GATEWAY_FAULTS")) {
        settings.faults = split(*faults);
    }
    const std::string shown =
        given("secrets", nullptr, "SIMULATED_GATEWAY_SHOW_SECRETS").value_or("0");
    if (shown != "0" && shown != "1") {
        throw Error("SIMULATED_GATEWAY_SHOW_SECRETS: " + in_quotes(shown) + " is neither 0 nor 1");
    }
    settings.show_secrets = options.show_secrets != 0 || shown == "1";
    settings.fixed_time =
        number_in("SIMULATED_GATEWAY_TIME", {0, INT64_MAX}, "number of seconds since 1970");
    settings.fetch_limits = fetch_limits(options.firmware_folder);
    settings.reboot_seconds = std::max(options.reboot_seconds, 0);
    if (options.home != nullptr) {
        settings.home = {options.home->seed, options.home->number};
    }
    settings.firmware_key =
        given("firmware key", options.firmware_key, "SIMULATED_GATEWAY_FIRMWARE_KEY");
    return settings;
}

} // namespace

namespace {

std::shared_ptr<Gateway> open_gateway()
{
    const std::lock_guard lock(control().mutex);
    return control().gateway;
}

// Changes a setting of the open gateway. Result: 0; -1 with the reason in error.
template <class Change> int32_t change_open(char *error, size_t error_size, Change change)
try {
    const std::shared_ptr<Gateway> gateway = open_gateway();
    if (gateway == nullptr) {
        throw Error("no gateway is open");
    }
    change(*gateway);
    return 0;
} catch (const std::exception &failure) {
    if (error != nullptr && error_size > 0) {
        std::snprintf(error, error_size, "%s", failure.what());
    }
    return -1;
}

// "2026-01-01T00:00:00", in UTC.
std::string time_text(int64_t time)
{
    constexpr int64_t end_of_9999 = 253402300799;
    const auto whole = std::chrono::sys_seconds(std::chrono::seconds(std::min(time, end_of_9999)));
    const auto day = std::chrono::floor<std::chrono::days>(whole);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(whole - day);
    char text[64];
    std::snprintf(text, sizeof(text), "%04d-%02u-%02uT%02d:%02d:%02d",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

int digits_at(const std::string &text, size_t place, size_t count)
{
    int number = 0;
    for (const char letter : text.substr(place, count)) {
        number = 10 * number + (letter - '0');
    }
    return number;
}

// Nothing for other texts.
std::optional<int64_t> time_in(const std::string &text)
{
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd";
    const bool has_form = std::ranges::equal(text, form, [](char letter, char mark) {
        return mark == 'd' ? letter >= '0' && letter <= '9' : letter == mark;
    });
    if (!has_form) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date(
        std::chrono::year(digits_at(text, 0, 4)),
        std::chrono::month(static_cast<unsigned>(digits_at(text, 5, 2))),
        std::chrono::day(static_cast<unsigned>(digits_at(text, 8, 2))));
    const int hours = digits_at(text, 11, 2);
    const int minutes = digits_at(text, 14, 2);
    const int seconds = digits_at(text, 17, 2);
    const bool exists = date.ok() && date.year() >= std::chrono::year(1970) && hours < 24 &&
                        minutes < 60 && seconds < 60;
    return exists ? std::optional(std::chrono::sys_days(date).time_since_epoch() /
                                      std::chrono::seconds(1) +
                                  hours * 3600L + minutes * 60L + seconds)
                  : std::nullopt;
}

void set_clock(const char *clock)
{
    if (clock == nullptr) {
        fix_clock(std::nullopt);
        return;
    }
    constexpr int64_t most_seconds = INT64_C(10) * 366 * 86400;
    const std::string text = clock;
    if (const auto time = time_in(text)) {
        fix_clock(time);
        return;
    }
    int64_t seconds = 0;
    const char *end = text.data() + text.size();
    const bool is_number =
        text.size() > 1 && text[0] == '+' && text[1] != '-' &&
        std::from_chars(text.data() + 1, end, seconds) == std::from_chars_result{end, std::errc()};
    if (!is_number || seconds > most_seconds) {
        throw Error(
            "clock: " + in_quotes(text) +
            " is neither a time such as \"2026-01-01T00:00:00\" nor \"+SECONDS\", at most " +
            std::to_string(most_seconds));
    }
    if (!advance_clock(seconds)) {
        throw Error("clock: more than a hundred years ahead of the machine's");
    }
}

} // namespace

std::shared_ptr<Gateway> current_gateway()
{
    const std::lock_guard lock(control().mutex);
    if (control().gateway == nullptr && !control().environment_failed) {
        try {
            control().gateway = std::make_shared<Gateway>(settings_from({}));
        } catch (const std::exception &failure) {
            control().environment_failed = true;
            write_all(STDERR_FILENO, std::string("simulated gateway: ") + failure.what() + "\n");
        }
    }
    return control().gateway;
}

} // namespace simulated_gateway

using namespace simulated_gateway;

int32_t simulated_gateway_open(const SimulatedGatewayOptions *options, char *error,
                               size_t error_size)
try {
    const std::lock_guard lock(control().mutex);
    if (control().gateway != nullptr) {
        throw Error("the gateway is open already");
    }
    const SimulatedGatewayOptions none = {};
    control().gateway = std::make_shared<Gateway>(settings_from(options ? *options : none));
    control().environment_failed = false;
    return 0;
} catch (const std::exception &failure) {
    if (error != nullptr && error_size > 0) {
        std::snprintf(error, error_size, "%s", failure.what());
    }
    return -1;
}

int32_t simulated_gateway_prepare(const char *scenario, char *error, size_t error_size)
try {
    prepare_scenario(scenario != nullptr ? scenario : "");
    return 0;
} catch (const std::exception &failure) {
    if (error != nullptr && error_size > 0) {
        std::snprintf(error, error_size, "%s", failure.what());
    }
    return -1;
}

void simulated_gateway_close()
{
    // Without the lock of the control: work that ends here may have to report to the host, which
    // may call the gateway from there.
    const std::shared_ptr<Gateway> closing = open_gateway();
    if (closing != nullptr) {
        closing->end_calls();
    }
    const std::lock_guard lock(control().mutex);
    if (closing != nullptr && control().gateway == closing) {
        closing->close();
        control().gateway = nullptr;
    }
    control().environment_failed = false;
}

void simulated_gateway_end_transfers()
{
    const std::lock_guard lock(control().mutex);
    if (control().gateway != nullptr) {
        control().gateway->end_transfers();
    }
}

void simulated_gateway_power_cycle()
{
    // Without the lock of the control, as when closing: the reboot is reported to the host.
    const std::shared_ptr<Gateway> gateway = open_gateway();
    if (gateway != nullptr) {
        gateway->power_cycle();
    }
}

int32_t simulated_gateway_set_faults(const char *const *faults, char *error, size_t error_size)
{
    return change_open(error, error_size, [&](Gateway &gateway) {
        std::vector<std::string> texts;
        for (const char *const *fault = faults; fault != nullptr && *fault != nullptr; ++fault) {
            texts.emplace_back(*fault);
        }
        gateway.set_faults(texts);
    });
}

int32_t simulated_gateway_load(const char *scenario, char *error, size_t error_size)
{
    return change_open(error, error_size, [&](Gateway &gateway) {
        gateway.load(scenario != nullptr ? scenario : "");
    });
}

int32_t simulated_gateway_set_clock(const char *clock, char *error, size_t error_size)
{
    return change_open(error, error_size, [&](Gateway &) { set_clock(clock); });
}

void simulated_gateway_show(SimulatedGatewayShown report, void *context)
try {
    const std::shared_ptr<Gateway> gateway = open_gateway();
    if (gateway == nullptr || report == nullptr) {
        return;
    }
    report("scenario", gateway->scenario().c_str(), context);
    for (const std::string &name : built_in_scenarios()) {
        report("scenarios", name.c_str(), context);
    }
    for (const std::string &fault : gateway->faults()) {
        report("fault", fault.c_str(), context);
    }
    for (const std::string_view function : FaultPlan::functions()) {
        report("function", std::string(function).c_str(), context);
    }
    const std::string time = time_text(now());
    if (!clock_runs()) {
        report("clock", time.c_str(), context);
    } else if (clock_lead() > 0) {
        report("clock", ("+" + std::to_string(clock_lead())).c_str(), context);
    }
    report("time", time.c_str(), context);
} catch (const std::exception &failure) {
    write_all(STDERR_FILENO, std::string("simulated gateway: ") + failure.what() + "\n");
}

int32_t simulated_gateway_bridge_mac(char *mac, size_t size)
try {
    if (mac == nullptr || size == 0) {
        return -1;
    }
    *mac = '\0';
    const std::shared_ptr<Gateway> gateway = current_gateway();
    const std::string own = gateway ? gateway->bridge_mac() : "";
    if (own.empty() || size <= own.size()) {
        return -1;
    }
    put_text({mac, size}, own);
    return 0;
} catch (const std::exception &) {
    return -1;
}
