// SPDX-License-Identifier: MIT
#include "enforcement/kernel_watch.h"

#include "enforcement/packet_filter.h"
#include "system/error.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <libmnl/libmnl.h>
#include <linux/netfilter/nf_tables.h>
#include <linux/netfilter/nfnetlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <string_view>
#include <system_error>
#include <vector>

namespace linux_gateway {
namespace {

// What a message is compared with, and what it means.
struct Reading {
    unsigned bridge_index = 0;
    std::string bridge_name;
    KernelChanges changes;
};

// Looks for a text among a message's attributes.
struct Wanted {
    int type = 0;
    std::string_view text;
    bool is_found = false;
};

int compare_attribute(const nlattr *attribute, void *data)
{
    auto &wanted = *static_cast<Wanted *>(data);
    if (mnl_attr_get_type(attribute) == wanted.type &&
        mnl_attr_validate(attribute, MNL_TYPE_NUL_STRING) >= 0 &&
        mnl_attr_get_str(attribute) == wanted.text) {
        wanted.is_found = true;
    }
    return MNL_CB_OK;
}

template <class Header> bool has_text(const nlmsghdr *message, int type, std::string_view text)
{
    if (mnl_nlmsg_get_payload_len(message) < sizeof(Header)) {
        return false;
    }
    Wanted wanted{type, text};
    mnl_attr_parse(message, sizeof(Header), compare_attribute, &wanted);
    return wanted.is_found;
}

// In the messages about tables and everything in them, the same attribute is the table's name.
int read_filter_message(const nlmsghdr *message, void *data)
{
    static_assert(NFTA_TABLE_NAME == 1 && NFTA_CHAIN_TABLE == 1 && NFTA_RULE_TABLE == 1 &&
                  NFTA_SET_TABLE == 1 && NFTA_SET_ELEM_LIST_TABLE == 1);
    auto &reading = *static_cast<Reading *>(data);
    const int type = NFNL_MSG_TYPE(message->nlmsg_type);
    if (type == NFT_MSG_NEWFLOWTABLE || type == NFT_MSG_DELFLOWTABLE) {
        reading.changes.flow_tables = true;
    }
    if (type != NFT_MSG_NEWGEN &&
        has_text<nfgenmsg>(message, NFTA_TABLE_NAME, PacketFilter::kTable)) {
        reading.changes.tables = true;
    }
    return MNL_CB_OK;
}

int read_route_message(const nlmsghdr *message, void *data)
{
    auto &reading = *static_cast<Reading *>(data);
    switch (message->nlmsg_type) {
    case RTM_NEWADDR:
    case RTM_DELADDR:
        reading.changes.addresses = true;
        break;
    case RTM_NEWLINK:
        if (has_text<ifinfomsg>(message, IFLA_IFNAME, reading.bridge_name)) {
            reading.changes.queueing = true;
        }
        break;
    case RTM_NEWQDISC:
    case RTM_DELQDISC:
    case RTM_NEWTCLASS:
    case RTM_DELTCLASS:
    case RTM_NEWTFILTER:
    case RTM_DELTFILTER:
        if (mnl_nlmsg_get_payload_len(message) >= sizeof(tcmsg)) {
            const auto *traffic = static_cast<const tcmsg *>(mnl_nlmsg_get_payload(message));
            if (static_cast<unsigned>(traffic->tcm_ifindex) == reading.bridge_index) {
                reading.changes.queueing = true;
            }
        }
        break;
    default:
        break;
    }
    return MNL_CB_OK;
}

mnl_socket *open_socket(int protocol, std::initializer_list<int> groups)
{
    mnl_socket *socket = mnl_socket_open2(protocol, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket == nullptr) {
        return nullptr;
    }
    bool succeeded = mnl_socket_bind(socket, 0, MNL_SOCKET_AUTOPID) == 0;
    for (int group : groups) {
        succeeded = succeeded && mnl_socket_setsockopt(socket, NETLINK_ADD_MEMBERSHIP, &group,
                                                       sizeof(group)) == 0;
    }
    if (!succeeded) {
        mnl_socket_close(socket);
        return nullptr;
    }
    return socket;
}

// Whether reports were lost.
bool read_all(mnl_socket *socket, mnl_cb_t read_message, Reading &reading)
{
    // A report may be as large as a page.
    std::vector<char> buffer(MNL_SOCKET_BUFFER_SIZE);
    for (;;) {
        const ssize_t size = mnl_socket_recvfrom(socket, buffer.data(), buffer.size());
        if (size > 0) {
            mnl_cb_run(buffer.data(), static_cast<size_t>(size), 0, 0, read_message, &reading);
        } else if (size == 0 || errno == EAGAIN) {
            return false;
        } else if (errno != EINTR) {
            return true;
        }
    }
}

} // namespace

void KernelWatch::Close::operator()(mnl_socket *socket) const
{
    mnl_socket_close(socket);
}

KernelWatch::KernelWatch()
    : filter_(open_socket(NETLINK_NETFILTER, {NFNLGRP_NFTABLES})),
      route_(open_socket(NETLINK_ROUTE,
                         {RTNLGRP_TC, RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR}))
{
    if (!filter_ || !route_) {
        throw Error(std::string("changes of the kernel's rules cannot be watched: ") +
                    std::generic_category().message(errno));
    }
}

std::array<int, 2> KernelWatch::descriptors() const
{
    return {mnl_socket_get_fd(filter_.get()), mnl_socket_get_fd(route_.get())};
}

KernelChanges KernelWatch::read(const std::string &lan_bridge)
{
    Reading reading{if_nametoindex(lan_bridge.c_str()), lan_bridge, {}};
    if (read_all(filter_.get(), read_filter_message, reading)) {
        reading.changes.tables = true;
        reading.changes.flow_tables = true;
    }
    if (read_all(route_.get(), read_route_message, reading)) {
        reading.changes.queueing = true;
        reading.changes.addresses = true;
    }
    return reading.changes;
}

} // namespace linux_gateway
