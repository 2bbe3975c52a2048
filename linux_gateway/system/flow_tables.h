// SPDX-License-Identifier: MIT
// The flow tables of nftables. Packets of a connection that is in one pass by most rules.
#pragma once

#include <optional>
#include <string>

namespace linux_gateway {

// The name of a flow table in what nftables lists as JSON.
std::optional<std::string> flow_table_in(const std::string &json);
// That of one on this machine.
std::optional<std::string> find_flow_table();

} // namespace linux_gateway
