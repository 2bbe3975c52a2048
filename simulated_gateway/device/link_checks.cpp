// SPDX-License-Identifier: MIT
// Checks of channels and links: access points, the state of the radios and of the WAN, whether an
// address answers, and the signal of a station.
#include "core/device_call.h"
#include "model/radio_channels.h"
#include "simulation/host_activity.h"
#include "simulation/neighbourhood.h"

#include <numeric>

using namespace simulated_gateway;

// ---- Channels ----------------------------------------------------------------------------------

static void describe(RecordText &text, const ChannelApNum &counts)
{
    const auto sum = [](std::span<const int32_t> all) {
        return std::accumulate(all.begin(), all.end(), int32_t(0));
    };
    text.field("heard_24g", sum(counts.counts_24g));
    text.field("heard_5g", sum(counts.counts_5g));
}

static void count_networks(std::span<int32_t, 64> counts, std::span<const int16_t, 64> channels,
                           const char *name, int32_t count, const std::vector<HeardNetwork> &heard)
{
    refuse_for(name, validation_error(count, Range{0, static_cast<int64_t>(channels.size())}));
    std::ranges::transform(
        channels.first(static_cast<size_t>(count)), counts.begin(), [&](int16_t channel) {
            return static_cast<int32_t>(
                std::ranges::count(heard, int64_t(channel), &HeardNetwork::channel));
        });
}

int32_t devapi_get_channel_ap_num(const WifiChannelList *channels, ChannelApNum *counts)
{
    return query(__func__, {request("channels", channels), reply("counts", counts)},
                 [&](const State &state) {
                     const std::vector<HeardNetwork> heard = heard_networks(state);
                     count_networks(counts->counts_24g, channels->channels_24g, "count_24g",
                                    channels->count_24g, heard);
                     count_networks(counts->counts_5g, channels->channels_5g, "count_5g",
                                    channels->count_5g, heard);
                     return 0;
                 });
}

// ---- Links -------------------------------------------------------------------------------------

// The result of the check for the radio of a band.
struct RadioCheck {
    bool enabled = false;
    int64_t channel = 0;
    std::string channel_check = "NONE";
};

static RadioCheck check_of(const Home &home, const std::string &band)
{
    const Radio *radio = radio_of(home, band);
    if (radio == nullptr || !radio->enabled) {
        return {};
    }
    const int64_t percent = congestion(home, *radio, radio->channel);
    return {true, radio->channel, percent <= 30 ? "GOOD" : percent <= 60 ? "FAIR" : "POOR"};
}

int32_t devapi_get_link_info(LinkInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const RadioCheck lower = check_of(home, "2.4GHz");
        const RadioCheck upper = check_of(home, "5GHz");
        put(info->Wifi24Enable, lower.enabled);
        put(info->Wifi24Channel, lower.channel);
        put(info->Wifi24ChannelCheck, lower.channel_check);
        put(info->Wifi58Enable, upper.enabled);
        put(info->Wifi58Channel, upper.channel);
        put(info->Wifi58ChannelCheck, upper.channel_check);
        put(info->LanIP, home.lan.ip);
        put(info->WanIp, home.wan.connected ? home.wan.ip : "");
        put(info->DnsCheck, home.wan.connected);
        return 0;
    });
}

// Whether the address is valid for an Internet host.
static bool is_public(uint32_t ip)
{
    struct Block {
        uint32_t first;
        int bits;
    };
    // This network, private, carrier-grade NAT, loopback, link-local, multicast and reserved.
    constexpr Block blocks[] = {{0x00000000, 8},  {0x0a000000, 8},  {0x64400000, 10},
                                {0x7f000000, 8},  {0xa9fe0000, 16}, {0xac100000, 12},
                                {0xc0a80000, 16}, {0xe0000000, 3}};
    return std::ranges::none_of(
        blocks, [&](const Block &block) { return (ip ^ block.first) >> (32 - block.bits) == 0; });
}

int32_t devapi_get_ping_check(const char *target)
{
    return query(__func__, {request_text("target", target)}, [&](const State &state) {
        const std::optional<uint32_t> ip = parse_ipv4(target);
        if (!ip || !is_public(*ip)) {
            throw Error("target is not an Internet address");
        }
        if (!state.home.wan.connected) {
            throw Error("the WAN is not connected");
        }
        return 0;
    });
}

// ---- Signals -----------------------------------------------------------------------------------

int32_t devapi_get_sta_rssi_by_ip(const char *ip, int32_t *dbm)
{
    return query(
        __func__, {request_text("ip", ip), reply_number("dbm", dbm)}, [&](const State &state) {
            const std::vector<Host> &hosts = state.home.hosts;
            const auto host = std::ranges::find(hosts, ip, &Host::ip);
            if (host == hosts.end() || host->ip.empty()) {
                throw Error("there is no station " + in_quotes(ip));
            }
            const int64_t signal = signal_dbm(state, *host);
            if (signal == 0) {
                throw Error(host->name + (is_online(state.home, *host) ? " is attached by cable"
                                                                       : " is offline"));
            }
            *dbm = static_cast<int32_t>(signal);
            return 0;
        });
}
