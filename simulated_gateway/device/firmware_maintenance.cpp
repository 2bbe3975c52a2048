// SPDX-License-Identifier: MIT
// Firmware maintenance: when the router may update itself, and the upload of the log after a
// failure.
#include "core/device_call.h"
#include "core/gateway.h"
#include "firmware/send_text.h"
#include "io/clock.h"
#include "simulation/host_activity.h"
#include "simulation/mesh.h"

#include <algorithm>
#include <cctype>
#include <ctime>

using namespace simulated_gateway;

// ---- Update schedule ---------------------------------------------------------------------------

// Hour and minute of a time of day, as numbers without leading zeros; empty without a time.
template <size_t width>
static void put_time(char (&hour)[width], char (&minute)[width], const std::string &time)
{
    if (time.empty()) {
        put(hour, "");
        put(minute, "");
    } else {
        put(hour, std::stoi(time.substr(0, 2)));
        put(minute, std::stoi(time.substr(3)));
    }
}

// A number of at most two digits, padded to two.
template <size_t width>
static std::string two_digits(const char *name, const char (&field)[width], int64_t most)
{
    const int64_t number = taken_number(name, field);
    refuse_for(name, validation_error(number, Range{0, most}));
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// The time of day; empty if neither hour nor minute is given.
template <size_t width>
static std::string taken_time(const char *hour_name, const char (&hour)[width],
                              const char *minute_name, const char (&minute)[width])
{
    if (taken_if_any(hour).empty() && taken_if_any(minute).empty()) {
        return "";
    }
    return two_digits(hour_name, hour, 23) + ":" + two_digits(minute_name, minute, 59);
}

int32_t devapi_get_update_schedule(UpdateSchedule *schedule)
{
    return query(__func__, {reply("schedule", schedule)}, [&](const State &state) {
        const UpdateWindow &window = state.home.update_schedule;
        put(schedule->Enable, window.enabled);
        put_time(schedule->StartHour, schedule->StartMinute, window.start);
        put_time(schedule->EndHour, schedule->EndMinute, window.end);
        return 0;
    });
}

int32_t devapi_set_update_schedule(const UpdateSchedule *schedule)
{
    return setting(__func__, {request("schedule", schedule)}, [&](State &state) {
        UpdateWindow &window = state.home.update_schedule;
        window.enabled = taken_flag("Enable", schedule->Enable);
        window.start =
            taken_time("StartHour", schedule->StartHour, "StartMinute", schedule->StartMinute);
        window.end = taken_time("EndHour", schedule->EndHour, "EndMinute", schedule->EndMinute);
        return 0;
    });
}

// ---- Log upload --------------------------------------------------------------------------------

// The gateway's time, such as 20260101T000000Z.
static std::string time_text()
{
    const time_t time = now();
    tm parts = {};
    gmtime_r(&time, &parts);
    char text[sizeof("20260101T000000Z") + 8] = "";
    std::strftime(text, sizeof(text), "%Y%m%dT%H%M%SZ", &parts);
    return text;
}

static std::string log_text(const State &state, const std::string &log_type,
                            const std::string &recent)
{
    const Home &home = state.home;
    const Identity &identity = home.identity;
    std::string text;
    const auto add = [&](const char *name, const std::string &value) {
        text += std::string(name) + ": " + value + "\n";
    };
    add("log", log_type);
    add("time", time_text());
    add("router", identity.device_type + " " + identity.mac);
    add("hardware", identity.hardware_version);
    add("firmware", identity.software_version + " of " + identity.firmware_date);
    add("uptime", std::to_string(seconds_since(state.boot_time)) + " s");
    add("boots", std::to_string(state.boot_count));
    add("wan", connection_state(home.wan) + (home.wan.fault.empty() ? "" : ", " + home.wan.fault));
    add("load", "cpu " + std::to_string(cpu_percent(state)) + " %, memory " +
                    std::to_string(memory_percent(state)) + " %");
    add("hosts online", std::to_string(online_hosts(home)));
    add("child routers active", std::to_string(active_routers(home).size()));
    return text + "\n" + recent;
}

// A part of a file name, safe for any content of the text.
static std::string file_name_part(std::string text)
{
    std::ranges::replace_if(
        text, [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) == 0; },
        '_');
    return text;
}

int32_t devapi_get_hg_log(const char *url, const char *log_type, const char *mac)
{
    return long_work(
        __func__,
        {request_address("url", url), request_text("log_type", log_type), request_text("mac", mac)},
        [&](Gateway &gateway) {
            constexpr size_t most_bytes_of_type = 64;
            refuse_for("log_type",
                       validation_error(std::string(log_type), Text{most_bytes_of_type}));
            if (!parse_mac(mac)) {
                throw Error("mac " + in_quotes(mac) + " is not a MAC address");
            }
            std::string address = url;
            if (address.ends_with('/')) {
                address += file_name_part(mac) + "_" + file_name_part(log_type) + "_" +
                           time_text() + ".log";
            }
            send_text(WebAddress(address), log_text(gateway.state(), log_type, gateway.recent()),
                      gateway.web_limits(), [&] { return !gateway.firmware().is_stopped(); });
            return 0;
        });
}
