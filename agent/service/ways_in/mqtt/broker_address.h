// SPDX-License-Identifier: MIT
// The address of a broker: mqtt://HOST[:PORT], or mqtts:// for TLS.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace agent::service {

struct BrokerAddress {
    bool is_tls = false;
    std::string host; // a name or an address; that of IPv6 without brackets
    uint16_t port = 0;

    std::string url() const; // always with the port
    // Whether the address is certainly of this machine. What "localhost" resolves to is checked
    // again before the connection.
    bool is_local() const;
};

// Throws std::invalid_argument, which says what is wrong.
BrokerAddress parse_broker(std::string_view url);

// Whether the text is an address rather than a name.
bool is_address(const std::string &host);
bool is_loopback_address(const std::string &address);

} // namespace agent::service
