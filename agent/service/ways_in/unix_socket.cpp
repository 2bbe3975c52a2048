// SPDX-License-Identifier: MIT
#include "service/ways_in/unix_socket.h"

#include "service/common/line_stream.h"
#include "service/common/sockets.h"
#include "service/ways_in/peer.h"

#include <boost/asio/post.hpp>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace agent::service {

namespace {

using boost::asio::posix::stream_descriptor;
using Clock = std::chrono::steady_clock;

constexpr int kBacklog = 128;
constexpr int kMostAtOnce = 16; // clients accepted in a row before other work
constexpr std::chrono::milliseconds kAcceptAgain(100);
constexpr std::chrono::milliseconds kShortestLook(10);
constexpr std::chrono::milliseconds kLongestLook(10'000);

// Held while a socket is created, so that of two services that start at the same time neither takes
// the other's socket for a stale one.
class FolderLock {
  public:
    explicit FolderLock(const std::string &path)
        : folder_(open(folder_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (folder_.get() < 0 || flock(folder_.get(), LOCK_EX) != 0) {
            throw std::runtime_error(system_problem("cannot use the folder of " + path));
        }
    }

  private:
    static std::string folder_of(const std::string &path)
    {
        const auto folder = std::filesystem::path(path).parent_path();
        return folder.empty() ? "." : folder.string();
    }

    const Descriptor folder_;
};

// Removes a stale socket, which refuses connections. Anything else is kept.
void remove_stale(const std::string &path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISSOCK(status.st_mode)) {
        throw std::runtime_error(path + " is there already, and is no socket");
    }
    const sockaddr_un address = address_of(path);
    const Descriptor probe(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (connect(probe.get(), reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0 ||
        errno != ECONNREFUSED) {
        throw std::runtime_error("somebody answers at " + path + " already");
    }
    unlink(path.c_str());
}

void give_away(const SocketOptions &options)
{
    if (!options.group.empty()) {
        const group *found =
            getgrnam(options.group.c_str()); // NOLINT(concurrency-mt-unsafe): alone
        if (found == nullptr) {
            throw std::runtime_error("there is no group " + options.group);
        }
        if (chown(options.path.c_str(), static_cast<uid_t>(-1), found->gr_gid) != 0) {
            throw std::runtime_error(
                system_problem("cannot give " + options.path + " to the group " + options.group));
        }
    }
    if (chmod(options.path.c_str(), options.mode) != 0) {
        throw std::runtime_error(system_problem("cannot set the mode of " + options.path));
    }
}

} // namespace

class SocketConnection final : public std::enable_shared_from_this<SocketConnection>,
                               Client,
                               LineListener {
  public:
    SocketConnection(UnixSocket &owner, int descriptor, const std::shared_ptr<const Identity> &who)
        : owner_(owner), last_use_(Clock::now()), session_(owner.gate_.open(who, *this)),
          lines_(LineStream::make(owner.loop_, descriptor, -1, owner.limits_.line, *this))
    {
    }

    void start() { lines_->start(); }

    void close()
    {
        if (session_ != nullptr) {
            owner_.gate_.close(std::exchange(session_, nullptr));
            lines_->close();
            owner_.remove(shared_from_this());
        }
    }

    // Closes the connection once all pending answers have been written.
    void close_when_done()
    {
        is_last_ = true;
        close_if_done();
    }

    bool is_idle_since(Clock::time_point time) const
    {
        return last_use_ < time && (lines_->pending() > 0 || Gate::is_idle(*session_));
    }

  private:
    void on_line(std::string_view line) override
    {
        last_use_ = Clock::now();
        owner_.gate_.submit(*session_, read_request(line));
        pause_if_full();
    }

    void on_too_long() override
    {
        owner_.gate_.refuse(*session_, Code::kTooLarge, too_long_answer(owner_.limits_.line));
        pause_if_full();
    }

    void on_input_end(bool is_gone) override
    {
        if (is_gone) {
            close();
        } else {
            close_when_done();
        }
    }

    void on_drained() override
    {
        last_use_ = Clock::now();
        owner_.gate_.resume(*session_);
        resume_if_possible();
        close_if_done();
    }

    void on_answer(const Answer &answer) override
    {
        last_use_ = Clock::now();
        lines_->send(answer.line);
        if (is_last_) {
            close_soon();
        }
    }

    // Events cannot be held back like requests: a client that does not read them is disconnected.
    void on_event(std::string_view line) override
    {
        if (has_room()) {
            lines_->send(line);
        } else {
            close_soon([](SocketConnection &connection) { connection.close(); });
        }
    }

    bool has_room() const override { return lines_->pending() < owner_.limits_.pending; }

    void on_less_full() override { resume_if_possible(); }

    // A client may keep sending what is refused at once, and read none of the answers.
    bool may_ask() const { return has_room() && !Gate::is_full(*session_); }

    void pause_if_full()
    {
        if (session_ != nullptr && !may_ask()) {
            lines_->pause();
        }
    }

    void resume_if_possible()
    {
        if (may_ask()) {
            lines_->resume();
        }
    }

    void close_if_done()
    {
        if (is_last_ && session_ != nullptr && lines_->pending() == 0 && !lines_->is_paused() &&
            Gate::is_answered(*session_)) {
            close();
        }
    }

    // Deferred, because the gate may be iterating over its sessions.
    template <class Function> void close_soon(Function function)
    {
        boost::asio::post(owner_.loop_, [self = shared_from_this(), function] { function(*self); });
    }
    void close_soon()
    {
        close_soon([](SocketConnection &connection) { connection.close_if_done(); });
    }

    UnixSocket &owner_;
    Clock::time_point last_use_;
    bool is_last_ = false; // the client sends no more requests
    Session *session_;
    std::shared_ptr<LineStream> lines_;
};

UnixSocket::UnixSocket(boost::asio::io_context &loop, Gate &gate, const SocketLimits &limits)
    : loop_(loop), gate_(gate), limits_(limits), pause_(loop), idle_(loop),
      peers_(loop, identity_of_peer, {})
{
}

// Closing fails only without memory, which ends the service.
UnixSocket::~UnixSocket() // NOLINT(bugprone-exception-escape)
{
    UnixSocket::stop_accepting();
    on_empty_ = nullptr;
    for (const auto &connection : std::set(connections_)) {
        connection->close();
    }
    ::close(spare_);
    remove_path();
}

// Unless another file has taken the socket's place.
void UnixSocket::remove_path() const
{
    struct stat own = {};
    struct stat found = {};
    if (own_ >= 0 && fstat(own_, &own) == 0 && lstat(path_.c_str(), &found) == 0 &&
        own.st_dev == found.st_dev && own.st_ino == found.st_ino) {
        unlink(path_.c_str());
    }
    ::close(own_);
}

void UnixSocket::listen(const SocketOptions &options)
{
    const FolderLock lock(options.path);
    remove_stale(options.path);
    Descriptor listener(bind_socket(options.path));
    path_ = options.path;
    own_ = ::open(path_.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    give_away(options);
    if (::listen(listener.get(), kBacklog) != 0) {
        throw std::runtime_error(system_problem("cannot listen at " + path_));
    }
    take_over(listener.release());
}

void UnixSocket::take_over(int descriptor)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    sockaddr_un address = {};
    socklen_t size = sizeof(address);
    if (path_.empty() &&
        getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0 &&
        address.sun_family == AF_UNIX) {
        path_ = address.sun_path;
    }
    listener_.emplace(loop_, descriptor);
    spare_ = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    wait_for_client();
    look_for_idle();
}

void UnixSocket::wait_for_client()
{
    listener_->async_wait(stream_descriptor::wait_read,
                          [this](const boost::system::error_code &problem) {
                              if (!problem) {
                                  accept();
                              }
                          });
}

void UnixSocket::accept()
{
    for (int count = 0; count < kMostAtOnce; ++count) {
        const int client =
            accept4(listener_->native_handle(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (client >= 0) {
            open(client);
        } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            if (!turn_away_one()) {
                pause();
                return;
            }
        } else if (errno != ECONNABORTED && errno != EINTR) {
            break;
        }
    }
    wait_for_client();
}

namespace {

void turn_away(int client, const std::string &why)
{
    const std::string answer = error_answer("null", Code::kBusy, why) + "\n";
    // Just accepted, so its buffer has room.
    [[maybe_unused]] const ssize_t sent =
        send(client, answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    close(client);
}

} // namespace

// Result: whether a client was waiting.
bool UnixSocket::turn_away_one()
{
    close(spare_);
    const int client = accept4(listener_->native_handle(), nullptr, nullptr, SOCK_CLOEXEC);
    if (client >= 0) {
        turn_away(client, "the service has no descriptors left");
    }
    spare_ = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    return client >= 0;
}

void UnixSocket::open(int descriptor)
{
    if (connections_.size() + peers_.waiting() >= limits_.clients) {
        turn_away(descriptor,
                  "the service has " + std::to_string(limits_.clients) + " clients already");
        return;
    }
    const auto peer = peer_of(descriptor);
    if (!peer) {
        ::close(descriptor);
        return;
    }
    peers_.identify(*peer, [this, client = std::make_shared<Descriptor>(descriptor)](
                               const std::shared_ptr<const Identity> &who) {
        if (who == nullptr) {
            turn_away(client->release(), "the names of the user and of its groups are not found");
        } else {
            start(client->release(), who);
        }
    });
}

void UnixSocket::start(int descriptor, const std::shared_ptr<const Identity> &who)
{
    const auto connection = std::make_shared<SocketConnection>(*this, descriptor, who);
    connections_.insert(connection);
    connection->start();
}

// The system has no resources for another connection: an immediate retry would fail as well.
void UnixSocket::pause()
{
    pause_.expires_after(kAcceptAgain);
    pause_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem && listener_) {
            wait_for_client();
        }
    });
}

void UnixSocket::look_for_idle()
{
    const bool has_end = limits_.idle.count() > 0;
    idle_.expires_after(has_end ? std::clamp(limits_.idle / 4, kShortestLook, kLongestLook)
                                : kLongestLook);
    idle_.async_wait([this](const boost::system::error_code &problem) {
        if (problem) {
            return;
        }
        const auto time = Clock::now() - limits_.idle;
        for (const auto &connection : std::set(connections_)) {
            if (limits_.idle.count() > 0 && connection->is_idle_since(time)) {
                connection->close();
            }
        }
        look_for_idle();
    });
}

void UnixSocket::remove(const std::shared_ptr<SocketConnection> &connection)
{
    connections_.erase(connection);
    if (connections_.empty() && on_empty_) {
        std::exchange(on_empty_, nullptr)();
    }
}

void UnixSocket::stop_accepting()
{
    boost::system::error_code ignored;
    if (listener_) {
        listener_->cancel(ignored);
    }
    pause_.cancel();
    idle_.cancel();
    peers_.forget_waiting();
}

void UnixSocket::on_empty(std::function<void()> done)
{
    on_empty_ = std::move(done);
    for (const auto &connection : std::set(connections_)) {
        connection->close_when_done();
    }
    if (connections_.empty() && on_empty_) {
        std::exchange(on_empty_, nullptr)();
    }
}

} // namespace agent::service
