// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/name_lookup.h"

#include <boost/asio/post.hpp>

#include <array>
#include <csignal>
#include <mutex>
#include <netdb.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <utility>

namespace agent::service {

namespace {

struct Found {
    std::vector<std::string> addresses;
    std::string problem;
};

Found look_up(const std::string &host)
{
    addrinfo hints = {};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_ADDRCONFIG;
    addrinfo *list = nullptr;
    const int result = getaddrinfo(host.c_str(), nullptr, &hints, &list);
    Found found;
    if (result != 0) {
        found.problem = gai_strerror(result);
        return found;
    }
    for (const addrinfo *one = list; one != nullptr; one = one->ai_next) {
        std::array<char, NI_MAXHOST> text = {};
        if (getnameinfo(one->ai_addr, one->ai_addrlen, text.data(), text.size(), nullptr, 0,
                        NI_NUMERICHOST) == 0) {
            found.addresses.emplace_back(text.data());
        }
    }
    freeaddrinfo(list);
    if (found.addresses.empty()) {
        found.problem = "it has no address";
    }
    return found;
}

} // namespace

// Belongs to the object and to the thread, which may outlive it.
class NameLookup::Shared : public std::enable_shared_from_this<NameLookup::Shared> {
  public:
    explicit Shared(boost::asio::io_context &loop) : loop_(&loop) {}

    void set_done(Done done) { done_ = std::move(done); }

    void leave()
    {
        done_ = nullptr;
        const std::lock_guard lock(mutex_);
        loop_ = nullptr;
    }

    // On the thread.
    void report(Found found)
    {
        const std::lock_guard lock(mutex_);
        if (loop_ != nullptr) {
            boost::asio::post(*loop_,
                              [self = shared_from_this(), found = std::move(found)]() mutable {
                                  self->finish(std::move(found));
                              });
        }
    }

    void finish(Found found)
    {
        if (const Done done = std::exchange(done_, nullptr)) {
            done(std::move(found.addresses), std::move(found.problem));
        }
    }

  private:
    std::mutex mutex_;
    boost::asio::io_context *loop_; // null once the object has gone
    Done done_;                     // only used on the loop
};

NameLookup::NameLookup(boost::asio::io_context &loop) : shared_(std::make_shared<Shared>(loop)) {}

NameLookup::~NameLookup()
{
    shared_->leave();
}

void NameLookup::start(const std::string &host, Done done)
{
    shared_->set_done(std::move(done));
    // Signals are for the thread of the loop.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread([shared = shared_, host] { shared->report(look_up(host)); }).detach();
    } catch (const std::system_error &) {
        shared_->report({{}, "no thread can be started"});
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace agent::service
