// SPDX-License-Identifier: MIT
// The control interface: settings from the host and the environment, and the one open gateway.
#include "core/control.h"

#include "core/fields.h"
#include "io/clock.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace simulated_gateway {
namespace {

struct Control {
    std::mutex mutex;
    std::shared_ptr<Gateway> gateway;
    bool environment_failed = false; // said once, not at every call
};

// Never destroyed: a worker thread may call the device while the process ends.
Control &control()
{
    static Control &only = *new Control;
    return only;
}

// An empty variable is none, but an empty option is a mistake of the host's user.
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
    settings.firmware_key =
        given("firmware key", options.firmware_key, "SIMULATED_GATEWAY_FIRMWARE_KEY");
    return settings;
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

void simulated_gateway_close()
{
    // Without the lock of the control: work that ends here may have to report to the host, which
    // may call the gateway from there.
    const std::shared_ptr<Gateway> closing = [] {
        const std::lock_guard lock(control().mutex);
        return control().gateway;
    }();
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
    // Without the lock of the control, as when closing: the host is told of it.
    const std::shared_ptr<Gateway> gateway = [] {
        const std::lock_guard lock(control().mutex);
        return control().gateway;
    }();
    if (gateway != nullptr) {
        gateway->power_cycle();
    }
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
