// SPDX-License-Identifier: MIT
#include "system/network_reader.h"

#include "system/error.h"
#include "system/leases.h"
#include "system/netlink.h"
#include "system/text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <ctime>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace linux_gateway {
namespace {

constexpr size_t kMostHosts = 1024;

// The attributes of a message by type, up to a number of types. One that is shorter than the kernel
// would send it counts as missing.
template <size_t types> class Attributes {
  public:
    Attributes(const nlmsghdr &message, size_t header_size)
    {
        if (mnl_nlmsg_get_payload_len(&message) >= header_size) {
            mnl_attr_parse(&message, static_cast<unsigned>(header_size), take, this);
        }
    }
    explicit Attributes(const nlattr &nested) { mnl_attr_parse_nested(&nested, take, this); }
    explicit Attributes(std::span<const uint8_t> payload)
    {
        mnl_attr_parse_payload(payload.data(), payload.size(), take, this);
    }

    const nlattr *attribute(size_t type) const { return found_.at(type); }
    std::span<const uint8_t> bytes(size_t type) const
    {
        const nlattr *found = found_.at(type);
        return found == nullptr
                   ? std::span<const uint8_t>()
                   : std::span(static_cast<const uint8_t *>(mnl_attr_get_payload(found)),
                               mnl_attr_get_payload_len(found));
    }
    std::optional<uint32_t> number(size_t type) const { return structure<uint32_t>(type); }
    // The text up to its NUL.
    std::string text(size_t type) const
    {
        const std::span<const uint8_t> payload = bytes(type);
        const std::string_view text(reinterpret_cast<const char *>(payload.data()), payload.size());
        return std::string(text.substr(0, text.find('\0')));
    }
    template <class Structure> std::optional<Structure> structure(size_t type) const
    {
        const std::span<const uint8_t> payload = bytes(type);
        Structure structure = {};
        if (payload.size() < sizeof(structure)) {
            return std::nullopt;
        }
        std::copy_n(payload.data(), sizeof(structure), reinterpret_cast<uint8_t *>(&structure));
        return structure;
    }

  private:
    static int take(const nlattr *attribute, void *self)
    {
        const uint16_t type = mnl_attr_get_type(attribute);
        if (type < types) {
            static_cast<Attributes *>(self)->found_.at(type) = attribute;
        }
        return MNL_CB_OK;
    }

    std::array<const nlattr *, types> found_ = {};
};

template <class Header> const Header *header_of(const nlmsghdr &message)
{
    return mnl_nlmsg_get_payload_len(&message) >= sizeof(Header)
               ? static_cast<const Header *>(mnl_nlmsg_get_payload(&message))
               : nullptr;
}

std::string address_text(int family, std::span<const uint8_t> bytes)
{
    char text[INET6_ADDRSTRLEN] = "";
    const size_t wanted = family == AF_INET ? sizeof(in_addr) : sizeof(in6_addr);
    return bytes.size() == wanted && inet_ntop(family, bytes.data(), text, sizeof(text)) != nullptr
               ? text
               : "";
}

bool is_link_local(std::span<const uint8_t> ipv6)
{
    return ipv6.size() == sizeof(in6_addr) && ipv6[0] == 0xfe && (ipv6[1] & 0xc0) == 0x80;
}

std::map<int, Link> read_links(RouteSocket &socket)
{
    std::map<int, Link> links;
    ifinfomsg request = {};
    request.ifi_family = AF_UNSPEC;
    socket.dump(RTM_GETLINK, request, [&](const nlmsghdr &message) {
        const auto *header = header_of<ifinfomsg>(message);
        if (header == nullptr || message.nlmsg_type != RTM_NEWLINK) {
            return;
        }
        const Attributes<IFLA_MAX + 1> attributes(message, sizeof(ifinfomsg));
        Link link;
        link.index = header->ifi_index;
        link.name = attributes.text(IFLA_IFNAME);
        link.master = static_cast<int>(attributes.number(IFLA_MASTER).value_or(0));
        link.mac = mac_of(attributes.bytes(IFLA_ADDRESS)).value_or(Mac());
        link.is_up = (header->ifi_flags & IFF_UP) != 0 && (header->ifi_flags & IFF_LOWER_UP) != 0;
        link.is_point_to_point = header->ifi_type == ARPHRD_PPP;
        if (const nlattr *info = attributes.attribute(IFLA_LINKINFO)) {
            link.kind = Attributes<IFLA_INFO_MAX + 1>(*info).text(IFLA_INFO_KIND);
        }
        if (const auto counters = attributes.structure<rtnl_link_stats64>(IFLA_STATS64)) {
            link.received_bytes = counters->rx_bytes;
            link.sent_bytes = counters->tx_bytes;
            link.received_packets = counters->rx_packets;
            link.sent_packets = counters->tx_packets;
        }
        links[link.index] = link;
    });
    return links;
}

void read_addresses(RouteSocket &socket, std::map<int, Link> &links)
{
    ifaddrmsg request = {};
    request.ifa_family = AF_UNSPEC;
    socket.dump(RTM_GETADDR, request, [&](const nlmsghdr &message) {
        const auto *header = header_of<ifaddrmsg>(message);
        if (header == nullptr) {
            return;
        }
        const auto link = links.find(static_cast<int>(header->ifa_index));
        if (link == links.end() ||
            (header->ifa_family != AF_INET && header->ifa_family != AF_INET6)) {
            return;
        }
        const Attributes<IFA_MAX + 1> attributes(message, sizeof(ifaddrmsg));
        // On a point-to-point link IFA_ADDRESS is the address of the other side.
        const std::span<const uint8_t> bytes = attributes.attribute(IFA_LOCAL) != nullptr
                                                   ? attributes.bytes(IFA_LOCAL)
                                                   : attributes.bytes(IFA_ADDRESS);
        Address address;
        address.text = address_text(header->ifa_family, bytes);
        address.prefix_length = header->ifa_prefixlen;
        address.is_dynamic = (header->ifa_flags & IFA_F_PERMANENT) == 0;
        if (const auto times = attributes.structure<ifa_cacheinfo>(IFA_CACHEINFO)) {
            constexpr int64_t ticks_per_second = 100;
            address.created_seconds = times->cstamp / ticks_per_second;
        }
        if (address.text.empty()) {
            return;
        }
        if (header->ifa_family == AF_INET) {
            link->second.ipv4.push_back(address);
        } else if (!is_link_local(bytes)) {
            link->second.ipv6.push_back(address);
        }
    });
}

struct DefaultRoute {
    int port = 0;
    uint32_t metric = 0;
    int weight = 1; // of the next hop, if the route has several
    bool is_down = false;
    std::string gateway;
    bool is_by_dhcp = false;
};

bool is_preferred(const DefaultRoute &route, const DefaultRoute &other)
{
    return std::tuple(route.metric, route.is_down, -route.weight) <
           std::tuple(other.metric, other.is_down, -other.weight);
}

// The next hops of a route with several, which share what the route itself says.
std::vector<DefaultRoute> next_hops(const DefaultRoute &route, int family, const nlattr &multipath)
{
    std::vector<DefaultRoute> hops;
    const auto *hop = static_cast<const rtnexthop *>(mnl_attr_get_payload(&multipath));
    auto left = static_cast<int>(mnl_attr_get_payload_len(&multipath));
    constexpr int least = sizeof(rtnexthop);
    for (; left >= least && RTNH_OK(hop, left);
         left -= RTNH_ALIGN(hop->rtnh_len), hop = RTNH_NEXT(hop)) {
        const auto *first = reinterpret_cast<const uint8_t *>(RTNH_DATA(hop));
        const Attributes<RTA_MAX + 1> attributes(
            std::span(first, hop->rtnh_len - static_cast<size_t>(RTNH_LENGTH(0))));
        DefaultRoute &added = hops.emplace_back(route);
        added.port = hop->rtnh_ifindex;
        added.weight = hop->rtnh_hops + 1;
        added.is_down = (hop->rtnh_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0;
        added.gateway = address_text(family, attributes.bytes(RTA_GATEWAY));
    }
    return hops;
}

// The preferred default route of a family, over any port or over one. One with several next hops
// counts as one for each of them.
std::optional<DefaultRoute> read_default_route(RouteSocket &socket, int family,
                                               std::optional<int> wanted_port)
{
    std::optional<DefaultRoute> best;
    rtmsg request = {};
    request.rtm_family = static_cast<unsigned char>(family);
    socket.dump(RTM_GETROUTE, request, [&](const nlmsghdr &message) {
        const auto *header = header_of<rtmsg>(message);
        if (header == nullptr || header->rtm_dst_len != 0 || header->rtm_table != RT_TABLE_MAIN ||
            header->rtm_type != RTN_UNICAST || header->rtm_family != family) {
            return;
        }
        const Attributes<RTA_MAX + 1> attributes(message, sizeof(rtmsg));
        DefaultRoute route;
        route.port = static_cast<int>(attributes.number(RTA_OIF).value_or(0));
        route.metric = attributes.number(RTA_PRIORITY).value_or(0);
        route.is_down = (header->rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0;
        route.gateway = address_text(family, attributes.bytes(RTA_GATEWAY));
        route.is_by_dhcp = header->rtm_protocol == RTPROT_DHCP;
        const nlattr *multipath = attributes.attribute(RTA_MULTIPATH);
        for (const DefaultRoute &hop : multipath != nullptr ? next_hops(route, family, *multipath)
                                                            : std::vector<DefaultRoute>{route}) {
            if (wanted_port.value_or(hop.port) == hop.port && (!best || is_preferred(hop, *best))) {
                best = hop;
            }
        }
    });
    return best;
}

// Fills what depends on the default routes over the WAN port.
void read_routes(RouteSocket &socket, Network &network)
{
    if (const auto route = read_default_route(socket, AF_INET, network.wan->index)) {
        network.has_ipv4_route = true;
        network.gateway_ipv4 = route->gateway;
        network.is_route_by_dhcp = route->is_by_dhcp;
    }
    if (const auto route = read_default_route(socket, AF_INET6, network.wan->index)) {
        network.has_ipv6_route = true;
        network.gateway_ipv6 = route->gateway;
    }
}

// The name of the port of the default route, unless that is the LAN bridge itself.
std::optional<std::string> default_port(RouteSocket &socket, const std::map<int, Link> &links,
                                        int bridge)
{
    for (const int family : {AF_INET, AF_INET6}) {
        const auto route = read_default_route(socket, family, std::nullopt);
        const auto link = route ? links.find(route->port) : links.end();
        if (link != links.end() && link->first != bridge) {
            return link->second.name;
        }
    }
    return std::nullopt;
}

class Hosts {
  public:
    // A machine is not a host of its own bridge, but may be among its own neighbours.
    explicit Hosts(const std::map<int, Link> &own_links)
    {
        for (const auto &[index, link] : own_links) {
            own_.insert(link.mac);
        }
    }

    // The host of an address; null if there are too many, or if the address is no host's.
    Host *with(const Mac &mac)
    {
        const auto found = hosts_.find(mac);
        if (found != hosts_.end()) {
            return &found->second;
        }
        if (mac == Mac() || mac.is_multicast() || own_.contains(mac) ||
            hosts_.size() >= kMostHosts) {
            return nullptr;
        }
        Host &host = hosts_[mac];
        host.mac = mac;
        return &host;
    }
    std::map<Mac, Host> &all() { return hosts_; }

  private:
    std::set<Mac> own_;
    std::map<Mac, Host> hosts_;
};

bool is_in_network_of(const Address &own, const std::string &ipv4)
{
    in_addr ours = {};
    in_addr other = {};
    return inet_pton(AF_INET, own.text.c_str(), &ours) == 1 &&
           inet_pton(AF_INET, ipv4.c_str(), &other) == 1 &&
           uint64_t{ntohl(ours.s_addr) ^ ntohl(other.s_addr)} >> (32 - own.prefix_length) == 0;
}

// The DHCP server may serve other networks as well, such as one for guests.
void read_lease_file(const std::string &path, const Link &bridge, Hosts &hosts)
{
    for (const Lease &lease : read_leases(path)) {
        const bool is_of_bridge = std::ranges::any_of(
            bridge.ipv4, [&](const Address &own) { return is_in_network_of(own, lease.ipv4); });
        if (Host *host = is_of_bridge ? hosts.with(lease.mac) : nullptr) {
            host->name = lease.name;
            host->ipv4 = lease.ipv4;
            host->has_lease = true;
        }
    }
}

// Neighbours give hosts with fixed addresses, whose addresses the DHCP server does not know.
void read_neighbours(RouteSocket &socket, int bridge, Hosts &hosts)
{
    ndmsg request = {};
    request.ndm_family = AF_UNSPEC;
    socket.dump(RTM_GETNEIGH, request, [&](const nlmsghdr &message) {
        const auto *header = header_of<ndmsg>(message);
        constexpr uint16_t usable =
            NUD_REACHABLE | NUD_STALE | NUD_DELAY | NUD_PROBE | NUD_PERMANENT;
        if (header == nullptr || header->ndm_ifindex != bridge ||
            (header->ndm_state & usable) == 0 ||
            (header->ndm_family != AF_INET && header->ndm_family != AF_INET6)) {
            return;
        }
        const Attributes<NDA_MAX + 1> attributes(message, sizeof(ndmsg));
        const std::optional<Mac> mac = mac_of(attributes.bytes(NDA_LLADDR));
        Host *host = mac ? hosts.with(*mac) : nullptr;
        const std::string address = address_text(header->ndm_family, attributes.bytes(NDA_DST));
        if (host == nullptr || address.empty()) {
            return;
        }
        constexpr size_t most_addresses = 16;
        if (header->ndm_family == AF_INET) {
            if (host->ipv4.empty()) {
                host->ipv4 = address;
            }
        } else if (host->ipv6.size() < most_addresses) {
            host->ipv6.push_back(address);
        }
    });
}

// The bridge's table says which hosts have sent something lately, and where.
void read_bridge_table(RouteSocket &socket, const Network &network, Hosts &hosts)
{
    ndmsg request = {};
    request.ndm_family = AF_BRIDGE;
    socket.dump(RTM_GETNEIGH, request, [&](const nlmsghdr &message) {
        const auto *header = header_of<ndmsg>(message);
        // The bridge's own addresses are permanent entries.
        if (header == nullptr || header->ndm_family != AF_BRIDGE ||
            (header->ndm_state & NUD_PERMANENT) != 0) {
            return;
        }
        const auto port = std::ranges::find(network.ports, header->ndm_ifindex,
                                            [](const Link &link) { return link.index; });
        const Attributes<NDA_MAX + 1> attributes(message, sizeof(ndmsg));
        const std::optional<Mac> mac = mac_of(attributes.bytes(NDA_LLADDR));
        if (port == network.ports.end() || !port->is_up || !mac) {
            return;
        }
        if (Host *host = hosts.with(*mac)) {
            host->is_online = true;
            host->port = port->name;
            host->is_wireless = port->is_wireless;
        }
    });
}

bool is_wireless(const Link &link)
{
    // The kernel does not accept a slash in the name of an interface.
    return access(("/sys/class/net/" + link.name + "/phy80211").c_str(), F_OK) == 0;
}

} // namespace

std::vector<Link> read_interfaces()
{
    RouteSocket socket;
    std::map<int, Link> links = read_links(socket);
    read_addresses(socket, links);
    std::vector<Link> interfaces;
    interfaces.reserve(links.size());
    for (auto &[index, link] : links) {
        interfaces.push_back(std::move(link));
    }
    return interfaces;
}

Network NetworkReader::read(const NetworkSources &sources)
{
    Network network;
    RouteSocket socket;
    std::map<int, Link> links = read_links(socket);
    read_addresses(socket, links);
    const auto bridge = std::ranges::find_if(links, [&](const auto &entry) {
        return entry.second.name == sources.lan_bridge && entry.second.kind == "bridge";
    });
    if (bridge == links.end()) {
        throw Error("there is no bridge " + in_quotes(sources.lan_bridge));
    }
    network.bridge = bridge->second;
    if (sources.wan_port.empty()) {
        // Without a default route, the port of the last one has a fault.
        wan_port_ = default_port(socket, links, network.bridge.index).value_or(wan_port_);
    }
    network.wan_name = sources.wan_port.empty() ? wan_port_ : sources.wan_port;
    for (auto &[index, link] : links) {
        if (link.master == network.bridge.index) {
            link.is_wireless = is_wireless(link);
            network.ports.push_back(link);
        }
        if (link.name == network.wan_name) {
            network.wan = link;
        }
    }
    if (network.wan) {
        read_routes(socket, network);
    }

    Hosts hosts(links);
    for (const Mac &mac : sources.known_hosts) {
        hosts.with(mac);
    }
    read_lease_file(sources.lease_file, network.bridge, hosts);
    read_neighbours(socket, network.bridge.index, hosts);
    read_bridge_table(socket, network, hosts);

    std::map<std::string, int> hosts_at;
    for (const auto &[mac, host] : hosts.all()) {
        ++hosts_at[host.port];
    }
    const int64_t now = time(nullptr);
    std::map<Mac, Seen> seen;
    for (auto &[mac, host] : hosts.all()) {
        const auto before = seen_.find(mac);
        Seen &entry = seen[mac];
        entry.order = before != seen_.end() ? before->second.order : next_order_++;
        if (host.is_online) {
            entry.online_since = before != seen_.end() && before->second.online_since != 0
                                     ? before->second.online_since
                                     : now;
        }
        host.shares_port = hosts_at[host.port] > 1;
        host.online_since = entry.online_since;
        host.has_reserved_address = sources.reserved_hosts.contains(mac);
        network.hosts.push_back(host);
    }
    seen_ = std::move(seen);
    std::ranges::sort(network.hosts, {}, [&](const Host &host) { return seen_[host.mac].order; });
    return network;
}

bool Network::is_wan_connected() const
{
    return wan && wan->is_up &&
           ((has_ipv4_route && !wan->ipv4.empty()) || (has_ipv6_route && !wan->ipv6.empty()));
}

const Host *Network::host(const Mac &mac) const
{
    const auto found = std::ranges::find(hosts, mac, &Host::mac);
    return found != hosts.end() ? &*found : nullptr;
}

} // namespace linux_gateway
