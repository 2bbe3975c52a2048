// SPDX-License-Identifier: MIT
// The flow tables of nftables. Packets of a connection that is in one pass by most rules.
#pragma once

#include <set>
#include <string>

namespace linux_gateway {

// The flow tables in what nftables lists as JSON: "NAME (table FAMILY TABLE)".
std::set<std::string> flow_tables_in(const std::string &json);
// Those on this machine.
std::set<std::string> find_flow_tables();
// What one does, and what to do about it.
std::string flow_table_sentence(const std::string &flow_table);

} // namespace linux_gateway
