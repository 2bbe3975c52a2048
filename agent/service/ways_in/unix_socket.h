// SPDX-License-Identifier: MIT
// JSON lines over a Unix socket: any number of clients, each identified by the kernel.
#pragma once

#include "service/gate/gate.h"
#include "service/ways_in/peer_directory.h"
#include "service/ways_in/way_in.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>

namespace agent::service {

struct SocketLimits {
    size_t clients = 256;
    size_t line = 1024UL * 1024;       // bytes of a request
    size_t pending = 1024UL * 1024;    // bytes of answers that a client has not read
    std::chrono::milliseconds idle{0}; // zero: no limit
};

// How the socket is created; ignored for a socket passed by systemd.
struct SocketOptions {
    std::string path;
    std::string group; // empty: the service's group
    mode_t mode = 0600;
};

class SocketConnection;

class UnixSocket : public WayIn {
  public:
    UnixSocket(boost::asio::io_context &loop, Gate &gate, const SocketLimits &limits);
    ~UnixSocket() override; // NOLINT(bugprone-exception-escape): as there

    // Throws std::runtime_error, also when a process is listening at the path.
    void listen(const SocketOptions &options);
    void take_over(int descriptor);
    void set_limits(const SocketLimits &limits) { limits_ = limits; }
    const SocketLimits &limits() const { return limits_; }
    const std::string &path() const { return path_; }

    // The socket exists until the destruction of this object.
    void stop_accepting() override;
    void on_empty(std::function<void()> done) override;

  private:
    friend class SocketConnection;

    void wait_for_client();
    void accept();
    bool turn_away_one();
    void open(int descriptor);
    void start(int descriptor, const std::shared_ptr<const Identity> &who);
    void remove_path() const;
    void pause();
    void look_for_idle();
    void remove(const std::shared_ptr<SocketConnection> &connection);

    boost::asio::io_context &loop_;
    Gate &gate_;
    SocketLimits limits_;
    std::string path_;
    // Of the path, if created here, to be removed at the end. It is held open: otherwise another
    // file could get its number.
    int own_ = -1;
    std::optional<boost::asio::posix::stream_descriptor> listener_;
    int spare_ = -1; // closed to accept and reject a client when no descriptors are left
    boost::asio::steady_timer pause_;
    boost::asio::steady_timer idle_;
    PeerDirectory peers_;
    std::set<std::shared_ptr<SocketConnection>> connections_;
    std::function<void()> on_empty_;
};

} // namespace agent::service
