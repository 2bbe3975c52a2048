// SPDX-License-Identifier: MIT
// The self-inspection of the gateway: what it finds, and how it optimizes.
#include "core/device_call.h"
#include "io/clock.h"
#include "model/radio_channels.h"
#include "simulation/host_activity.h"

#include <algorithm>

using namespace simulated_gateway;

// ---- Internet connection -----------------------------------------------------------------------

static std::string net_quality(const State &state)
{
    if (!state.home.wan.connected) {
        return "NONE";
    }
    const int64_t delay = delay_ms(state);
    return delay <= 20 ? "GOOD" : delay <= 60 ? "FAIR" : "POOR";
}

static void fill(NetInspectInfo &info, const State &state)
{
    const Wan &wan = state.home.wan;
    put(info.WanStatus, std::string(connection_state(wan)));
    put(info.NetStatus, wan.connected);
    put(info.WanIP, wan.connected ? wan.ip : "");
    put(info.NetMask, wan.connected ? wan.subnet_mask : "");
    put(info.DnsStatus, wan.connected);
    put(info.NetQuality, net_quality(state));
}

int32_t devapi_inspect_net_quality(NetInspectInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        fill(*info, state);
        return 0;
    });
}

int32_t devapi_optimize_net_quality(NetInspectInfo *info)
{
    return setting(__func__, {reply("info", info)}, [&](State &state) {
        state.home.services.qos_acceleration = true;
        fill(*info, state);
        return 0;
    });
}

int32_t devapi_inspect_net_connect(NetInspectInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        fill(*info, state);
        return 0;
    });
}

int32_t devapi_optimize_net_connect(NetInspectInfo *info)
{
    return setting(__func__, {reply("info", info)}, [&](State &state) {
        if (!state.home.wan.connected) {
            reconnect(state);
        }
        fill(*info, state);
        return 0;
    });
}

int32_t devapi_get_uplink_status(char *status, int32_t size)
{
    return query(
        __func__, {reply_text("status", status), number("size", size)}, [&](const State &state) {
            if (size <= 0) {
                throw Error("there is no room for the status");
            }
            put_text({status, static_cast<size_t>(size)}, state.home.wan.connected ? "1" : "0");
            return 0;
        });
}

int32_t devapi_get_net_fault_info(char *reason)
{
    constexpr size_t size = 16;
    return query(__func__, {reply_text("reason", reason)}, [&](const State &state) {
        put_text({reason, size}, state.home.wan.fault);
        return 0;
    });
}

// ---- Wi-Fi -------------------------------------------------------------------------------------

// A home is only as secure as its weakest network.
static std::string wifi_security(const Home &home)
{
    const auto is_there = [&](std::string_view encryption) {
        return std::ranges::any_of(home.ssids, [&](const Ssid &ssid) {
            return ssid.enabled && ssid.encryption == encryption;
        });
    };
    if (is_there("OPEN")) {
        return "LOW";
    }
    if (is_there("WPA2")) {
        return "MEDIUM";
    }
    return is_there("WPA2/3") || is_there("WPA3") ? "HIGH" : "";
}

static void fill(WifiInspectInfo &info, const Home &home, const Radio &radio)
{
    put(info.WiFiDevNum, online_wifi_clients(home));
    put(info.Security, wifi_security(home));
    put(info.Channel, radio.channel);
    put(info.Congestion, congestion(home, radio, radio.channel));
    put(info.PowerLevel, radio.power_percent);
    put(info.FireWallEnable, home.services.firewall);
}

// The inspection covers the first radio.
static const Radio &inspected_radio(const Home &home)
{
    if (home.radios.empty()) {
        throw Error("there is no radio");
    }
    return home.radios.front();
}

int32_t devapi_inspect_hg_wifi(WifiInspectInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        fill(*info, state.home, inspected_radio(state.home));
        return 0;
    });
}

// Moves the radio of the channel's band to the band's best channel.
static Radio &move_radio(Home &home, int64_t channel)
{
    const auto radio = std::ranges::find(home.radios, band_of(channel), &Radio::band);
    if (radio == home.radios.end()) {
        throw Error("Channel " + std::to_string(channel) + " does not belong to any radio");
    }
    if (!radio->enabled) {
        throw Error("the radio of " + radio->band + " is off");
    }
    radio->channel = best_channel(home, *radio);
    return *radio;
}

int32_t devapi_optimize_hg_wifi(WifiInspectInfo *info)
{
    return setting(__func__, {exchange("info", info)}, [&](State &state) {
        const Radio &radio = move_radio(state.home, taken_number("Channel", info->Channel));
        fill(*info, state.home, radio);
        return 0;
    });
}

int32_t devapi_optimize_wifi_channel_power(WifiInspectInfo *info)
{
    return setting(__func__, {exchange("info", info)}, [&](State &state) {
        Radio &radio = move_radio(state.home, taken_number("Channel", info->Channel));
        radio.power_percent = taken_number("PowerLevel", info->PowerLevel);
        fill(*info, state.home, radio);
        return 0;
    });
}

int32_t devapi_inspect_hg(WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net)
{
    return query(__func__, {reply("wifi", wifi), reply("firmware", firmware), reply("net", net)},
                 [&](const State &state) {
                     fill(*wifi, state.home, inspected_radio(state.home));
                     put(firmware->FWVersion, state.home.identity.software_version);
                     fill(*net, state);
                     return 0;
                 });
}

// ---- Resources ---------------------------------------------------------------------------------

static void fill(ResourceInfo &info, const State &state)
{
    put(info.CpuPercent, cpu_percent(state));
    put(info.MemPercent, memory_percent(state));
    put(info.LanDevNum, online_hosts(state.home));
    put(info.ProtectedDevNum, protected_hosts(state.home));
}

int32_t devapi_inspect_hg_resource(ResourceInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        fill(*info, state);
        return 0;
    });
}

int32_t devapi_optimize_hg_resource(ResourceInfo *info)
{
    return setting(__func__, {reply("info", info)}, [&](State &state) {
        state.optimization_time = now();
        fill(*info, state);
        return 0;
    });
}
