// SPDX-License-Identifier: MIT
#include "model/individual.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

namespace simulated_gateway {
namespace {

constexpr size_t kNetworkName = 33; // bytes, with a NUL

// The finalizer of SplitMix64: unrelated results for neighbouring numbers.
uint64_t mixed_bits(uint64_t bits)
{
    bits += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

// Draws for one home, in the order in which they are asked for.
class Draws {
  public:
    explicit Draws(const HomeNumber &which)
        : start_(mixed_bits(mixed_bits(which.seed) + which.number))
    {
    }

    int64_t from_to(int64_t least, int64_t most)
    {
        const uint64_t bits = mixed_bits(start_ + ++count_);
        return least + static_cast<int64_t>(bits % static_cast<uint64_t>(most - least + 1));
    }
    bool percent(int64_t chance) { return from_to(1, 100) <= chance; }

  private:
    const uint64_t start_;
    uint64_t count_ = 0;
};

// A permutation of all 32-bit numbers, another one for each seed: four rounds of a Feistel network.
uint32_t permuted(const HomeNumber &which)
{
    uint32_t left = which.number >> 16;
    uint32_t right = which.number & 0xffff;
    for (uint64_t round = 0; round < 4; ++round) {
        const auto key = mixed_bits(mixed_bits(which.seed + round) ^ right);
        left = std::exchange(right, left ^ static_cast<uint32_t>(key & 0xffff));
    }
    return left << 16 | right;
}

// Replaces each MAC address by one of the home's own, everywhere alike. They are locally
// administered: the permuted number is in the middle, and 14 bits around it tell the home's devices
// apart. The addresses of the routers are 16 apart, since a radio has several.
class MacChanger {
  public:
    using NewMacs = std::map<std::string, std::string>;

    MacChanger(NewMacs &macs, uint32_t home) : macs_(macs), home_(home) {}

    void add_router(const std::string &mac) { add(mac, kRouterStep * macs_.size()); }
    void add_host(const std::string &mac) { add(mac, kFirstHost + macs_.size()); }

    void field(const char *, std::string &value, const Mac &)
    {
        if (!value.empty()) {
            add_host(value); // unless it is known, one that is mentioned but not attached
            value = macs_.at(value);
        }
    }
    template <class Value, class Rule> void field(const char *, Value &, const Rule &) {}
    template <class Struct> void object(const char *, Struct &value)
    {
        Struct::describe(value, *this);
    }
    template <class Struct> void list(const char *, std::vector<Struct> &values, size_t)
    {
        for (Struct &value : values) {
            Struct::describe(value, *this);
        }
    }

  private:
    static constexpr size_t kRouterStep = 16;
    static constexpr size_t kFirstHost = 8192;

    void add(const std::string &mac, size_t device)
    {
        if (mac.empty() || macs_.contains(mac)) {
            return;
        }
        char text[18];
        std::snprintf(text, sizeof(text), "%02X:%02X:%02X:%02X:%02X:%02X",
                      static_cast<unsigned>(0x02 | (device >> 8 & 0x3f) << 2), home_ >> 24,
                      home_ >> 16 & 0xff, home_ >> 8 & 0xff, home_ & 0xff,
                      static_cast<unsigned>(device & 0xff));
        macs_.emplace(mac, text);
    }

    NewMacs &macs_;
    const uint32_t home_;
};

void change_macs(Home &home, const HomeNumber &which)
{
    MacChanger::NewMacs macs;
    MacChanger changer(macs, permuted(which));
    changer.add_router(home.identity.mac);
    for (const Radio &radio : home.radios) {
        changer.add_router(radio.mac);
    }
    for (const ChildRouter &router : home.mesh.child_routers) {
        for (const std::string *mac : {&router.mac, &router.mac_24ghz, &router.mac_5ghz}) {
            changer.add_router(*mac);
        }
    }
    Home::describe(home, changer);
}

// The name with an ending; what is too much for the field is cut from the name, at a character.
std::string with_ending(std::string name, const std::string &ending, size_t width)
{
    constexpr unsigned char kContinues = 0x80;
    if (name.size() + ending.size() >= width) {
        size_t keep = width - 1 - ending.size();
        while (keep > 0 && (static_cast<unsigned char>(name[keep]) & 0xc0) == kContinues) {
            --keep;
        }
        name.resize(keep);
    }
    return name + ending;
}

void change_names(Home &home, uint32_t number)
{
    const std::string text = std::to_string(number);
    home.name = with_ending(home.name, " " + text, sizeof(HgBaseInfo::Name));
    for (Ssid &ssid : home.ssids) {
        ssid.name = with_ending(ssid.name, "-" + text, kNetworkName);
    }
    if (!home.identity.card_number.empty()) {
        home.identity.card_number = "8949020000" + std::string(10 - text.size(), '0') + text;
    }
}

// One address of a block for each home.
void change_addresses(Wan &wan, uint32_t block, uint32_t number)
{
    constexpr uint32_t kMask = 0xffc00000;
    constexpr uint32_t kRouters = 1024; // the first addresses, which no home has
    if (!wan.ip.empty()) {
        wan.ip = ipv4_text(block + kRouters + number % (~kMask - kRouters));
        wan.subnet_mask = ipv4_text(kMask);
        wan.gateway = ipv4_text(block + 1);
    }
    char text[64];
    if (!wan.ipv6_address.empty()) {
        std::snprintf(text, sizeof(text), "2001:db8:ffff:%x:%x::1", number >> 16, number & 0xffff);
        wan.ipv6_address = text;
    }
    if (!wan.ipv6_prefix.empty()) {
        std::snprintf(text, sizeof(text), "2001:db8:%x:%x::", number >> 8 & 0xffff,
                      (number & 0xff) << 8);
        wan.ipv6_prefix = text;
    }
}

void change_connections(Home &home, uint32_t number)
{
    constexpr uint32_t kInternet =
        0x64400000; // 100.64.0.0/10, shared by the customers of operators
    constexpr uint32_t kOthers[] = {0x0a400000, 0x0a800000, 0x0ac00000}; // parts of 10.0.0.0/8
    change_addresses(home.wan, kInternet, number);
    for (size_t at = 0; at < std::min(home.other_wans.size(), std::size(kOthers)); ++at) {
        change_addresses(home.other_wans[at], kOthers[at], number);
    }
}

std::string shifted(const std::string &time, int64_t minutes)
{
    constexpr int64_t kDay = 1440; // minutes
    const int64_t shift =
        (60 * std::stoll(time.substr(0, 2)) + std::stoll(time.substr(3)) + minutes + kDay) % kDay;
    char text[8];
    std::snprintf(text, sizeof(text), "%02d:%02d", static_cast<int>(shift / 60),
                  static_cast<int>(shift % 60));
    return text;
}

// Who is at home when, and how much of the line is used.
void change_habits(Home &home, Draws &draws)
{
    constexpr int64_t kMostShift = 90; // minutes
    const int64_t shift = draws.from_to(-kMostShift, kMostShift);
    for (Host &host : home.hosts) {
        if (!host.away_days.empty()) {
            host.away_from = shifted(host.away_from, shift);
            host.away_until = shifted(host.away_until, shift);
        }
        if (host.presence_percent != 0) {
            host.presence_percent =
                std::clamp<int64_t>(host.presence_percent + draws.from_to(-20, 20), 1, 99);
        }
        if (draws.percent(10)) { // a device that this home does not use
            host.online = false;
            host.signal_dbm = 0;
            host.roams = false;
        }
    }
    OrdinaryDay &day = home.ordinary_day;
    day.seed = draws.from_to(0, INT32_MAX);
    const int64_t use = draws.from_to(60, 140);
    day.up_kbps = std::min(day.up_kbps * use / 100, home.line.up_kbps);
    day.down_kbps = std::min(day.down_kbps * use / 100, home.line.down_kbps);
}

// The networks next door: those of the scenario at other distances, with the numbers of the homes
// around this one.
void change_neighbours(Home &home, uint32_t number, Draws &draws)
{
    for (Neighbour &neighbour : home.neighbours) {
        neighbour.signal_dbm =
            std::clamp<int64_t>(neighbour.signal_dbm + draws.from_to(-8, 8), -95, -35);
        if (!neighbour.name.empty()) {
            const int64_t other = std::max<int64_t>(0, number + draws.from_to(-9, 9));
            neighbour.name = with_ending(neighbour.name, "-" + std::to_string(other), kNetworkName);
        }
    }
}

} // namespace

void make_individual(Home &home, const HomeNumber &which)
{
    Draws draws(which);
    change_macs(home, which);
    change_names(home, which.number);
    change_connections(home, which.number);
    change_habits(home, draws);
    change_neighbours(home, which.number, draws);
}

} // namespace simulated_gateway
