// SPDX-License-Identifier: MIT
#include "system/leases.h"

#include "system/files.h"
#include "system/text.h"

#include <arpa/inet.h>
#include <optional>

namespace linux_gateway {

constexpr size_t kMostLeaseBytes = 1 << 20;
constexpr size_t kMostNameBytes = 255;

std::vector<Lease> parse_leases(std::string_view text)
{
    std::vector<Lease> leases;
    for (const std::string_view line : split(text, '\n')) {
        // Time of expiry, MAC address, IP address, name or "*", and the client's identifier. Lines
        // for IPv6 have an identifier instead of the MAC address.
        const std::vector<std::string_view> words = words_of(line);
        constexpr size_t least_words = 4;
        if (words.size() < least_words) {
            continue;
        }
        const std::optional<Mac> mac = parse_mac(words[1]);
        const std::string ipv4(words[2]);
        in_addr address = {};
        if (!mac || inet_pton(AF_INET, ipv4.c_str(), &address) != 1) {
            continue;
        }
        const std::string_view name = words[3] == "*" ? std::string_view() : words[3];
        leases.push_back({*mac, ipv4, printable(name.substr(0, kMostNameBytes))});
    }
    return leases;
}

std::vector<Lease> read_leases(const std::string &path)
{
    return parse_leases(read_file_if_there(path, kMostLeaseBytes).value_or(""));
}

} // namespace linux_gateway
