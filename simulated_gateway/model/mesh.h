// SPDX-License-Identifier: MIT
// The mesh: the child routers and their links.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulated_gateway {

constexpr char kCable[] = "cable";
constexpr auto kLinkKinds = one_of(kCable, "2.4GHz", "5GHz");

// How a child router reaches its parent.
struct RouterLink {
    std::string kind;
    int64_t speed_mbps = 0;
    int64_t signal_dbm = 0; // only for a radio link

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("kind", self.kind, kLinkKinds);
        visit.field("speed_mbps", self.speed_mbps, Range{1, 10000});
        visit.field("signal_dbm", self.signal_dbm, Range{-110, -1, Presence::kOptional});
    }
};

struct ChildRouter {
    std::string name;
    std::string mac;
    std::string ip;
    std::string device_type;
    std::string software_version;
    std::string hardware_version;
    std::string firmware_date;
    std::string mac_24ghz; // of its radios
    std::string mac_5ghz;
    bool offline = false;   // switched off
    int64_t start_time = 0; // of the last restart, or of one to come, in seconds since 1970
    std::string parent;     // MAC address of the parent router
    RouterLink link;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("name", self.name, Text{sizeof(ChildRouterInfo::Name)});
        visit.field("mac", self.mac, Mac{});
        visit.field("ip", self.ip, Ipv4{});
        visit.field("device_type", self.device_type, Text{sizeof(ChildRouterInfo::DeviceType)});
        visit.field("software_version", self.software_version,
                    Text{sizeof(ChildRouterInfo::FWVersion)});
        visit.field("hardware_version", self.hardware_version,
                    Text{sizeof(ChildRouterInfo::HWVersion)});
        visit.field("firmware_date", self.firmware_date,
                    Text{sizeof(ChildRouterInfo::FWDATA), optional});
        visit.field("mac_24ghz", self.mac_24ghz, Mac{optional});
        visit.field("mac_5ghz", self.mac_5ghz, Mac{optional});
        visit.field("offline", self.offline, Flag{optional});
        visit.field("start_time", self.start_time, Range{0, INT64_MAX, optional});
        visit.field("parent", self.parent, Mac{});
        visit.object("link", self.link);
    }
};

// Either child routers attach to the main router only (a star), or also to each other.
constexpr int64_t kStar = 1;
constexpr int64_t kTree = 2;

// The mesh; the gateway is its main router.
struct Mesh {
    bool enabled = false;
    bool link_layer_up = false;
    int64_t type = 0;
    std::vector<ChildRouter> child_routers;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.field("link_layer_up", self.link_layer_up, Flag{});
        visit.field("type", self.type, one_of(kStar, kTree));
        visit.list("child_routers", self.child_routers, MESH_MAX_CHILD_ROUTERS);
    }
};

} // namespace simulated_gateway
