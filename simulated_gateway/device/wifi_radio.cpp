// SPDX-License-Identifier: MIT
// When the Wi-Fi sleeps, what its radios receive, and which channels they may use.
#include "core/device_call.h"
#include "model/radio_channels.h"
#include "simulation/neighbourhood.h"

#include <algorithm>

using namespace simulated_gateway;

// ---- Sleep schedule ----------------------------------------------------------------------------

// The period whose timers, 2k-1 and 2k, are in the record.
template <class AnyHome> static auto &period_of(AnyHome &home, const WifiSleepInfo &info)
{
    const int64_t period = info.StartTimer / 2 + 1;
    const bool is_pair =
        info.StartTimer >= 1 && info.StartTimer == 2 * period - 1 && info.EndTimer == 2 * period;
    if (!is_pair || period > static_cast<int64_t>(home.wifi_sleep.size())) {
        throw Error("there is no period with the timers " + std::to_string(info.StartTimer) +
                    " and " + std::to_string(info.EndTimer));
    }
    return home.wifi_sleep[static_cast<size_t>(period - 1)];
}

static WifiSleepPeriod taken_period(const WifiSleepInfo &info)
{
    return {taken_flag("Enable", info.Enable), taken("StartTime", info.StartTime, TimeOfDay{}),
            taken("EndTime", info.EndTime, TimeOfDay{}),
            taken("DaysOfWeek", info.DaysOfWeek, DaysOfWeek{})};
}

int32_t devapi_get_wifi_sleep_info(WifiSleepInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        const WifiSleepPeriod &period = period_of(state.home, *info);
        put(info->Enable, period.enabled);
        put(info->StartTime, period.start);
        put(info->EndTime, period.end);
        put(info->DaysOfWeek, period.days);
        return 0;
    });
}

int32_t devapi_del_all_wifi_timerinfo()
{
    return setting(__func__, {}, [](State &state) {
        state.home.wifi_sleep.clear();
        return 0;
    });
}

int32_t devapi_add_wifi_timer(WifiSleepInfo *info)
{
    return setting(__func__, {exchange("info", info)}, [&](State &state) {
        std::vector<WifiSleepPeriod> &periods = state.home.wifi_sleep;
        if (periods.size() == kMostWifiSleepPeriods) {
            throw Error("all timers are in use");
        }
        periods.push_back(taken_period(*info));
        info->EndTimer = static_cast<int32_t>(2 * periods.size());
        info->StartTimer = info->EndTimer - 1;
        return 0;
    });
}

int32_t devapi_set_wifi_sleep_info(WifiSleepInfo *info)
{
    return setting(__func__, {exchange("info", info)}, [&](State &state) {
        period_of(state.home, *info) = taken_period(*info);
        return 0;
    });
}

// ---- Scans -------------------------------------------------------------------------------------

static void describe(RecordText &text, const ScanResult &result)
{
    const auto empty = std::ranges::count(result.entries, nullptr);
    text.field("networks",
               static_cast<int32_t>(std::size(result.entries)) - static_cast<int32_t>(empty));
}

int32_t devapi_get_scan_ssid(ScanResult *result)
{
    return query(__func__, {reply("result", result)}, [&](const State &state) {
        const int64_t joined = state.home.repeater.neighbour;
        ScanEntry **slot = std::begin(result->entries);
        for (const HeardNetwork &network : heard_networks(state)) {
            if (slot == std::end(result->entries)) {
                break;
            }
            ScanEntry &entry = *(*slot++ = allocated<ScanEntry>(1));
            const Ciphers ciphers = ciphers_of(network.encryption);
            put(entry.SSID, network.name);
            put(entry.PowerLevel, network.signal_dbm);
            put(entry.ENCRYPT, network.encryption);
            put(entry.WPACypher, ciphers.wpa);
            put(entry.WPA2Cypher, ciphers.wpa2);
            put(entry.Band, network.band);
            put(entry.Connected, joined != 0 && network.neighbour == joined);
        }
        return 0;
    });
}

static void describe(RecordText &text, const ChannelPowerResult &result)
{
    text.field("networks", result.count);
}

int32_t devapi_scan_channel_power(ChannelPowerResult *result)
{
    return query(__func__, {reply("result", result)}, [&](const State &state) {
        const std::vector<HeardNetwork> heard = heard_networks(state);
        if (heard.empty()) {
            return 0;
        }
        result->entries = allocated<ChannelPower>(heard.size());
        for (const HeardNetwork &network : heard) {
            ChannelPower &entry = result->entries[result->count++];
            put(entry.name, network.name);
            put(entry.dbpower, network.signal_dbm);
        }
        return 0;
    });
}

// ---- Channels ----------------------------------------------------------------------------------

// Without a radio for the band, none of its channels is allowed.
static int32_t put_channels(std::span<int16_t> numbers, const Home &home, const std::string &band)
{
    if (radio_of(home, band) == nullptr) {
        return 0;
    }
    const std::vector<int64_t> &channels = channels_of(band);
    std::ranges::transform(channels, numbers.begin(),
                           [](int64_t channel) { return static_cast<int16_t>(channel); });
    return static_cast<int32_t>(channels.size());
}

int32_t devapi_get_all_wifi_channel_list(WifiChannelList *list)
{
    return query(__func__, {reply("list", list)}, [&](const State &state) {
        list->count_24g = put_channels(list->channels_24g, state.home, "2.4GHz");
        list->count_5g = put_channels(list->channels_5g, state.home, "5GHz");
        return 0;
    });
}
