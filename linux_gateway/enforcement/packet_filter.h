// SPDX-License-Identifier: MIT
// The tables in nftables that keep hosts from the Internet. Hosts are recognised by their MAC
// address, so that all their IP addresses are covered. What they exchange with the gateway itself
// (DHCP, DNS) and with each other passes.
#pragma once

#include "system/mac.h"

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>
#include <string>

struct nft_ctx;

namespace linux_gateway {

struct Blocks {
    std::string lan_bridge;
    // With a number of seconds, the kernel itself ends the block after that time.
    std::map<Mac, std::optional<int64_t>> hosts;
    std::set<std::string> own_addresses; // of the gateway, IPv4 and IPv6
};

class PacketFilter {
  public:
    static constexpr char kTable[] = "linux_gateway"; // the name of the tables

    PacketFilter();
    ~PacketFilter();
    PacketFilter(const PacketFilter &) = delete;
    PacketFilter &operator=(const PacketFilter &) = delete;

    // Replaces what is blocked, in one transaction. Without hosts the tables are removed, even
    // those that another process has left. Throws an Error, and then nothing has changed.
    void apply(const Blocks &blocks);

    // Whether the tables are as apply() left them.
    bool is_intact();

  private:
    void change(nlohmann::json commands);
    std::optional<std::string> listing_of(const char *family);
    std::string listing();

    struct Free {
        void operator()(nft_ctx *context) const;
    };
    std::unique_ptr<nft_ctx, Free> context_;
    bool has_tables_ = false;
    std::string listing_; // of the tables, as apply() left them
};

} // namespace linux_gateway
