// SPDX-License-Identifier: MIT
// Looks up the identities of peers without blocking the event loop: a directory server that does
// not answer keeps only the clients waiting that it is asked about.
#pragma once

#include "service/ways_in/peer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace agent::service {

class PeerDirectory {
  public:
    using LookUp = std::function<Identity(const Peer &)>;
    struct Times {
        std::chrono::milliseconds kept{60'000};  // how long an identity is used again
        std::chrono::milliseconds limit{10'000}; // of a look-up
    };

    // The look-up is called on other threads, several at a time.
    PeerDirectory(boost::asio::io_context &loop, LookUp look_up, Times times);
    ~PeerDirectory();
    PeerDirectory(const PeerDirectory &) = delete;
    PeerDirectory &operator=(const PeerDirectory &) = delete;

    // Calls back at once if the identity is known. Null: it cannot be found out in time.
    using Done = std::function<void(const std::shared_ptr<const Identity> &who)>;
    void identify(const Peer &peer, Done done);
    // The number of calls that are still to come.
    size_t waiting() const;
    // Makes none of them.
    void forget_waiting();

  private:
    using Clock = std::chrono::steady_clock;
    struct Entry {
        std::shared_ptr<const Identity> who;
        Clock::time_point since;
        bool is_running = false; // its look-up
        std::vector<Done> waiting;
        std::unique_ptr<boost::asio::steady_timer> timer;
    };
    class Link;

    void start(const Peer &peer, Entry &entry);
    void finish(const Peer &peer, Identity who);
    void give_up(const Peer &peer);

    boost::asio::io_context &loop_;
    const LookUp look_up_;
    const Times times_;
    size_t running_ = 0;
    std::map<Peer, Entry> entries_;
    std::shared_ptr<Link> link_; // shared with the threads, which may outlive this object
};

} // namespace agent::service
