// SPDX-License-Identifier: MIT
#include "device/child_router_record.h"

#include "device/attached_device.h"
#include "io/clock.h"
#include "simulation/host_activity.h"

namespace simulated_gateway {

// The network interface that a link uses.
static std::string interface_of(const RouterLink &link)
{
    return link.kind == kCable ? "eth0" : link.kind == "2.4GHz" ? "wlan0" : "wlan1";
}

void fill(MeshLink &link, const State &state, const std::string &next, const ChildRouter &child)
{
    put(link.nexthopMAC, next);
    put(link.interface, interface_of(child.link));
    put(link.dbm, link_dbm_text(state, child));
}

std::string link_dbm_text(const State &state, const ChildRouter &router)
{
    return is_active(state.home, router) ? number_or_none(link_dbm(state, router)) : "";
}

static void add_link(ChildRouterInfo &info, const State &state, const std::string &next,
                     const ChildRouter &child)
{
    fill(info.links[info.link_count++], state, next, child);
}

// The link to the parent first, then those to the children. A router has no more links than there
// are child routers, so the record has room for all.
static void fill_links(ChildRouterInfo &info, const State &state, const ChildRouter *router)
{
    info.link_count = 0;
    if (router != nullptr && is_active(state.home, *router)) {
        add_link(info, state, router->parent, *router);
    }
    for (const ChildRouter *child : active_children(state.home, router)) {
        add_link(info, state, child->mac, *child);
    }
}

// The traffic of all hosts attached to the router or below it.
static Rates rates_through(const State &state, const ChildRouter &router)
{
    Rates sum;
    for (const Host &host : state.home.hosts) {
        if (is_below(state.home, place_of(state.home, host).router, router)) {
            const Rates rates = rates_of(state, host);
            sum.up_kbps += rates.up_kbps;
            sum.down_kbps += rates.down_kbps;
        }
    }
    return sum;
}

void fill(ChildRouterInfo &info, const State &state, const ChildRouter &router)
{
    const bool active = is_active(state.home, router);
    const Rates rates = rates_through(state, router);
    put(info.RouterDeviceID, identifier_of(router.mac));
    put(info.Name, router.name);
    put(info.Mac, router.mac);
    put(info.NetStatus, active);
    put(info.ChildRouterAccessType, router.link.kind);
    put(info.UpSpeed, rates.up_kbps);
    put(info.DownSpeed, rates.down_kbps);
    put(info.ip, router.ip);
    put(info.FWVersion, router.software_version);
    put(info.FWDATA, router.firmware_date);
    put(info.UpTime, active ? std::to_string(seconds_since(up_since(state, &router))) : "");
    put(info.DeviceType, router.device_type);
    put(info.AreaCode, state.home.identity.area_code);
    put(info.HWVersion, router.hardware_version);
    put(info.Wlan0Mac, router.mac_24ghz);
    put(info.Wlan1Mac, router.mac_5ghz);
    put(info.ParentMac, router.parent);
    put(info.dbm, link_dbm_text(state, router));
    fill_links(info, state, &router);
}

void fill_main_router(ChildRouterInfo &info, const State &state)
{
    const Home &home = state.home;
    const auto radio_mac = [&](size_t at) {
        return at < home.radios.size() ? home.radios[at].mac : std::string();
    };
    put(info.RouterDeviceID, identifier_of(home.identity.mac));
    put(info.Name, home.name);
    put(info.Mac, home.identity.mac);
    put(info.NetStatus, true);
    put(info.ChildRouterAccessType, "");
    put(info.UpSpeed, up_kbps(state));
    put(info.DownSpeed, down_kbps(state));
    put(info.ip, home.lan.ip);
    put(info.FWVersion, home.identity.software_version);
    put(info.FWDATA, home.identity.firmware_date);
    put(info.UpTime, seconds_since(state.boot_time));
    put(info.DeviceType, home.identity.device_type);
    put(info.AreaCode, home.identity.area_code);
    put(info.HWVersion, home.identity.hardware_version);
    put(info.Wlan0Mac, radio_mac(0));
    put(info.Wlan1Mac, radio_mac(1));
    put(info.ParentMac, "");
    put(info.dbm, "");
    fill_links(info, state, nullptr);
}

void fill(ChildMeshInfo &info, const Home &home, const ChildRouter &router)
{
    if (!is_active(home, router)) {
        throw Error(router.mac + " is offline");
    }
    put(info.Mac, router.mac);
    put(info.ChildMac, router.mac);
    put(info.ParentMac, router.parent);
}

const ChildRouter &child_router_named(const Home &home, const char *mac)
{
    const std::optional<std::string> parsed = parse_mac(mac);
    const ChildRouter *router = parsed ? child_router_with_mac(home, *parsed) : nullptr;
    if (router == nullptr) {
        throw Error("there is no child router " + in_quotes(mac));
    }
    return *router;
}

const ChildRouter &child_router_numbered(const Home &home, int64_t identifier)
{
    const ChildRouter *router = child_router_at(home, identifier);
    if (router == nullptr) {
        throw Error("there is no child router " + std::to_string(identifier));
    }
    return *router;
}

} // namespace simulated_gateway
