// SPDX-License-Identifier: MIT
#include "service/ways_in/http/origin.h"

#include "io/text.h"
#include "service/common/config_error.h"
#include "service/ways_in/http/response.h"

#include <algorithm>
#include <boost/asio/ip/address.hpp>
#include <charconv>
#include <stdexcept>

namespace agent::service {

namespace {

constexpr uint16_t kHttpPort = 80;
constexpr uint16_t kHttpsPort = 443;
constexpr char kLocalhost[] = "localhost";

} // namespace

ListenAddress ListenAddress::parse(const std::string &text)
{
    const auto wrong = [&] {
        return std::runtime_error(in_message(text) + " is not ADDRESS:PORT");
    };
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos) {
        throw wrong();
    }
    ListenAddress address;
    const char *end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data() + colon + 1, end, address.port);
    if (problem != std::errc() || stop != end) {
        throw wrong();
    }
    address.host = text.substr(0, colon);
    const bool has_brackets =
        address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']';
    if (has_brackets) {
        address.host = address.host.substr(1, address.host.size() - 2);
    }
    if (address.host == kLocalhost) {
        address.host = "127.0.0.1";
    }
    boost::system::error_code not_one;
    const auto parsed = boost::asio::ip::make_address(address.host, not_one);
    if (not_one || parsed.is_v6() != has_brackets) {
        throw wrong();
    }
    address.host = parsed.to_string();
    address.is_ipv6 = parsed.is_v6();
    address.is_loopback = parsed.is_loopback();
    return address;
}

std::string ListenAddress::authority() const
{
    return (is_ipv6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

OriginCheck::OriginCheck(bool is_tls, const std::vector<std::string> &names) : is_tls_(is_tls)
{
    for (const std::string &name : names) {
        names_.push_back(lower_case(name));
    }
}

bool OriginCheck::is_own_host(std::string_view host, const ListenAddress &local) const
{
    const std::string port = ":" + std::to_string(local.port);
    std::string name = lower_case(host);
    if (name.ends_with(port)) {
        name.resize(name.size() - port.size());
    } else if (local.port != (is_tls_ ? kHttpsPort : kHttpPort)) {
        return false;
    }
    const std::string literal = local.is_ipv6 ? "[" + local.host + "]" : local.host;
    return name == literal || (local.is_loopback && name == kLocalhost) ||
           std::ranges::find(names_, name) != names_.end();
}

int OriginCheck::status(const HttpRequest &request, const ListenAddress &local) const
{
    const std::string *host = request.find("host");
    if (host == nullptr) {
        return status::kBadRequest;
    }
    if (!is_own_host(*host, local)) {
        return status::kMisdirected;
    }
    const std::string own = (is_tls_ ? "https://" : "http://") + lower_case(*host);
    for (const auto &[name, value] : request.fields) {
        if (name == "origin" && lower_case(value) != own) {
            return status::kForbidden;
        }
        // A browser that says so even where it sends no Origin. A link to the page may be followed.
        if (name == "sec-fetch-site" && request.path.starts_with("/api/") &&
            value != "same-origin" && value != "none") {
            return status::kForbidden;
        }
    }
    return 0;
}

} // namespace agent::service
