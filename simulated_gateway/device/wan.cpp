// SPDX-License-Identifier: MIT
// The WAN connections: their number, and each of them by name. The first is the Internet
// connection, which other device functions call the WAN.
#include "core/device_call.h"

using namespace simulated_gateway;

// Calls visit with each connection and its number, from 1.
template <class AnyHome, class Visit> static void visit_wans(AnyHome &home, Visit visit)
{
    int64_t index = 0;
    visit(++index, home.wan);
    for (auto &wan : home.other_wans) {
        visit(++index, wan);
    }
}

// ---- Their number ------------------------------------------------------------------------------

int32_t devapi_get_wan_num(WanNum *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        int64_t count = 0;
        std::string names;
        visit_wans(state.home, [&](int64_t index, const Wan &wan) {
            count = index;
            names += (names.empty() ? "" : ",") + wan.name;
        });
        put(info->NUM, count);
        put(info->Description, names);
        return 0;
    });
}

// ---- One connection ----------------------------------------------------------------------------

// While disconnected, it has only the addresses set by the user.
static Wan without_provider(Wan wan)
{
    if (wan.connected) {
        return wan;
    }
    if (wan.mode != kStaticMode) {
        wan.ip = wan.subnet_mask = wan.gateway = wan.primary_dns = wan.secondary_dns = "";
    }
    wan.ipv6_address = wan.ipv6_prefix = wan.ipv6_gateway = "";
    wan.ipv6_primary_dns = wan.ipv6_secondary_dns = "";
    wan.ipv6_prefix_length = 0;
    return wan;
}

static std::string protocols_of(const Wan &wan)
{
    if (wan.bridged) {
        return "";
    }
    return wan.ipv6_address.empty() ? "IPv4" : "IPv4/IPv6";
}

static void fill(WanInfo &info, int64_t index, const Wan &wan)
{
    const Wan shown = without_provider(wan);
    const auto number_or_none = [](int64_t number, bool there) {
        return there ? std::to_string(number) : std::string();
    };
    put(info.INDEX, index);
    put(info.IFNAME, wan.interface);
    put(info.CONNECTIONSTATUS, std::string(connection_state(wan)));
    put(info.CONNECTIONTYPE, std::string(wan.bridged ? "IP_Bridged" : "IP_Routed"));
    put(info.PROTOCOL, protocols_of(wan));
    put(info.UPLINKMODE, wan.bridged ? "Bridge" : wan.mode);
    put(info.WANName, wan.name);
    put(info.SERVICELIST, wan.services);
    put(info.ADDRESSTYPE, wan.mode);
    put(info.IPADDRESS, shown.ip);
    put(info.SUBNETMASK, shown.subnet_mask);
    put(info.GATEWAY, shown.gateway);
    put(info.DNS1, shown.primary_dns);
    put(info.DNS2, shown.secondary_dns);
    put(info.IPV6_CONNECTIONSTATUS,
        std::string(shown.ipv6_address.empty() ? "Disconnected" : "Connected"));
    put(info.IPV6_PRIFIX, shown.ipv6_prefix);
    put(info.IPV6_PREFIXLENGTH,
        number_or_none(shown.ipv6_prefix_length, shown.ipv6_prefix_length != 0));
    put(info.IPV6_IPADDRESS, shown.ipv6_address);
    put(info.IPV6_GATEWAY, shown.ipv6_gateway);
    put(info.IPV6_DNS1, shown.ipv6_primary_dns);
    put(info.IPV6_DNS2, shown.ipv6_secondary_dns);
    put(info.PPPOE_USR_NAME, wan.pppoe_account);
    put(info.PPPOE_PASSWORD, wan.pppoe_password);
    put(info.PPPOE_PROXY, false);
    put(info.PPPOE_SERVICENAME, wan.pppoe_service);
    put(info.PPPOE_DIAL_MODE, std::string(wan.mode == kPppoeMode ? "AlwaysOn" : ""));
    put(info.NATENABLE, wan.nat);
    put(info.QOSENABLE, wan.qos);
    put(info.VLANID, number_or_none(wan.vlan_id, wan.vlan_id != 0));
    put(info.VLANPRIORITY, number_or_none(wan.vlan_priority, wan.vlan_id != 0));
}

// Calls visit with the connection of that name and its number.
template <class AnyHome, class Visit>
static void visit_named(AnyHome &home, const std::string &name, Visit visit)
{
    bool found = false;
    visit_wans(home, [&](int64_t index, auto &wan) {
        if (wan.name == name) {
            found = true;
            visit(index, wan);
        }
    });
    if (!found) {
        throw Error("there is no WAN connection " + in_quotes(name));
    }
}

int32_t devapi_query_wan_info(WanInfo *info)
{
    return query(__func__, {exchange("info", info)}, [&](const State &state) {
        visit_named(state.home, taken(info->WANName),
                    [&](int64_t index, const Wan &wan) { fill(*info, index, wan); });
        return 0;
    });
}

// ---- Settings ----------------------------------------------------------------------------------

namespace {

// The changes that a request makes to a connection. A field that is empty, or that repeats what the
// gateway reports, changes nothing; "NULL" removes a value.
class WanChange {
  public:
    WanChange(const WanInfo &wanted, int64_t index, const Wan &wan) : wanted_(wanted)
    {
        fill(reported_, index, wan);
    }

    using Field = char (WanInfo::*)[64];

    bool has(Field field) const { return !text(field).empty(); }

    template <class Rule>
    void take(const char *name, Field field, std::string &value, const Rule &rule) const
    {
        if (has(field)) {
            value = value_of(name, field, rule.presence);
            refuse_for(name, value.empty() ? "" : validation_error(value, rule));
        }
    }
    void take(const char *name, Field field, int64_t &value, const Range &rule) const
    {
        if (has(field)) {
            const std::string digits = value_of(name, field, rule.presence);
            value = digits.empty() ? 0 : number_of(name, digits);
            refuse_for(name, digits.empty() ? "" : validation_error(value, rule));
        }
    }
    void take(const char *name, Field field, bool &value) const
    {
        if (has(field)) {
            value = flag_of(name, text(field));
        }
    }

  private:
    std::string text(Field field) const
    {
        const std::string given = taken(wanted_.*field);
        return given == taken(reported_.*field) ? "" : given;
    }
    std::string value_of(const char *name, Field field, Presence presence) const
    {
        std::string given = text(field);
        if (given != kNoValue) {
            return given;
        }
        if (presence == Presence::kRequired) {
            throw Error(std::string(name) + " is missing");
        }
        return "";
    }

    const WanInfo &wanted_;
    WanInfo reported_ = {};
};

} // namespace

static void take_addresses(const WanChange &change, Wan &wan)
{
    constexpr Ipv4 ipv4 = {Presence::kOptional};
    constexpr Ipv6 ipv6 = {Presence::kOptional};
    change.take("IPADDRESS", &WanInfo::IPADDRESS, wan.ip, ipv4);
    change.take("SUBNETMASK", &WanInfo::SUBNETMASK, wan.subnet_mask, ipv4);
    change.take("GATEWAY", &WanInfo::GATEWAY, wan.gateway, ipv4);
    change.take("DNS1", &WanInfo::DNS1, wan.primary_dns, ipv4);
    change.take("DNS2", &WanInfo::DNS2, wan.secondary_dns, ipv4);
    change.take("IPV6_IPADDRESS", &WanInfo::IPV6_IPADDRESS, wan.ipv6_address, ipv6);
    change.take("IPV6_PRIFIX", &WanInfo::IPV6_PRIFIX, wan.ipv6_prefix, ipv6);
    change.take("IPV6_PREFIXLENGTH", &WanInfo::IPV6_PREFIXLENGTH, wan.ipv6_prefix_length,
                Range{1, 128, Presence::kOptional});
    change.take("IPV6_GATEWAY", &WanInfo::IPV6_GATEWAY, wan.ipv6_gateway, ipv6);
    change.take("IPV6_DNS1", &WanInfo::IPV6_DNS1, wan.ipv6_primary_dns, ipv6);
    change.take("IPV6_DNS2", &WanInfo::IPV6_DNS2, wan.ipv6_secondary_dns, ipv6);
}

// The user cannot set what the provider assigns.
static void refuse_addresses_of_provider(const WanChange &change)
{
    constexpr struct {
        const char *name;
        WanChange::Field field;
    } given[] = {{"IPADDRESS", &WanInfo::IPADDRESS},
                 {"SUBNETMASK", &WanInfo::SUBNETMASK},
                 {"GATEWAY", &WanInfo::GATEWAY}};
    for (const auto &it : given) {
        if (change.has(it.field)) {
            throw Error(std::string(it.name) + " is given by the provider");
        }
    }
}

static void take_wan(const WanChange &change, Wan &wan)
{
    constexpr Text text = {64, Presence::kOptional};
    change.take("SERVICELIST", &WanInfo::SERVICELIST, wan.services, ServiceList{});
    change.take("ADDRESSTYPE", &WanInfo::ADDRESSTYPE, wan.mode, kWanModes);
    take_addresses(change, wan);
    if (!wan.bridged && wan.mode != kStaticMode) {
        refuse_addresses_of_provider(change);
    }
    change.take("PPPOE_USR_NAME", &WanInfo::PPPOE_USR_NAME, wan.pppoe_account, text);
    change.take("PPPOE_PASSWORD", &WanInfo::PPPOE_PASSWORD, wan.pppoe_password, text);
    if (wan.mode == kPppoeMode && wan.pppoe_password.empty()) {
        throw Error("PPPOE_PASSWORD is missing");
    }
    change.take("NATENABLE", &WanInfo::NATENABLE, wan.nat);
    change.take("QOSENABLE", &WanInfo::QOSENABLE, wan.qos);
    change.take("VLANID", &WanInfo::VLANID, wan.vlan_id, Range{1, 4094, Presence::kOptional});
    change.take("VLANPRIORITY", &WanInfo::VLANPRIORITY, wan.vlan_priority,
                Range{0, 7, Presence::kOptional});
    if (wan.vlan_id == 0) {
        if (change.has(&WanInfo::VLANPRIORITY)) {
            throw Error("VLANPRIORITY needs a VLANID");
        }
        wan.vlan_priority = 0;
    }
}

// Whether the two differ in more than the handling of traffic, so that a reconnect is needed.
static bool connect_differently(Wan before, const Wan &after)
{
    before.services = after.services;
    before.nat = after.nat;
    before.qos = after.qos;
    return before != after;
}

int32_t devapi_set_route_wan_info(const WanInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        visit_named(state.home, taken(info->WANName), [&](int64_t index, Wan &wan) {
            const Wan before = wan;
            take_wan(WanChange(*info, index, wan), wan);
            if (!connect_differently(before, wan)) {
                return;
            }
            if (&wan == &state.home.wan) {
                reconnect(state);
            } else {
                reconnect(wan);
            }
        });
        return 0;
    });
}
