// SPDX-License-Identifier: MIT
// Limits of what hosts receive: a queueing root of its own on the LAN bridge, with a class for each
// limited host. Hosts are recognised by their MAC address, so that IPv4 and IPv6 share a limit.
#pragma once

#include "system/mac.h"

#include <bitset>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct nl_sock;

namespace linux_gateway {

class DownloadLimits {
  public:
    // Replaces the limits, in bits per second. Without limits the root is removed, even one that
    // another process has left. Throws an Error; the limits are undefined until the next success.
    void apply(const std::string &lan_bridge, const std::map<Mac, uint64_t> &limits);

    // The kind of a queueing root that another program has given the bridge. Throws an Error.
    std::optional<std::string> foreign_root(const std::string &lan_bridge);

    // Whether root, classes and filters are as apply() left them.
    bool is_intact();

  private:
    struct Class {
        uint16_t minor = 0;
        uint64_t limit = 0;
    };
    struct Free {
        void operator()(nl_sock *socket) const;
    };
    using Snapshot = std::vector<std::vector<uint32_t>>;

    nl_sock *socket();
    void remove_unlisted(const std::map<Mac, uint64_t> &limits);
    void add_or_change(const Mac &mac, uint64_t limit);
    uint16_t free_minor() const;
    Snapshot snapshot();

    std::unique_ptr<nl_sock, Free> socket_;
    std::string bridge_;
    int bridge_index_ = 0; // of the bridge that has the root; 0 if none has
    std::map<Mac, Class> classes_;
    std::bitset<4096> used_minors_; // a node of u32 has twelve bits, and 0 is none
    Snapshot snapshot_;
};

} // namespace linux_gateway
