// SPDX-License-Identifier: MIT
#include "enforcement/download_limits.h"

#include "system/error.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <linux/if_ether.h>
#include <net/if.h>
#include <netlink/netlink.h>
#include <netlink/route/class.h>
#include <netlink/route/classifier.h>
#include <netlink/route/cls/u32.h>
#include <netlink/route/qdisc.h>
#include <netlink/route/qdisc/fifo.h>
#include <netlink/route/qdisc/htb.h>
#include <new>
#include <optional>

namespace linux_gateway {
namespace {

// Distinguishes the root from one of somebody else.
constexpr uint32_t kRoot = 0x6c670000;

template <auto put> struct Put {
    void operator()(auto *object) const { put(object); }
};
using Qdisc = std::unique_ptr<rtnl_qdisc, Put<rtnl_qdisc_put>>;
using TrafficClass = std::unique_ptr<rtnl_class, Put<rtnl_class_put>>;
using Filter = std::unique_ptr<rtnl_cls, Put<rtnl_cls_put>>;
using Cache = std::unique_ptr<nl_cache, Put<nl_cache_free>>;

void require(int result, const std::string &what)
{
    if (result < 0) {
        throw Error(what + ": " + nl_geterror(result));
    }
}

template <class Object> Object allocated(Object object)
{
    if (!object) {
        throw std::bad_alloc();
    }
    return object;
}

Qdisc make_qdisc(int bridge, uint32_t parent, const char *kind)
{
    auto qdisc = allocated(Qdisc(rtnl_qdisc_alloc()));
    rtnl_tc_set_ifindex(TC_CAST(qdisc.get()), bridge);
    rtnl_tc_set_parent(TC_CAST(qdisc.get()), parent);
    require(rtnl_tc_set_kind(TC_CAST(qdisc.get()), kind), kind);
    return qdisc;
}

TrafficClass make_class(int bridge, uint16_t minor)
{
    auto traffic_class = allocated(TrafficClass(rtnl_class_alloc()));
    rtnl_tc_set_ifindex(TC_CAST(traffic_class.get()), bridge);
    rtnl_tc_set_parent(TC_CAST(traffic_class.get()), kRoot);
    rtnl_tc_set_handle(TC_CAST(traffic_class.get()), kRoot | minor);
    require(rtnl_tc_set_kind(TC_CAST(traffic_class.get()), "htb"), "htb");
    return traffic_class;
}

// Filters are nodes of the kernel's first u32 table. Each has the number of its class, so that it
// can be removed alone.
Filter make_filter(int bridge, uint16_t minor)
{
    constexpr int first_table = 0x800;
    auto filter = allocated(Filter(rtnl_cls_alloc()));
    rtnl_tc_set_ifindex(TC_CAST(filter.get()), bridge);
    rtnl_tc_set_parent(TC_CAST(filter.get()), kRoot);
    require(rtnl_tc_set_kind(TC_CAST(filter.get()), "u32"), "u32");
    rtnl_cls_set_prio(filter.get(), 1);
    rtnl_cls_set_protocol(filter.get(), ETH_P_ALL);
    rtnl_u32_set_handle(filter.get(), first_table, 0, minor);
    return filter;
}

Qdisc root_of(nl_sock *socket, int bridge)
{
    nl_cache *all = nullptr;
    require(rtnl_qdisc_alloc_cache(socket, &all), "the queueing disciplines cannot be listed");
    const Cache cache(all);
    return Qdisc(rtnl_qdisc_get_by_parent(cache.get(), bridge, TC_H_ROOT));
}

bool is_own(rtnl_qdisc *root)
{
    const char *kind = rtnl_tc_get_kind(TC_CAST(root));
    return rtnl_tc_get_handle(TC_CAST(root)) == kRoot && kind != nullptr &&
           std::strcmp(kind, "htb") == 0;
}

// The kernel's own choice has no handle.
bool is_default(rtnl_qdisc *root)
{
    return rtnl_tc_get_handle(TC_CAST(root)) == 0;
}

std::string kind_of(rtnl_qdisc *root)
{
    const char *kind = rtnl_tc_get_kind(TC_CAST(root));
    return kind != nullptr ? kind : "unknown";
}

void remove_own_root(nl_sock *socket, int bridge)
{
    const Qdisc root = root_of(socket, bridge);
    if (root && is_own(root.get())) {
        const Qdisc removed = make_qdisc(bridge, TC_H_ROOT, "htb");
        rtnl_tc_set_handle(TC_CAST(removed.get()), kRoot);
        require(rtnl_qdisc_delete(socket, removed.get()),
                "the own queueing root cannot be removed");
    }
}

void add_root(nl_sock *socket, int bridge, const std::string &name)
{
    const Qdisc present = root_of(socket, bridge);
    if (present && !is_default(present.get())) {
        throw Error(name + " has another program's queueing root (" + kind_of(present.get()) + ")");
    }
    const Qdisc root = make_qdisc(bridge, TC_H_ROOT, "htb");
    rtnl_tc_set_handle(TC_CAST(root.get()), kRoot);
    // What no filter matches is not queued.
    require(rtnl_htb_set_defcls(root.get(), 0), "htb");
    require(rtnl_qdisc_add(socket, root.get(), NLM_F_CREATE | NLM_F_EXCL),
            "the queueing root (htb) cannot be added to " + name);
}

// What a class sends at once after a pause, and the packets that wait for it: long enough for
// timers that are late, short enough for games and calls.
void put_class(nl_sock *socket, int bridge, uint16_t minor, uint64_t limit)
{
    constexpr uint64_t largest_packet = 65536; // packets are cut into frames only later
    const auto rate = static_cast<uint32_t>(
        std::clamp<uint64_t>(limit / 8, 1, std::numeric_limits<uint32_t>::max()));
    const auto burst = static_cast<uint32_t>(std::max<uint64_t>(rate / 50, 3200));
    const auto queue = static_cast<int>(
        std::clamp<uint64_t>(rate / 10, 2 * largest_packet, std::numeric_limits<int>::max()));
    const std::string what = "a download limit cannot be set";

    const TrafficClass traffic_class = make_class(bridge, minor);
    require(rtnl_htb_set_rate(traffic_class.get(), rate), what);
    require(rtnl_htb_set_ceil(traffic_class.get(), rate), what);
    require(rtnl_htb_set_rbuffer(traffic_class.get(), burst), what);
    require(rtnl_htb_set_cbuffer(traffic_class.get(), burst), what);
    require(rtnl_htb_set_quantum(traffic_class.get(), 1514), what);
    require(rtnl_class_add(socket, traffic_class.get(), NLM_F_CREATE), what);

    // With a handle of its own it is changed in place, and listed the same after it was put back.
    constexpr uint32_t first_queue = 0x70000000;
    const Qdisc fifo = make_qdisc(bridge, kRoot | minor, "bfifo");
    rtnl_tc_set_handle(TC_CAST(fifo.get()), first_queue + (static_cast<uint32_t>(minor) << 16));
    require(rtnl_qdisc_fifo_set_limit(fifo.get(), queue), what);
    require(rtnl_qdisc_add(socket, fifo.get(), NLM_F_CREATE | NLM_F_REPLACE), what);
}

// The address of the receiver is before the network header, where offsets of u32 start.
void add_filter(nl_sock *socket, int bridge, uint16_t minor, const Mac &mac)
{
    const std::string what = "the filter of a download limit cannot be set";
    uint16_t first = 0;
    uint32_t last = 0;
    static_assert(sizeof(first) + sizeof(last) == sizeof(mac.bytes));
    std::memcpy(&first, mac.bytes.data(), sizeof(first));
    std::memcpy(&last, mac.bytes.data() + sizeof(first), sizeof(last));

    // libnl aligns keys to four bytes, which these are.
    const Filter filter = make_filter(bridge, minor);
    require(rtnl_u32_add_key_uint16(filter.get(), ntohs(first), 0xffff, -14, 0), what);
    require(rtnl_u32_add_key_uint32(filter.get(), ntohl(last), 0xffffffff, -12, 0), what);
    require(rtnl_u32_set_classid(filter.get(), kRoot | minor), what);
    require(rtnl_u32_set_cls_terminal(filter.get()), what);
    require(rtnl_cls_add(socket, filter.get(), NLM_F_CREATE | NLM_F_EXCL), what);
}

} // namespace

void DownloadLimits::Free::operator()(nl_sock *socket) const
{
    nl_socket_free(socket);
}

nl_sock *DownloadLimits::socket()
{
    if (!socket_) {
        std::unique_ptr<nl_sock, Free> socket(nl_socket_alloc());
        if (!socket) {
            throw std::bad_alloc();
        }
        require(nl_connect(socket.get(), NETLINK_ROUTE), "netlink cannot be opened");
        socket_ = std::move(socket);
    }
    return socket_.get();
}

void DownloadLimits::remove_unlisted(const std::map<Mac, uint64_t> &limits)
{
    for (auto entry = classes_.begin(); entry != classes_.end();) {
        if (limits.contains(entry->first)) {
            ++entry;
            continue;
        }
        const uint16_t minor = entry->second.minor;
        require(rtnl_cls_delete(socket(), make_filter(bridge_index_, minor).get(), 0),
                "the filter of a download limit cannot be removed");
        require(rtnl_class_delete(socket(), make_class(bridge_index_, minor).get()),
                "a download limit cannot be removed");
        used_minors_[minor] = false;
        entry = classes_.erase(entry);
    }
}

uint16_t DownloadLimits::free_minor() const
{
    uint16_t minor = 1;
    while (used_minors_[minor]) {
        ++minor;
    }
    return minor;
}

void DownloadLimits::add_or_change(const Mac &mac, uint64_t limit)
{
    const auto found = classes_.find(mac);
    if (found == classes_.end()) {
        const uint16_t minor = free_minor();
        put_class(socket(), bridge_index_, minor, limit);
        add_filter(socket(), bridge_index_, minor, mac);
        classes_[mac] = {minor, limit};
        used_minors_[minor] = true;
    } else if (found->second.limit != limit) {
        put_class(socket(), bridge_index_, found->second.minor, limit);
        found->second.limit = limit;
    }
}

void DownloadLimits::apply(const std::string &lan_bridge, const std::map<Mac, uint64_t> &limits)
{
    if (limits.size() >= used_minors_.size()) {
        throw Error("there are too many download limits");
    }
    const auto bridge = static_cast<int>(if_nametoindex(lan_bridge.c_str()));
    const bool may_be_kept = bridge != 0 && bridge == bridge_index_ && is_intact();
    bridge_index_ = 0; // until everything has succeeded
    bridge_ = lan_bridge;
    if (bridge == 0) {
        if (!limits.empty()) {
            throw Error("there is no bridge " + lan_bridge + " for download limits");
        }
        return;
    }
    if (limits.empty() || !may_be_kept) {
        classes_.clear();
        used_minors_.reset();
        remove_own_root(socket(), bridge);
    }
    if (limits.empty()) {
        return;
    }
    if (!may_be_kept) {
        add_root(socket(), bridge, lan_bridge);
    }
    bridge_index_ = bridge;
    try {
        remove_unlisted(limits);
        for (const auto &[mac, limit] : limits) {
            add_or_change(mac, limit);
        }
        snapshot_ = snapshot();
    } catch (...) {
        bridge_index_ = 0;
        throw;
    }
}

std::optional<std::string> DownloadLimits::foreign_root(const std::string &lan_bridge)
{
    const auto bridge = static_cast<int>(if_nametoindex(lan_bridge.c_str()));
    const Qdisc root = bridge != 0 ? root_of(socket(), bridge) : nullptr;
    return root && !is_own(root.get()) && !is_default(root.get())
               ? std::optional(kind_of(root.get()))
               : std::nullopt;
}

DownloadLimits::Snapshot DownloadLimits::snapshot()
{
    Snapshot parts;
    const Qdisc root = root_of(socket(), bridge_index_);
    if (!root || !is_own(root.get())) {
        return parts;
    }
    nl_cache *list = nullptr;
    require(rtnl_class_alloc_cache(socket(), bridge_index_, &list), "the classes cannot be listed");
    const Cache classes(list);
    for (nl_object *object = nl_cache_get_first(classes.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto *traffic_class = reinterpret_cast<rtnl_class *>(object);
        parts.push_back(
            {rtnl_tc_get_handle(TC_CAST(traffic_class)), rtnl_htb_get_rate(traffic_class)});
    }
    require(rtnl_cls_alloc_cache(socket(), bridge_index_, kRoot, &list),
            "the filters cannot be listed");
    const Cache filters(list);
    for (nl_object *object = nl_cache_get_first(filters.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto *filter = reinterpret_cast<rtnl_cls *>(object);
        std::vector<uint32_t> part = {rtnl_tc_get_handle(TC_CAST(filter))};
        uint32_t value = 0;
        uint32_t mask = 0;
        int offset = 0;
        int offset_mask = 0;
        for (uint8_t i = 0; rtnl_u32_get_key(filter, i, &value, &mask, &offset, &offset_mask) == 0;
             ++i) {
            part.insert(part.end(), {value, mask, static_cast<uint32_t>(offset)});
        }
        parts.push_back(std::move(part));
    }
    std::ranges::sort(parts);
    return parts;
}

bool DownloadLimits::is_intact()
{
    return bridge_index_ == 0 ||
           (static_cast<int>(if_nametoindex(bridge_.c_str())) == bridge_index_ &&
            snapshot() == snapshot_);
}

} // namespace linux_gateway
