// SPDX-License-Identifier: MIT
#include "system/probes.h"

#include "system/error.h"
#include "system/files.h"
#include "system/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <netdb.h>
#include <netinet/icmp6.h>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <optional>
#include <poll.h>
#include <span>
#include <sys/random.h>
#include <sys/socket.h>
#include <system_error>

namespace linux_gateway {
namespace {

using Clock = std::chrono::steady_clock;

struct SocketAddress {
    sockaddr_storage storage = {};
    socklen_t size = 0;

    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&storage); }
};

// Names are not resolved: that could take long, and would check more than the address.
std::optional<SocketAddress> numeric_address(const std::string &text, const char *port)
{
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(text.c_str(), port, &hints, &found) != 0) {
        return std::nullopt;
    }
    SocketAddress address;
    memcpy(&address.storage, found->ai_addr, found->ai_addrlen);
    address.size = found->ai_addrlen;
    freeaddrinfo(found);
    return address;
}

bool is_readable_until(int fd, Clock::time_point end)
{
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting = {fd, POLLIN, 0};
        const int result = left > 0 ? poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (result >= 0 || errno != EINTR) {
            return result > 0;
        }
    }
}

// A number that nobody else on the network can guess.
template <class Number> Number random_number()
{
    Number number;
    if (getrandom(&number, sizeof(number), 0) != sizeof(number)) {
        throw Error("no random numbers: " + std::generic_category().message(errno));
    }
    return number;
}

uint16_t checksum(std::span<const uint8_t> data)
{
    uint32_t sum = 0;
    for (size_t i = 0; i + 1 < data.size(); i += 2) {
        sum += static_cast<uint32_t>(data[i] << 8 | data[i + 1]);
    }
    sum = (sum >> 16) + (sum & 0xffff);
    sum += sum >> 16;
    return htons(static_cast<uint16_t>(~sum));
}

// An echo request or reply, the same for IPv4 and IPv6 except for the type.
struct Echo {
    uint8_t type = 0;
    uint8_t code = 0;
    uint16_t checksum = 0; // the kernel fills it for IPv6
    uint16_t identifier = 0;
    uint16_t sequence = 0;
    std::array<uint8_t, 16> data = {};
};

// Sends a request and waits for its answer.
bool is_echoed(int fd, const SocketAddress &target, Echo echo, bool is_raw, Clock::time_point end)
{
    const bool is_ipv6 = target.storage.ss_family == AF_INET6;
    echo.type = is_ipv6 ? ICMP6_ECHO_REQUEST : ICMP_ECHO;
    if (!is_ipv6) {
        echo.checksum = checksum({reinterpret_cast<const uint8_t *>(&echo), sizeof(echo)});
    }
    if (send(fd, &echo, sizeof(echo), MSG_NOSIGNAL) != sizeof(echo)) {
        return false;
    }
    const uint8_t wanted = is_ipv6 ? ICMP6_ECHO_REPLY : ICMP_ECHOREPLY;
    while (is_readable_until(fd, end)) {
        std::array<uint8_t, 1024> packet;
        const ssize_t received = recv(fd, packet.data(), packet.size(), MSG_DONTWAIT);
        if (received < 0) {
            return false; // such as "host unreachable"
        }
        std::span<const uint8_t> message(packet.data(), static_cast<size_t>(received));
        if (is_raw && !is_ipv6) { // a raw socket for IPv4 also delivers the header
            const size_t header = message.empty() ? 0 : (message[0] & 0xf) * size_t{4};
            message = message.subspan(std::min(header, message.size()));
        }
        Echo answer;
        if (message.size() < sizeof(answer)) {
            continue;
        }
        memcpy(&answer, message.data(), sizeof(answer));
        if (answer.type == wanted && answer.sequence == echo.sequence && answer.data == echo.data &&
            (!is_raw || answer.identifier == echo.identifier)) {
            return true;
        }
    }
    return false;
}

} // namespace

void ping(const std::string &address)
{
    const std::optional<SocketAddress> target = numeric_address(address, nullptr);
    if (!target) {
        throw Error(in_quotes(address) + " is not an IP address");
    }
    const int family = target->storage.ss_family;
    const int protocol = family == AF_INET6 ? static_cast<int>(IPPROTO_ICMPV6) : IPPROTO_ICMP;
    // With the capability, else as far as the system allows it to everybody.
    bool is_raw = true;
    FileDescriptor socket_file(socket(family, SOCK_RAW | SOCK_CLOEXEC, protocol));
    if (socket_file.get() < 0) {
        is_raw = false;
        socket_file = FileDescriptor(socket(family, SOCK_DGRAM | SOCK_CLOEXEC, protocol));
    }
    if (socket_file.get() < 0) {
        throw Error("no echo requests may be sent: " + std::generic_category().message(errno));
    }
    // Connected, the socket receives only what comes from the target.
    if (connect(socket_file.get(), target->get(), target->size) != 0) {
        throw Error(address + " cannot be reached: " + std::generic_category().message(errno));
    }
    Echo echo;
    echo.identifier = random_number<uint16_t>();
    echo.data = random_number<decltype(echo.data)>();
    constexpr int attempts = 2;
    constexpr std::chrono::seconds patience{1};
    for (int i = 0; i < attempts; ++i) {
        const Clock::time_point end = Clock::now() + patience;
        echo.sequence = htons(static_cast<uint16_t>(i + 1));
        if (is_echoed(socket_file.get(), *target, echo, is_raw, end)) {
            return;
        }
    }
    throw Error(address + " does not answer");
}

bool does_name_server_answer(const std::vector<std::string> &servers)
{
    constexpr size_t most_servers = 2;
    constexpr std::chrono::seconds patience{2};
    const Clock::time_point end = Clock::now() + patience;
    std::vector<FileDescriptor> sockets;
    // A question for the name servers of the root, which every server can answer.
    std::array<uint8_t, 17> question = {0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 1};
    const uint16_t identifier = random_number<uint16_t>();
    memcpy(question.data(), &identifier, sizeof(identifier));
    for (const std::string &server : servers) {
        const std::optional<SocketAddress> address = numeric_address(server, "53");
        if (!address || sockets.size() == most_servers) {
            continue;
        }
        FileDescriptor asked(socket(address->storage.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
        if (asked.get() >= 0 && connect(asked.get(), address->get(), address->size) == 0 &&
            send(asked.get(), question.data(), question.size(), MSG_NOSIGNAL) > 0) {
            sockets.push_back(std::move(asked));
        }
    }
    std::vector<pollfd> waiting;
    waiting.reserve(sockets.size());
    for (const FileDescriptor &asked : sockets) {
        waiting.push_back({asked.get(), POLLIN, 0});
    }
    while (!waiting.empty()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        const int ready =
            left > 0 ? poll(waiting.data(), waiting.size(), static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            break;
        }
        for (pollfd &entry : waiting) {
            std::array<uint8_t, 512> answer;
            if (entry.revents == 0) {
                continue;
            }
            const ssize_t received = recv(entry.fd, answer.data(), answer.size(), MSG_DONTWAIT);
            if (received >= 12 && memcmp(answer.data(), &identifier, sizeof(identifier)) == 0 &&
                (answer[2] & 0x80) != 0) {
                return true;
            }
            if (received < 0) {
                entry.fd = -1; // refused
            }
        }
        if (std::ranges::all_of(waiting, [](const pollfd &entry) { return entry.fd < 0; })) {
            break;
        }
    }
    return false;
}

std::vector<std::string> name_servers_in(const std::string &text)
{
    std::vector<std::string> servers;
    constexpr size_t most_servers = 8;
    for (const std::string_view line : split(text, '\n')) {
        const std::vector<std::string_view> words = words_of(line);
        if (words.size() > 1 && words[0] == "nameserver" && servers.size() < most_servers &&
            numeric_address(std::string(words[1]), nullptr)) {
            servers.emplace_back(words[1]);
        }
    }
    return servers;
}

} // namespace linux_gateway
