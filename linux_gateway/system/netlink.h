// SPDX-License-Identifier: MIT
// Questions to the kernel's routing subsystem.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

struct mnl_socket;
struct nlmsghdr;

namespace linux_gateway {

class RouteSocket {
  public:
    // Throws an Error.
    RouteSocket();

    // Calls with each message of the answer to a dump request. The request consists of the type, a
    // header of the type's structure, and, for links, the mask of additional parts. Throws an
    // Error.
    template <class Header>
    void dump(uint16_t type, const Header &header,
              const std::function<void(const nlmsghdr &)> &message)
    {
        dump(type, &header, sizeof(header), message);
    }

  private:
    void dump(uint16_t type, const void *header, size_t size,
              const std::function<void(const nlmsghdr &)> &message);

    struct Close {
        void operator()(mnl_socket *socket) const;
    };
    std::unique_ptr<mnl_socket, Close> socket_;
    uint32_t sequence_ = 0;
};

} // namespace linux_gateway
