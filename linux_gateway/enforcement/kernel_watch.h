// SPDX-License-Identifier: MIT
// What the kernel reports about changes that may concern the own tables and the own queueing root,
// or pass by them.
#pragma once

#include <array>
#include <memory>
#include <string>

struct mnl_socket;

namespace linux_gateway {

struct KernelChanges {
    bool tables = false;      // one of the own tables
    bool flow_tables = false; // of any table
    bool queueing = false;    // of the bridge, or the bridge itself
    bool addresses = false;   // of the gateway
};

class KernelWatch {
  public:
    KernelWatch(); // throws an Error

    std::array<int, 2> descriptors() const;
    // What has been reported since the last call, without waiting. If reports were lost, all of it.
    KernelChanges read(const std::string &lan_bridge);

  private:
    struct Close {
        void operator()(mnl_socket *socket) const;
    };
    using Socket = std::unique_ptr<mnl_socket, Close>;

    Socket filter_;
    Socket route_;
};

} // namespace linux_gateway
