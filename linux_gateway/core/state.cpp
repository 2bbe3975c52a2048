// SPDX-License-Identifier: MIT
#include "core/state.h"

#include "smart_router_service/device_access.h"
#include "system/error.h"
#include "system/text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace linux_gateway {
namespace {

using Json = nlohmann::json;

constexpr size_t kMostTextBytes = 256;

// An object of the file. Its members are optional: a value that is not there is the default.
class Object {
  public:
    Object(const Json &json, std::string place) : json_(json), place_(std::move(place))
    {
        if (!json.is_object()) {
            throw Error(place_ + " is not an object");
        }
    }

    void read(const char *name, std::string &value) const
    {
        if (const Json *found = member(name)) {
            require(found->is_string() &&
                        found->get_ref<const std::string &>().size() <= kMostTextBytes,
                    name, "is not a text of at most 256 bytes");
            value = found->get<std::string>();
        }
    }
    void read(const char *name, bool &value) const
    {
        if (const Json *found = member(name)) {
            require(found->is_boolean(), name, "is neither true nor false");
            value = found->get<bool>();
        }
    }
    int64_t number(const char *name, int64_t least, int64_t most, int64_t without) const
    {
        const Json *found = member(name);
        if (found == nullptr) {
            return without;
        }
        require(found->is_number_integer() && *found >= least && *found <= most, name,
                "is out of range");
        return found->get<int64_t>();
    }
    Mac mac() const
    {
        std::string text;
        read("mac", text);
        const std::optional<Mac> parsed = parse_mac(text);
        require(parsed.has_value(), "mac", "is not a MAC address");
        return *parsed;
    }
    // Calls with each object of a list.
    template <class Body> void each(const char *name, size_t most, const Body &body) const
    {
        const Json *found = member(name);
        if (found == nullptr) {
            return;
        }
        require(found->is_array() && found->size() <= most, name, "is not a list, or too long");
        for (const Json &entry : *found) {
            body(Object(entry, place_ + name + ": an entry"));
        }
    }
    void require(bool holds, const char *name, const char *error) const
    {
        if (!holds) {
            throw Error(place_ + ' ' + name + ' ' + error);
        }
    }

  private:
    const Json *member(const char *name) const
    {
        const auto found = json_.find(name);
        return found != json_.end() ? &*found : nullptr;
    }

    const Json &json_;
    std::string place_;
};

std::optional<Period> period_of(const ProtectPeriod &set)
{
    const std::optional<int> start = minute_of(set.start);
    const std::optional<int> end = minute_of(set.end);
    Period period;
    for (const char day : set.days) {
        if (day >= '1' && day <= '7') {
            period.days.insert(day - '0');
        }
    }
    if (!set.enabled || !start || !end || period.days.empty()) {
        return std::nullopt;
    }
    period.start_minute = *start;
    period.end_minute = *end;
    return period;
}

} // namespace

std::optional<int> minute_of(std::string_view time)
{
    constexpr size_t length = 5;
    if (time.size() != length || time[2] != ':') {
        return std::nullopt;
    }
    const auto hour = number_in<unsigned>(time.substr(0, 2));
    const auto minute = number_in<unsigned>(time.substr(3));
    return hour && minute && *hour < 24 && *minute < 60
               ? std::optional(static_cast<int>(*hour * 60 + *minute))
               : std::nullopt;
}

int32_t green_number_of(const State &state, const Mac &mac)
{
    const auto found = std::ranges::find_if(
        state.green_hosts, [&](const auto &entry) { return entry.second.mac == mac; });
    return found != state.green_hosts.end() ? found->first : 0;
}

bool is_protected(const State &state, const Mac &mac)
{
    const int32_t number = green_number_of(state, mac);
    return state.green_net && number != 0 && state.green_hosts.at(number).is_protected;
}

Rules rules_of(const State &state, const std::string &lan_bridge,
               const std::optional<Mac> &management_host)
{
    Rules rules;
    rules.lan_bridge = lan_bridge;
    rules.management_host = management_host;
    for (const auto &[mac, host] : state.hosts) {
        if (host.blocked) {
            rules.blocked.insert(mac);
        }
        if (host.down_limit_kbps > 0) {
            constexpr uint64_t bits_per_kbit = 1000;
            rules.limits[mac] = static_cast<uint64_t>(host.down_limit_kbps) * bits_per_kbit;
        }
    }
    for (const auto &[number, entry] : state.green_hosts) {
        if (!state.green_net || !state.access_restricted || !entry.is_protected) {
            continue;
        }
        std::vector<Period> periods;
        for (const ProtectPeriod &set : entry.periods) {
            if (const std::optional<Period> period = period_of(set)) {
                periods.push_back(*period);
            }
        }
        if (!periods.empty()) {
            rules.periods[entry.mac] = std::move(periods);
        }
    }
    return rules;
}

std::string to_json(const State &state)
{
    Json hosts = Json::array();
    for (const auto &[mac, host] : state.hosts) {
        hosts.push_back({{"mac", to_text(mac)},
                         {"alias", host.alias},
                         {"kind", host.kind},
                         {"blocked", host.blocked},
                         {"down_limit_kbps", host.down_limit_kbps}});
    }
    Json green_hosts = Json::array();
    for (const auto &[number, entry] : state.green_hosts) {
        Json periods = Json::array();
        for (const ProtectPeriod &period : entry.periods) {
            periods.push_back({{"enabled", period.enabled},
                               {"start", period.start},
                               {"end", period.end},
                               {"days", period.days}});
        }
        green_hosts.push_back({{"number", number},
                               {"mac", to_text(entry.mac)},
                               {"name", entry.name},
                               {"notify", entry.notify},
                               {"protected", entry.is_protected},
                               {"periods", periods}});
    }
    const Json json = {{"name", state.name},
                       {"hosts", hosts},
                       {"green_net", state.green_net},
                       {"access_restricted", state.access_restricted},
                       {"green_hosts", green_hosts}};
    // Texts come from requests: what is not UTF-8 must not throw here.
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

State read_state(const std::string &json)
{
    const Json document = Json::parse(json, nullptr, false);
    if (document.is_discarded()) {
        throw Error("it is not JSON");
    }
    State state;
    const Object top(document, "the document");
    top.read("name", state.name);
    top.read("green_net", state.green_net);
    top.read("access_restricted", state.access_restricted);
    top.each("hosts", kMostHostSettings, [&](const Object &entry) {
        HostSettings host;
        entry.read("alias", host.alias);
        entry.read("kind", host.kind);
        entry.read("blocked", host.blocked);
        host.down_limit_kbps = entry.number("down_limit_kbps", 0, kMostKbps, 0);
        state.hosts[entry.mac()] = host;
    });
    top.each("green_hosts", GREENNET_MAX_HOSTS, [&](const Object &entry) {
        GreenHost green;
        green.mac = entry.mac();
        entry.read("name", green.name);
        entry.read("notify", green.notify);
        entry.read("protected", green.is_protected);
        entry.each("periods", kMostProtectPeriods, [&](const Object &set) {
            ProtectPeriod period;
            set.read("enabled", period.enabled);
            set.read("start", period.start);
            set.read("end", period.end);
            set.read("days", period.days);
            green.periods.push_back(period);
        });
        const auto number = static_cast<int32_t>(entry.number("number", 1, GREENNET_MAX_HOSTS, 0));
        entry.require(number != 0 && !state.green_hosts.contains(number), "number",
                      "is missing or used twice");
        state.green_hosts[number] = green;
    });
    return state;
}

} // namespace linux_gateway
