// SPDX-License-Identifier: MIT
// The services of the router other than the Wi-Fi: their switches, quality of service, the ports,
// the line, and the parts of the mesh that are controlled here.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulated_gateway {

constexpr char kByVlan[] = "VLAN";
constexpr auto kMultiserviceModes = one_of("NONE", "SSID", kByVlan);

// Protocols that have a helper (ALG) for address translation.
struct Alg {
    bool pptp = false;
    bool ftp = false;
    bool ipsec = false;
    bool l2tp = false;
    bool rtsp = false;
    bool h323 = false;
    bool sip = false;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("pptp", self.pptp, Flag{});
        visit.field("ftp", self.ftp, Flag{});
        visit.field("ipsec", self.ipsec, Flag{});
        visit.field("l2tp", self.l2tp, Flag{});
        visit.field("rtsp", self.rtsp, Flag{});
        visit.field("h323", self.h323, Flag{});
        visit.field("sip", self.sip, Flag{});
    }
};

struct ServiceSwitches {
    std::string multiservice_mode; // how the services are separated
    Alg alg;
    bool upnp = false;
    bool configuration_service = false; // that of the manufacturer
    bool wps = false;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("multiservice_mode", self.multiservice_mode, kMultiserviceModes);
        visit.object("alg", self.alg);
        visit.field("upnp", self.upnp, Flag{});
        visit.field("configuration_service", self.configuration_service, Flag{});
        visit.field("wps", self.wps, Flag{});
    }
};

// The capacity of the line to the provider.
struct Line {
    int64_t up_kbps = 0;
    int64_t down_kbps = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        // A speed test has a field of seven digits.
        visit.field("up_kbps", self.up_kbps, Range{1, 9'999'999});
        visit.field("down_kbps", self.down_kbps, Range{1, 9'999'999});
    }
};

// A port that is reserved for one WAN connection.
struct BoundPort {
    std::string port;
    int64_t wan = 0; // number of the connection

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("port", self.port, Text{16});
        visit.field("wan", self.wan, Range{1, PORT_MAX_BINDINGS});
    }
};

constexpr size_t kMostBoundPorts = 16;

struct Ports {
    int64_t lan = 0; // number of LAN ports
    std::vector<BoundPort> bindings;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("lan", self.lan, Range{1, 8});
        visit.list("bindings", self.bindings, kMostBoundPorts);
    }
};

// From 1, the highest priority, to 8.
constexpr Range kPriorities = {1, 8};

struct QosApp {
    std::string name;
    int64_t priority = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("name", self.name, Text{sizeof(QosApplication::Name)});
        visit.field("priority", self.priority, kPriorities);
    }
};

// What a rule matches: addresses, ports, and the marks of frames and packets.
constexpr auto kTrafficTypes = one_of("SMAC", "8021P", "SIP", "DIP", "SPORT", "DPORT", "DSCP");

struct Traffic {
    std::string type;
    std::string min;
    std::string max;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("type", self.type, kTrafficTypes);
        visit.field("min", self.min, Text{sizeof(QosType::Min)});
        visit.field("max", self.max, Text{sizeof(QosType::Max)});
    }
};

struct Classification {
    int64_t number = 0;
    std::string name;
    int64_t priority = 0;
    std::vector<Traffic> traffic;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("number", self.number, Range{1, QOS_MAX_RULES});
        visit.field("name", self.name, Text{sizeof(QosRule::Name)});
        visit.field("priority", self.priority, kPriorities);
        visit.list("traffic", self.traffic, QOS_MAX_TYPES);
    }
};

// Quality of service for the upstream direction.
struct Qos {
    bool enabled = false;
    std::vector<QosApp> applications; // numbered from 1, by position in the list
    std::vector<Classification> rules;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("enabled", self.enabled, Flag{});
        visit.list("applications", self.applications, QOS_MAX_APPLICATIONS);
        visit.list("rules", self.rules, QOS_MAX_RULES);
    }
};

constexpr Range kHeartbeatSeconds = {10, 86'400};

struct MeshControl {
    bool pairing_supported = false;
    int64_t heartbeat_seconds = 0; // between two reports of the agent to the platform

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("pairing_supported", self.pairing_supported, Flag{});
        visit.field("heartbeat_seconds", self.heartbeat_seconds, kHeartbeatSeconds);
    }
};

// Operations in progress, with times in seconds since 1970; 0 for none. A boot ends them.
struct UnderWay {
    int64_t mesh_change_time = 0; // when the mesh was last switched
    int64_t pairing_end = 0;
    int64_t wps_end_24ghz = 0;
    int64_t wps_end_5ghz = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr Range time = {0, INT64_MAX, Presence::kOptional};
        visit.field("mesh_change_time", self.mesh_change_time, time);
        visit.field("pairing_end", self.pairing_end, time);
        visit.field("wps_end_24ghz", self.wps_end_24ghz, time);
        visit.field("wps_end_5ghz", self.wps_end_5ghz, time);
    }
};

// The bytes that a port has carried since the boot, from the router's point of view.
struct PortCounter {
    std::string port;
    int64_t sent = 0;
    int64_t received = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("port", self.port, Text{16});
        visit.field("sent", self.sent, Range{0, INT64_MAX});
        visit.field("received", self.received, Range{0, INT64_MAX});
    }
};

constexpr size_t kMostPorts = 16;

struct PortCounters {
    int64_t counted_until = 0; // in seconds since 1970
    std::vector<PortCounter> ports;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("counted_until", self.counted_until, Range{0, INT64_MAX});
        visit.list("ports", self.ports, kMostPorts);
    }
};

} // namespace simulated_gateway
