// SPDX-License-Identifier: MIT
// Whether a request was meant for this server. A page of another site runs in the same browser and
// reaches the same addresses: it is recognised by what the browser says of it.
#pragma once

#include "service/ways_in/http/request_reader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace agent::service {

// "127.0.0.1:8080" or "[::1]:8080".
struct ListenAddress {
    std::string host; // without brackets
    uint16_t port = 0;
    bool is_loopback = false;
    bool is_ipv6 = false;

    // Throws std::runtime_error.
    static ListenAddress parse(const std::string &text);
    std::string authority() const; // with brackets and the port
};

class OriginCheck {
  public:
    // names: additional host names without a port.
    OriginCheck(bool is_tls, const std::vector<std::string> &names);

    // local: the address at which the connection arrived. Result: 0, or the status to refuse with.
    // 421: a name that somebody let point here (DNS rebinding); 403: another site.
    int status(const HttpRequest &request, const ListenAddress &local) const;

  private:
    bool is_own_host(std::string_view host, const ListenAddress &local) const;

    bool is_tls_;
    std::vector<std::string> names_;
};

} // namespace agent::service
