// SPDX-License-Identifier: MIT
// The lease file of dnsmasq. Hosts choose their names, so the file contains what any of them likes.
#pragma once

#include "system/mac.h"

#include <string>
#include <string_view>
#include <vector>

namespace linux_gateway {

struct Lease {
    Mac mac;
    std::string ipv4;
    std::string name; // empty if the host gives none
};

// The IPv4 leases of a text; lines that are none are skipped.
std::vector<Lease> parse_leases(std::string_view text);
// Those of a file; none if it cannot be read.
std::vector<Lease> read_leases(const std::string &path);

} // namespace linux_gateway
