// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/broker_address.h"

#include <boost/asio/ip/address.hpp>

#include <charconv>
#include <stdexcept>

namespace agent::service {

namespace {

constexpr std::string_view kPlain = "mqtt://";
constexpr std::string_view kTls = "mqtts://";
constexpr uint16_t kPlainPort = 1883;
constexpr uint16_t kTlsPort = 8883;
constexpr size_t kMaxHost = 253; // of a domain name
constexpr std::string_view kHostLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_";

uint16_t parse_port(std::string_view text)
{
    uint16_t port = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (problem != std::errc() || end != text.data() + text.size() || port == 0) {
        throw std::invalid_argument("the port has to be from 1 to 65535");
    }
    return port;
}

// Splits HOST[:PORT] or [ADDRESS][:PORT].
void read_host(std::string_view text, BrokerAddress &broker)
{
    std::string_view port;
    if (text.starts_with('[')) {
        const size_t end = text.find(']');
        if (end == std::string_view::npos) {
            throw std::invalid_argument("the bracket is not closed");
        }
        broker.host = text.substr(1, end - 1);
        port = text.substr(end + 1);
        boost::system::error_code problem;
        boost::asio::ip::make_address_v6(broker.host, problem);
        if (problem) {
            throw std::invalid_argument("there is no IPv6 address in the brackets");
        }
    } else {
        broker.host = text.substr(0, text.find(':'));
        port = text.substr(broker.host.size());
        if (broker.host.empty() || broker.host.size() > kMaxHost ||
            broker.host.find_first_not_of(kHostLetters) != std::string::npos) {
            throw std::invalid_argument("there is no host name or address in it");
        }
    }
    if (!port.empty()) {
        if (port.front() != ':') {
            throw std::invalid_argument("only a port may follow the host");
        }
        broker.port = parse_port(port.substr(1));
    }
}

} // namespace

std::string BrokerAddress::url() const
{
    const bool is_v6 = host.find(':') != std::string::npos;
    return std::string(is_tls ? kTls : kPlain) + (is_v6 ? "[" + host + "]" : host) + ":" +
           std::to_string(port);
}

bool BrokerAddress::is_local() const
{
    return host == "localhost" || is_loopback_address(host);
}

BrokerAddress parse_broker(std::string_view url)
{
    BrokerAddress broker;
    broker.is_tls = url.starts_with(kTls);
    if (!broker.is_tls && !url.starts_with(kPlain)) {
        throw std::invalid_argument("it has to be mqtt://HOST[:PORT] or mqtts://HOST[:PORT]");
    }
    broker.port = broker.is_tls ? kTlsPort : kPlainPort;
    read_host(url.substr(broker.is_tls ? kTls.size() : kPlain.size()), broker);
    return broker;
}

bool is_address(const std::string &host)
{
    boost::system::error_code problem;
    boost::asio::ip::make_address(host, problem);
    return !problem;
}

bool is_loopback_address(const std::string &address)
{
    boost::system::error_code problem;
    const auto parsed = boost::asio::ip::make_address(address, problem);
    return !problem && parsed.is_loopback();
}

} // namespace agent::service
