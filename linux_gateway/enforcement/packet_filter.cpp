// SPDX-License-Identifier: MIT
#include "enforcement/packet_filter.h"

#include "system/error.h"

#include <array>
#include <new>
#include <nftables/libnftables.h>
#include <nlohmann/json.hpp>
#include <utility>

using nlohmann::json;

namespace linux_gateway {
namespace {

constexpr char kBlocked[] = "blocked";
constexpr char kOwnIpv4[] = "own_ipv4";
constexpr char kOwnIpv6[] = "own_ipv6";
// Routed packets from hosts are dropped in "inet". There the MAC address of the receiver of a
// packet is not known yet; those to hosts are dropped in "bridge", except what the gateway itself
// sends.
constexpr std::array kFamilies = {"inet", "bridge"};

json table(const char *family)
{
    return {{"table", {{"family", family}, {"name", PacketFilter::kTable}}}};
}

// An object of the table.
json object(const char *kind, const char *family, json fields)
{
    fields["family"] = family;
    fields["table"] = PacketFilter::kTable;
    return {{"add", {{kind, std::move(fields)}}}};
}

json set(const char *family, const char *name, const char *type, json elements)
{
    json fields = {{"name", name}, {"type", type}};
    if (!elements.empty()) {
        fields["elem"] = std::move(elements);
    }
    return object("set", family, std::move(fields));
}

// Before the usual rules of a firewall, which may accept what they see.
json chain(const char *family, const char *hook)
{
    return object("chain", family,
                  {{"name", hook}, {"type", "filter"}, {"hook", hook}, {"prio", -10}});
}

json match(const char *operation, json left, json right)
{
    return {{"match", {{"op", operation}, {"left", std::move(left)}, {"right", std::move(right)}}}};
}

json header(const char *protocol, const char *field)
{
    return {{"payload", {{"protocol", protocol}, {"field", field}}}};
}

json in_set(const char *name)
{
    return std::string("@") + name;
}

json drop_rule(const char *family, const char *chain_name, json matches)
{
    matches.push_back({{"drop", nullptr}});
    return object("rule", family, {{"chain", chain_name}, {"expr", std::move(matches)}});
}

json blocked_hosts(const Blocks &blocks)
{
    json hosts = json::array();
    for (const auto &[mac, seconds] : blocks.hosts) {
        if (seconds) {
            hosts.push_back({{"elem", {{"val", to_text(mac)}, {"timeout", *seconds}}}});
        } else {
            hosts.push_back(to_text(mac));
        }
    }
    return hosts;
}

// What is bridged from host to host comes here as well if br_netfilter is loaded, hence the second
// match.
json rule_for_packets_from_hosts(const Blocks &blocks)
{
    const json meta_in = {{"meta", {{"key", "iifname"}}}};
    const json meta_out = {{"meta", {{"key", "oifname"}}}};
    return drop_rule("inet", "forward",
                     {match("==", meta_in, blocks.lan_bridge),
                      match("!=", meta_out, blocks.lan_bridge),
                      match("==", header("ether", "saddr"), in_set(kBlocked))});
}

json rule_for_packets_to_hosts(json matches_of_source)
{
    json matches = {match("==", header("ether", "daddr"), in_set(kBlocked))};
    matches.insert(matches.end(), matches_of_source.begin(), matches_of_source.end());
    return drop_rule("bridge", "output", std::move(matches));
}

void append_tables(json &commands, const Blocks &blocks)
{
    json own_ipv4 = json::array();
    json own_ipv6 = json::array();
    for (const std::string &address : blocks.own_addresses) {
        (address.find(':') == std::string::npos ? own_ipv4 : own_ipv6).push_back(address);
    }
    for (const char *family : kFamilies) {
        commands.push_back({{"add", table(family)}});
        json hosts = set(family, kBlocked, "ether_addr", blocked_hosts(blocks));
        hosts["add"]["set"]["flags"] = {"timeout"};
        commands.push_back(std::move(hosts));
    }
    commands.push_back(chain("inet", "forward"));
    commands.push_back(rule_for_packets_from_hosts(blocks));

    commands.push_back(set("bridge", kOwnIpv4, "ipv4_addr", std::move(own_ipv4)));
    commands.push_back(set("bridge", kOwnIpv6, "ipv6_addr", std::move(own_ipv6)));
    commands.push_back(chain("bridge", "output"));
    commands.push_back(
        rule_for_packets_to_hosts({match("!=", header("ip", "saddr"), in_set(kOwnIpv4))}));
    // Link-local addresses are never routed.
    const json link_local = {{"prefix", {{"addr", "fe80::"}, {"len", 10}}}};
    commands.push_back(
        rule_for_packets_to_hosts({match("!=", header("ip6", "saddr"), link_local),
                                   match("!=", header("ip6", "saddr"), in_set(kOwnIpv6))}));
}

} // namespace

void PacketFilter::Free::operator()(nft_ctx *context) const
{
    nft_ctx_free(context);
}

PacketFilter::PacketFilter() : context_(nft_ctx_new(NFT_CTX_DEFAULT))
{
    if (!context_) {
        throw std::bad_alloc();
    }
    nft_ctx_buffer_output(context_.get());
    nft_ctx_buffer_error(context_.get());
}

PacketFilter::~PacketFilter() = default;

void PacketFilter::change(json commands)
{
    const std::string text = json{{"nftables", std::move(commands)}}.dump();
    nft_ctx_output_set_flags(context_.get(), NFT_CTX_OUTPUT_JSON);
    if (nft_run_cmd_from_buffer(context_.get(), text.c_str()) != 0) {
        const std::string reason = nft_ctx_get_error_buffer(context_.get());
        throw Error("nftables: " + reason.substr(0, reason.find('\n')));
    }
    nft_ctx_get_output_buffer(context_.get()); // empties it
}

// Not as JSON: there, libnftables 1.0 lists a table with flags wrongly. Without the time that
// elements still have, which changes by itself. Nothing if there is no such table.
std::optional<std::string> PacketFilter::listing_of(const char *family)
{
    const std::string command = std::string("list table ") + family + ' ' + kTable;
    nft_ctx_output_set_flags(context_.get(), NFT_CTX_OUTPUT_STATELESS | NFT_CTX_OUTPUT_HANDLE);
    const int result = nft_run_cmd_from_buffer(context_.get(), command.c_str());
    const char *output = nft_ctx_get_output_buffer(context_.get());
    nft_ctx_get_error_buffer(context_.get()); // empties it
    return result == 0 ? std::optional<std::string>(output) : std::nullopt;
}

// Empty if a table is missing.
std::string PacketFilter::listing()
{
    std::string text;
    for (const char *family : kFamilies) {
        const std::optional<std::string> table = listing_of(family);
        if (!table) {
            return "";
        }
        text += *table;
    }
    return text;
}

void PacketFilter::apply(const Blocks &blocks)
{
    json commands = json::array();
    for (const char *family : kFamilies) {
        // Adding it first makes the deletion succeed even if it is missing.
        if (!blocks.hosts.empty()) {
            commands.push_back({{"add", table(family)}});
            commands.push_back({{"delete", table(family)}});
        } else if (listing_of(family)) {
            commands.push_back({{"delete", table(family)}});
        }
    }
    if (!blocks.hosts.empty()) {
        append_tables(commands, blocks);
    }
    if (!commands.empty()) {
        change(std::move(commands));
    }
    has_tables_ = !blocks.hosts.empty();
    listing_ = has_tables_ ? listing() : "";
}

bool PacketFilter::is_intact()
{
    return !has_tables_ || (!listing_.empty() && listing() == listing_);
}

} // namespace linux_gateway
