// SPDX-License-Identifier: MIT
// Parental control (green-net): its switches, the table of protected devices, and the periods of
// each. An index that selects an entry is the entry's number.
#include "core/device_call.h"
#include "model/parental_control.h"

#include <set>

using namespace simulated_gateway;

static void put_switch(char *text, bool on)
{
    put_text({text, GREENNET_SWITCH_SIZE}, on ? "1" : "0");
}

static std::string mac_of(const char *name, const std::string &text)
{
    const std::optional<std::string> mac = parse_mac(text);
    if (!mac) {
        throw Error(std::string(name) + " " + in_quotes(text) + " is not a MAC address");
    }
    return *mac;
}

template <class AnyHome> static auto &entry_of(AnyHome &home, int64_t number)
{
    auto &entries = home.green_net.hosts;
    const auto found = std::ranges::find(entries, number, &GreenHost::number);
    if (found == entries.end()) {
        throw Error("there is no entry " + std::to_string(number));
    }
    return *found;
}

// ---- Switches ----------------------------------------------------------------------------------

int32_t devapi_get_greennet_enable(char *enable)
{
    return query(__func__, {reply_text("enable", enable)}, [&](const State &state) {
        put_switch(enable, state.home.green_net.enabled);
        return 0;
    });
}

int32_t devapi_set_greennet_enable(const char *enable)
{
    return setting(__func__, {request_text("enable", enable)}, [&](State &state) {
        state.home.green_net.enabled = flag_of("enable", enable);
        return 0;
    });
}

int32_t devapi_set_greenaccess_enable(int32_t enable)
{
    return setting(__func__, {number("enable", enable)}, [&](State &state) {
        state.home.green_net.access_restricted = flag_of("enable", std::to_string(enable));
        return 0;
    });
}

// ---- The table ---------------------------------------------------------------------------------

int32_t devapi_get_greennet_num(int32_t *count)
{
    return query(__func__, {reply_number("count", count)}, [&](const State &state) {
        *count = static_cast<int32_t>(state.home.green_net.hosts.size());
        return 0;
    });
}

int32_t devapi_get_green_net_info(GreenHostInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const GreenHost &entry = entry_of(state.home, taken_number("HostIndex", info->HostIndex));
        put(info->Mac, entry.mac);
        put(info->Name, entry.name);
        put(info->NotifyEnable, entry.notify);
        put(info->ProtectEnable, entry.is_protected);
        put(info->NewEntry, false);
        return 0;
    });
}

int32_t devapi_set_green_net_info(const GreenHostInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        GreenHost &entry = entry_of(state.home, taken_number("HostIndex", info->HostIndex));
        entry.mac = mac_of("Mac", taken(info->Mac));
        entry.name = taken_or_none("Name", info->Name);
        entry.notify = taken_flag("NotifyEnable", info->NotifyEnable);
        return 0;
    });
}

int32_t devapi_set_green_net_notify(const GreenHostInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        entry_of(state.home, taken_number("HostIndex", info->HostIndex)).notify =
            taken_flag("NotifyEnable", info->NotifyEnable);
        return 0;
    });
}

int32_t devapi_get_greennet_index_by_mac(const char *mac, int32_t *index)
{
    return query(__func__, {request_text("mac", mac), reply_number("index", index)},
                 [&](const State &state) {
                     const GreenHost *entry = green_host_of(state.home, mac_of("mac", mac));
                     *index = entry != nullptr ? static_cast<int32_t>(entry->number) : 0;
                     return entry != nullptr ? 1 : 0;
                 });
}

static int64_t first_free_number(const std::vector<GreenHost> &entries)
{
    for (int64_t number = 1; number <= GREENNET_MAX_HOSTS; ++number) {
        if (std::ranges::find(entries, number, &GreenHost::number) == entries.end()) {
            return number;
        }
    }
    throw Error("the table is full");
}

int32_t devapi_add_greennet_mac(const char *mac, int32_t *index)
{
    return setting(__func__, {request_text("mac", mac), reply_number("index", index)},
                   [&](State &state) {
                       const std::string address = mac_of("mac", mac);
                       if (green_host_of(state.home, address) != nullptr) {
                           throw Error("there is an entry for " + address + " already");
                       }
                       std::vector<GreenHost> &entries = state.home.green_net.hosts;
                       GreenHost entry;
                       entry.number = first_free_number(entries);
                       entry.mac = address;
                       entries.push_back(entry);
                       *index = static_cast<int32_t>(entry.number);
                       return 0;
                   });
}

// The MAC addresses of a list in which each one is followed by a comma.
static std::set<std::string> listed_macs(std::string_view list)
{
    std::set<std::string> macs;
    if (list.empty()) {
        return macs;
    }
    if (list.ends_with(',')) {
        list.remove_suffix(1);
    }
    for (const std::string &mac : split_at_commas(list)) {
        macs.insert(mac_of("list", mac));
    }
    return macs;
}

int32_t devapi_del_green_net_info_by_maclist(const char *list)
{
    return setting(__func__, {request_text_or_null("list", list)}, [&](State &state) {
        const std::set<std::string> kept =
            list != nullptr ? listed_macs(list) : std::set<std::string>();
        std::erase_if(state.home.green_net.hosts,
                      [&](const GreenHost &entry) { return !kept.contains(entry.mac); });
        return 0;
    });
}

int32_t devapi_set_protect_enable(int32_t enable, int32_t index)
{
    return setting(__func__, {number("enable", enable), number("index", index)}, [&](State &state) {
        entry_of(state.home, index).is_protected = flag_of("enable", std::to_string(enable));
        return 0;
    });
}

// ---- Periods -----------------------------------------------------------------------------------

template <class AnyHome> static auto &period_of(AnyHome &home, const ProtectPeriodInfo &info)
{
    auto &periods = entry_of(home, info.HostIndex).periods;
    if (info.PeriodNum < 1 || static_cast<size_t>(info.PeriodNum) > periods.size()) {
        throw Error("entry " + std::to_string(info.HostIndex) + " has no period " +
                    std::to_string(info.PeriodNum));
    }
    return periods[static_cast<size_t>(info.PeriodNum - 1)];
}

// The field is too short for seven days separated by commas.
static std::string days_without_commas(std::string days)
{
    std::erase(days, ',');
    return days;
}
static std::string days_with_commas(const std::string &days)
{
    std::string list;
    for (const char day : days) {
        list += (list.empty() ? "" : ",") + std::string(1, day);
    }
    return list;
}

int32_t devapi_get_duration_num_by_index(int32_t index, int32_t *count)
{
    return query(__func__, {number("index", index), reply_number("count", count)},
                 [&](const State &state) {
                     *count = static_cast<int32_t>(entry_of(state.home, index).periods.size());
                     return 0;
                 });
}

int32_t devapi_get_protect_period_info(ProtectPeriodInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const ProtectPeriod &period = period_of(state.home, *info);
        put(info->StartTime, period.start);
        put(info->EndTime, period.end);
        put(info->Enable, period.enabled);
        put(info->DaysOfWeek, days_without_commas(period.days));
        return 0;
    });
}

int32_t devapi_del_all_duration(int32_t index)
{
    return setting(__func__, {number("index", index)}, [&](State &state) {
        entry_of(state.home, index).periods.clear();
        return 0;
    });
}

int32_t devapi_add_greennet_duration(int32_t index, int32_t *number_of_period)
{
    return setting(__func__, {number("index", index), reply_number("number", number_of_period)},
                   [&](State &state) {
                       std::vector<ProtectPeriod> &periods = entry_of(state.home, index).periods;
                       if (periods.size() >= kMostProtectPeriods) {
                           throw Error("there is no room for another period");
                       }
                       periods.emplace_back();
                       *number_of_period = static_cast<int32_t>(periods.size());
                       return 0;
                   });
}

int32_t devapi_set_protect_period_info(const ProtectPeriodInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        ProtectPeriod &period = period_of(state.home, *info);
        period.start = taken("StartTime", info->StartTime, TimeOfDay{});
        period.end = taken("EndTime", info->EndTime, TimeOfDay{});
        period.enabled = taken_flag("Enable", info->Enable);
        const std::string days = taken(info->DaysOfWeek);
        period.days = days_with_commas(days);
        if (!validation_error(period.days, DaysOfWeek{}).empty()) {
            throw Error("DaysOfWeek " + in_quotes(days) + " is not a list of days like \"137\"");
        }
        return 0;
    });
}
