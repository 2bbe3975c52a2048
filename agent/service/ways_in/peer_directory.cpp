// SPDX-License-Identifier: MIT
#include "service/ways_in/peer_directory.h"

#include "io/text.h"

#include <boost/asio/post.hpp>

#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace agent::service {

namespace {

constexpr size_t kMostLookUps = 8; // at a time: each has a thread
constexpr size_t kMostKept = 1000;

} // namespace

// From a thread to the event loop, as long as that exists.
class PeerDirectory::Link : public std::enable_shared_from_this<PeerDirectory::Link> {
  public:
    explicit Link(PeerDirectory &directory) : directory_(&directory) {}

    void cut()
    {
        const std::lock_guard lock(mutex_);
        directory_ = nullptr;
    }

    void hand_over(const Peer &peer, Identity who)
    {
        const std::lock_guard lock(mutex_);
        if (directory_ != nullptr) {
            boost::asio::post(directory_->loop_,
                              [self = shared_from_this(), peer, who = std::move(who)] {
                                  if (self->directory_ != nullptr) {
                                      self->directory_->finish(peer, who);
                                  }
                              });
        }
    }

  private:
    std::mutex mutex_;
    PeerDirectory *directory_; // changed on the event loop's thread only
};

PeerDirectory::PeerDirectory(boost::asio::io_context &loop, LookUp look_up, Times times)
    : loop_(loop), look_up_(std::move(look_up)), times_(times), link_(std::make_shared<Link>(*this))
{
}

PeerDirectory::~PeerDirectory()
{
    link_->cut();
}

void PeerDirectory::identify(const Peer &peer, Done done)
{
    if (entries_.size() >= kMostKept && !entries_.contains(peer)) {
        std::erase_if(entries_, [](const auto &entry) { return !entry.second.is_running; });
    }
    Entry &entry = entries_[peer];
    if (entry.who != nullptr && Clock::now() - entry.since < times_.kept) {
        const auto who = entry.who;
        done(who);
        return;
    }
    if (!entry.is_running) {
        start(peer, entry);
    }
    if (entry.timer == nullptr) { // no thread for it, or it has been given up
        done(nullptr);
    } else {
        entry.waiting.push_back(std::move(done));
    }
}

void PeerDirectory::start(const Peer &peer, Entry &entry)
{
    if (running_ >= kMostLookUps) {
        return;
    }
    // Signals are handled by the event loop's thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    try {
        std::thread([link = link_, look_up = look_up_, peer] {
            link->hand_over(peer, look_up(peer));
        }).detach();
        entry.is_running = true;
        ++running_;
    } catch (const std::system_error &problem) {
        print_error(std::string("cannot look up a client: ") + problem.what());
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (entry.is_running) {
        entry.timer = std::make_unique<boost::asio::steady_timer>(loop_, times_.limit);
        entry.timer->async_wait([this, peer](const boost::system::error_code &problem) {
            if (!problem) {
                give_up(peer);
            }
        });
    }
}

void PeerDirectory::finish(const Peer &peer, Identity who)
{
    --running_;
    Entry &entry = entries_[peer];
    entry.is_running = false;
    entry.timer.reset();
    entry.who = std::make_shared<const Identity>(std::move(who));
    entry.since = Clock::now();
    const auto found = entry.who;
    for (const Done &done : std::exchange(entry.waiting, {})) {
        done(found);
    }
}

void PeerDirectory::give_up(const Peer &peer)
{
    Entry &entry = entries_[peer];
    if (entry.timer == nullptr) {
        return; // it has just finished
    }
    print_error("the names of user " + std::to_string(peer.user) +
                " and of its groups have not been found in time");
    entry.timer.reset();
    for (const Done &done : std::exchange(entry.waiting, {})) {
        done(nullptr);
    }
}

size_t PeerDirectory::waiting() const
{
    size_t count = 0;
    for (const auto &[peer, entry] : entries_) {
        count += entry.waiting.size();
    }
    return count;
}

void PeerDirectory::forget_waiting()
{
    for (auto &[peer, entry] : entries_) {
        entry.waiting.clear();
    }
}

} // namespace agent::service
