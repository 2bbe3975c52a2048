// SPDX-License-Identifier: MIT
// Attempts to reach something over the network. Each is bounded in time.
#pragma once

#include <string>
#include <vector>

namespace linux_gateway {

// Whether an IPv4 or IPv6 address answers to an echo request within two seconds. Throws an Error if
// the text is no address, or if no request can be sent.
void ping(const std::string &address);

// Whether one of the first name servers answers, whatever it answers, within two seconds.
bool does_name_server_answer(const std::vector<std::string> &servers);

// The name servers in the text of a resolv.conf.
std::vector<std::string> name_servers_in(const std::string &text);

} // namespace linux_gateway
