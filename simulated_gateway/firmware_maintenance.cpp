// Around firmware: when the router may update itself.
#include "device_call.h"

using namespace simulated_gateway;

// ---- Update schedule ---------------------------------------------------------------------------

static void describe(RecordText &text, const UpdateSchedule &schedule)
{
    text.field("Enable", schedule.Enable);
    text.field("StartHour", schedule.StartHour);
    text.field("StartMinute", schedule.StartMinute);
    text.field("EndHour", schedule.EndHour);
    text.field("EndMinute", schedule.EndMinute);
}

// Hour and minute of a time of the day, as numbers without leading zeros; nothing without one.
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

// A number of at most two digits, with both of them.
template <size_t width>
static std::string two_digits(const char *name, const char (&field)[width], int64_t most)
{
    const int64_t number = taken_number(name, field);
    refuse_for(name, complaint(number, Range{0, most}));
    return (number < 10 ? "0" : "") + std::to_string(number);
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
        window.start = two_digits("StartHour", schedule->StartHour, 23) + ":" +
                       two_digits("StartMinute", schedule->StartMinute, 59);
        window.end = two_digits("EndHour", schedule->EndHour, 23) + ":" +
                     two_digits("EndMinute", schedule->EndMinute, 59);
        return 0;
    });
}
