// SPDX-License-Identifier: MIT
#include "system/netlink.h"

#include "system/error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <libmnl/libmnl.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <system_error>
#include <vector>

namespace linux_gateway {

[[noreturn]] static void throw_netlink_error(const char *what)
{
    throw Error(std::string("the kernel's network settings cannot be read: ") + what + ": " +
                std::generic_category().message(errno));
}

// An answer during which something has changed is marked as interrupted, and libmnl would stop
// reading it. It is complete enough: the next snapshot follows within a second.
static void clear_interruption(char *messages, size_t size)
{
    auto left = static_cast<int>(size);
    for (auto *message = reinterpret_cast<nlmsghdr *>(messages); mnl_nlmsg_ok(message, left);
         message = mnl_nlmsg_next(message, &left)) {
        message->nlmsg_flags &= static_cast<uint16_t>(~NLM_F_DUMP_INTR);
    }
}

void RouteSocket::Close::operator()(mnl_socket *socket) const
{
    mnl_socket_close(socket);
}

RouteSocket::RouteSocket() : socket_(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC))
{
    if (socket_ == nullptr || mnl_socket_bind(socket_.get(), 0, MNL_SOCKET_AUTOPID) < 0) {
        throw_netlink_error("no netlink socket");
    }
    // The kernel answers within the call; the time limit is for one that does not.
    constexpr timeval patience = {5, 0};
    setsockopt(mnl_socket_get_fd(socket_.get()), SOL_SOCKET, SO_RCVTIMEO, &patience,
               sizeof(patience));
}

void RouteSocket::dump(uint16_t type, const void *header, size_t size,
                       const std::function<void(const nlmsghdr &)> &message)
{
    alignas(nlmsghdr) char request[128] = {};
    nlmsghdr *const sent = mnl_nlmsg_put_header(request);
    sent->nlmsg_type = type;
    sent->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    sent->nlmsg_seq = ++sequence_;
    memcpy(mnl_nlmsg_put_extra_header(sent, size), header, size);
    if (mnl_socket_sendto(socket_.get(), sent, sent->nlmsg_len) < 0) {
        throw_netlink_error("request");
    }

    std::vector<char> answer(size_t{64} << 10);
    const uint32_t port = mnl_socket_get_portid(socket_.get());
    // libmnl is in C, so no exception may leave the function that it calls.
    struct Taker {
        const std::function<void(const nlmsghdr &)> &message;
        std::exception_ptr problem;
    };
    Taker taker = {message, nullptr};
    const auto take = [](const nlmsghdr *received, void *data) {
        auto &self = *static_cast<Taker *>(data);
        try {
            self.message(*received);
        } catch (...) {
            self.problem = std::current_exception();
            return MNL_CB_STOP;
        }
        return MNL_CB_OK;
    };
    int result = MNL_CB_OK;
    while (result == MNL_CB_OK) {
        const ssize_t length = mnl_socket_recvfrom(socket_.get(), answer.data(), answer.size());
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length < 0) {
            throw_netlink_error("answer");
        }
        clear_interruption(answer.data(), static_cast<size_t>(length));
        result =
            mnl_cb_run(answer.data(), static_cast<size_t>(length), sequence_, port, take, &taker);
        if (taker.problem != nullptr) {
            std::rethrow_exception(taker.problem);
        }
    }
    if (result == MNL_CB_ERROR) {
        throw_netlink_error("answer");
    }
}

} // namespace linux_gateway
