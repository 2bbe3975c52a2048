// SPDX-License-Identifier: MIT
// Parental control (green-net): its switches, the table of protected hosts, and the periods of
// each. An index that selects an entry is the entry's number.
#include "core/device_call.h"
#include "system/text.h"

#include "smart_router_service/device_access.h"

#include <set>

using namespace linux_gateway;

static void put_switch(char *text, bool on)
{
    put_text({text, GREENNET_SWITCH_SIZE}, on ? "1" : "0");
}

template <class AnyState> static auto &entry_of(AnyState &state, int64_t number)
{
    const auto found = state.green_hosts.find(static_cast<int32_t>(number));
    if (found == state.green_hosts.end()) {
        throw Error("there is no entry " + std::to_string(number));
    }
    return found->second;
}

static int64_t number_of_entry(const GreenHostInfo &info)
{
    return number_of("HostIndex", taken(info.HostIndex));
}

// ---- Switches ----------------------------------------------------------------------------------

int32_t devapi_get_greennet_enable(char *enable)
{
    return query(__func__, [&](const View &view) {
        put_switch(enable, view.state->green_net);
        return 0;
    });
}

int32_t devapi_set_greennet_enable(const char *enable)
{
    return setting(
        __func__, [&](State &state, const View &) { state.green_net = flag_of("enable", enable); });
}

int32_t devapi_set_greenaccess_enable(int32_t enable)
{
    return setting(__func__, [&](State &state, const View &) {
        state.access_restricted = flag_of("enable", std::to_string(enable));
    });
}

// ---- The table ---------------------------------------------------------------------------------

int32_t devapi_get_greennet_num(int32_t *count)
{
    return query(__func__, [&](const View &view) {
        *count = static_cast<int32_t>(view.state->green_hosts.size());
        return 0;
    });
}

int32_t devapi_get_green_net_info(GreenHostInfo *info)
{
    return query(__func__, [&](const View &view) {
        const GreenHost &entry = entry_of(*view.state, number_of_entry(*info));
        put(info->Mac, to_text(entry.mac));
        put(info->Name, entry.name);
        put(info->NotifyEnable, entry.notify);
        put(info->ProtectEnable, entry.is_protected);
        put(info->NewEntry, false);
        return 0;
    });
}

int32_t devapi_set_green_net_info(const GreenHostInfo *info)
{
    return setting(__func__, [&](State &state, const View &) {
        GreenHost &entry = entry_of(state, number_of_entry(*info));
        const Mac mac = required_mac("Mac", taken(info->Mac));
        if (mac != entry.mac && green_number_of(state, mac) != 0) {
            throw Error("there is an entry for " + to_text(mac) + " already");
        }
        entry.mac = mac;
        entry.name = taken(info->Name);
        entry.notify = flag_of("NotifyEnable", taken(info->NotifyEnable));
    });
}

int32_t devapi_set_green_net_notify(const GreenHostInfo *info)
{
    return setting(__func__, [&](State &state, const View &) {
        entry_of(state, number_of_entry(*info)).notify =
            flag_of("NotifyEnable", taken(info->NotifyEnable));
    });
}

int32_t devapi_get_greennet_index_by_mac(const char *mac, int32_t *index)
{
    return query(__func__, [&](const View &view) {
        const int32_t number = green_number_of(*view.state, required_mac("mac", mac));
        *index = number;
        return number != 0 ? 1 : 0;
    });
}

static int32_t first_free_number(const State &state)
{
    for (int32_t number = 1; number <= GREENNET_MAX_HOSTS; ++number) {
        if (!state.green_hosts.contains(number)) {
            return number;
        }
    }
    throw Error("the table is full");
}

int32_t devapi_add_greennet_mac(const char *mac, int32_t *index)
{
    int32_t added = 0;
    const int32_t result = setting(__func__, [&](State &state, const View &) {
        GreenHost entry;
        entry.mac = required_mac("mac", mac);
        if (green_number_of(state, entry.mac) != 0) {
            throw Error("there is an entry for " + to_text(entry.mac) + " already");
        }
        added = first_free_number(state);
        state.green_hosts[added] = entry;
    });
    if (result == 0) {
        *index = added;
    }
    return result;
}

// The MAC addresses of a list in which each one is followed by a comma.
static std::set<Mac> listed_macs(std::string_view list)
{
    if (list.ends_with(',')) {
        list.remove_suffix(1);
    }
    std::set<Mac> macs;
    if (!list.empty()) {
        for (const std::string_view mac : split(list, ',')) {
            macs.insert(required_mac("list", std::string(mac)));
        }
    }
    return macs;
}

int32_t devapi_del_green_net_info_by_maclist(const char *list)
{
    return setting(__func__, [&](State &state, const View &) {
        const std::set<Mac> kept = listed_macs(list != nullptr ? list : "");
        std::erase_if(state.green_hosts,
                      [&](const auto &entry) { return !kept.contains(entry.second.mac); });
    });
}

int32_t devapi_set_protect_enable(int32_t enable, int32_t index)
{
    return setting(__func__, [&](State &state, const View &) {
        entry_of(state, index).is_protected = flag_of("enable", std::to_string(enable));
    });
}

// ---- Periods -----------------------------------------------------------------------------------

template <class AnyState> static auto &period_of(AnyState &state, const ProtectPeriodInfo &info)
{
    auto &periods = entry_of(state, info.HostIndex).periods;
    if (info.PeriodNum < 1 || static_cast<size_t>(info.PeriodNum) > periods.size()) {
        throw Error("entry " + std::to_string(info.HostIndex) + " has no period " +
                    std::to_string(info.PeriodNum));
    }
    return periods[static_cast<size_t>(info.PeriodNum - 1)];
}

int32_t devapi_get_duration_num_by_index(int32_t index, int32_t *count)
{
    return query(__func__, [&](const View &view) {
        *count = static_cast<int32_t>(entry_of(*view.state, index).periods.size());
        return 0;
    });
}

int32_t devapi_get_protect_period_info(ProtectPeriodInfo *info)
{
    return query(__func__, [&](const View &view) {
        const ProtectPeriod &period = period_of(*view.state, *info);
        put(info->StartTime, period.start);
        put(info->EndTime, period.end);
        put(info->Enable, period.enabled);
        put(info->DaysOfWeek, period.days);
        return 0;
    });
}

int32_t devapi_del_all_duration(int32_t index)
{
    return setting(__func__,
                   [&](State &state, const View &) { entry_of(state, index).periods.clear(); });
}

int32_t devapi_add_greennet_duration(int32_t index, int32_t *number)
{
    int32_t added = 0;
    const int32_t result = setting(__func__, [&](State &state, const View &) {
        std::vector<ProtectPeriod> &periods = entry_of(state, index).periods;
        if (periods.size() >= kMostProtectPeriods) {
            throw Error("there is no room for another period");
        }
        periods.emplace_back();
        added = static_cast<int32_t>(periods.size());
    });
    if (result == 0) {
        *number = added;
    }
    return result;
}

static std::string time_of_day(const char *name, const std::string &text)
{
    if (!minute_of(text)) {
        throw Error(std::string(name) + ": " + in_quotes(text) + " is not a time like \"21:30\"");
    }
    return text;
}

static std::string days_of_week(const std::string &text)
{
    std::set<char> days;
    for (const char day : text) {
        if (day < '1' || day > '7' || !days.insert(day).second) {
            days.clear();
            break;
        }
    }
    if (days.empty()) {
        throw Error("DaysOfWeek: " + in_quotes(text) + " is not a list of days like \"137\"");
    }
    return text;
}

int32_t devapi_set_protect_period_info(const ProtectPeriodInfo *info)
{
    return setting(__func__, [&](State &state, const View &) {
        ProtectPeriod &period = period_of(state, *info);
        period.start = time_of_day("StartTime", taken(info->StartTime));
        period.end = time_of_day("EndTime", taken(info->EndTime));
        period.enabled = flag_of("Enable", taken(info->Enable));
        period.days = days_of_week(taken(info->DaysOfWeek));
    });
}
