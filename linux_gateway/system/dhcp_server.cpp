// SPDX-License-Identifier: MIT
#include "system/dhcp_server.h"

#include "system/files.h"
#include "system/text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace linux_gateway {
namespace {

constexpr size_t kMostFileBytes = 1 << 20;
constexpr size_t kMostFiles = 64;

std::optional<uint32_t> ipv4_of(std::string_view text)
{
    in_addr address = {};
    return inet_pton(AF_INET, std::string(text).c_str(), &address) == 1
               ? std::optional(ntohl(address.s_addr))
               : std::nullopt;
}

uint32_t mask_bits(int prefix_length)
{
    return prefix_length <= 0 ? 0 : UINT32_MAX << (32 - std::min(prefix_length, 32));
}

// The files of a folder in the order of their names, as dnsmasq takes them: without hidden ones and
// without what editors and the package manager leave.
std::vector<std::string> files_in(const std::string &folder)
{
    std::vector<std::string> files;
    std::error_code none;
    for (std::filesystem::directory_iterator entry(folder, none), end; !none && entry != end;
         entry.increment(none)) {
        const std::string name = entry->path().filename();
        const bool is_left_over = name.starts_with('.') || name.ends_with('~') ||
                                  (name.starts_with('#') && name.ends_with('#')) ||
                                  name.find(".dpkg-") != std::string::npos;
        if (!is_left_over && files.size() < kMostFiles) {
            files.push_back(entry->path());
        }
    }
    std::ranges::sort(files);
    return files;
}

} // namespace

const DhcpServer::Range *DhcpServer::range_in(const std::string &address, int prefix_length) const
{
    const std::optional<uint32_t> own = ipv4_of(address);
    const auto found = std::ranges::find_if(ranges, [&](const Range &range) {
        const std::optional<uint32_t> start = ipv4_of(range.start);
        return own && start && ((*own ^ *start) & mask_bits(prefix_length)) == 0;
    });
    return found != ranges.end() ? &*found : nullptr;
}

std::vector<std::string> add_dhcp_settings(DhcpServer &server, std::string_view text)
{
    std::vector<std::string> named;
    for (std::string_view line : split(text, '\n')) {
        line = trimmed(line.substr(0, line.find('#')));
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            continue;
        }
        const std::string_view name = trimmed(line.substr(0, equals));
        std::vector<std::string_view> values = split(line.substr(equals + 1), ',');
        std::ranges::transform(values, values.begin(), trimmed);
        if (name == "dhcp-range") {
            // Tags and an interface may precede the addresses.
            const auto start = std::ranges::find_if(
                values, [](std::string_view value) { return ipv4_of(value).has_value(); });
            if (start != values.end() && start + 1 != values.end() && ipv4_of(start[1])) {
                server.ranges.push_back({std::string(start[0]), std::string(start[1])});
            }
        } else if (name == "dhcp-option") {
            const auto option = std::ranges::find_if(values, [](std::string_view value) {
                return value == "3" || value == "option:router";
            });
            if (option != values.end() && option + 1 != values.end() && ipv4_of(option[1])) {
                server.router = option[1] == "0.0.0.0" ? "" : option[1];
            }
        } else if (name == "dhcp-host") {
            const bool has_address = std::ranges::any_of(
                values, [](std::string_view value) { return ipv4_of(value).has_value(); });
            for (const std::string_view value : values) {
                const std::optional<Mac> mac = parse_mac(value);
                if (mac && has_address) {
                    server.reserved_hosts.insert(*mac);
                }
            }
        } else if (name == "dhcp-leasefile" || name == "dhcp-lease-file") {
            server.lease_file = values.front();
        } else if (name == "conf-file" || name == "conf-dir") {
            named.emplace_back(values.front()); // filters of a folder may follow
        }
    }
    return named;
}

DhcpServer read_dhcp_server(const std::vector<std::string> &paths)
{
    DhcpServer server;
    std::vector<std::string> waiting(paths.rbegin(), paths.rend());
    std::set<std::string> seen;
    while (!waiting.empty() && seen.size() < kMostFiles) {
        const std::string path = std::move(waiting.back());
        waiting.pop_back();
        if (!seen.insert(path).second) {
            continue;
        }
        std::vector<std::string> next;
        if (const std::optional<std::string> text = read_file_if_there(path, kMostFileBytes)) {
            next = add_dhcp_settings(server, *text);
        } else {
            next = files_in(path);
        }
        waiting.insert(waiting.end(), next.rbegin(), next.rend());
    }
    return server;
}

bool is_dhcp_server_running()
{
    // The second column is the local address, as hexadecimal numbers.
    const std::string sockets =
        read_file_if_there("/proc/self/net/udp", kMostFileBytes).value_or("");
    return std::ranges::any_of(split(sockets, '\n'), [](std::string_view line) {
        const std::vector<std::string_view> columns = words_of(line);
        return columns.size() > 1 && columns[1].ends_with(":0043");
    });
}

std::string mask_of(int prefix_length)
{
    const in_addr mask = {htonl(mask_bits(prefix_length))};
    char text[INET_ADDRSTRLEN] = "";
    return inet_ntop(AF_INET, &mask, text, sizeof(text)) != nullptr ? text : "";
}

} // namespace linux_gateway
