// SPDX-License-Identifier: MIT
#include "client/socket_client.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace agent {

namespace {

constexpr size_t kPiece = 64UL * 1024;

std::string system_message(int number)
{
    return std::generic_category().message(number);
}

sockaddr_un address_of(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        throw ServiceError("a socket's path has 1 to " +
                           std::to_string(sizeof(address.sun_path) - 1) + " bytes");
    }
    memcpy(address.sun_path, path.data(), path.size());
    return address;
}

} // namespace

std::string default_socket_path()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    const char *folder = getenv("XDG_RUNTIME_DIR");
    if (folder == nullptr || folder[0] != '/') {
        throw ServiceError("XDG_RUNTIME_DIR is not set: --socket PATH names the service's socket");
    }
    return std::string(folder) + "/hgagent.sock";
}

SocketClient::SocketClient(const std::string &path, size_t max_line)
    : name_("the service at unix:" + path), max_line_(max_line)
{
    const sockaddr_un address = address_of(path);
    descriptor_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor_ < 0) {
        throw ServiceError("cannot reach " + name_ + ": " + system_message(errno));
    }
    if (connect(descriptor_, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0) {
        const int number = errno;
        close(descriptor_);
        throw ServiceError("cannot reach " + name_ + ": " + system_message(number));
    }
}

SocketClient::~SocketClient()
{
    close(descriptor_);
}

short SocketClient::wanted_events() const
{
    return unsent_.empty() ? POLLIN : POLLIN | POLLOUT;
}

void SocketClient::send(std::string_view line)
{
    unsent_ += line;
    unsent_ += '\n';
}

void SocketClient::work()
{
    write_some();
    read_some();
}

void SocketClient::write_some()
{
    while (!unsent_.empty()) {
        const ssize_t count = ::send(descriptor_, unsent_.data(), unsent_.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            unsent_.erase(0, static_cast<size_t>(count));
        } else if (errno == EAGAIN || errno == EPIPE || errno == ECONNRESET) {
            return; // after the end of the connection, data that it sent before must still be read
        } else if (errno != EINTR) {
            throw ServiceError("cannot write to " + name_ + ": " + system_message(errno));
        }
    }
}

void SocketClient::read_some()
{
    if (begin_ > 0) {
        received_.erase(0, begin_);
        scanned_ -= begin_;
        begin_ = 0;
    }
    const size_t size = received_.size();
    received_.resize(size + kPiece);
    const ssize_t count = recv(descriptor_, received_.data() + size, kPiece, 0);
    const int number = errno;
    received_.resize(size + (count > 0 ? static_cast<size_t>(count) : 0));
    if (count == 0 || (count < 0 && number == ECONNRESET)) {
        throw ServiceError(name_ + " has closed the connection");
    }
    if (count < 0 && number != EAGAIN && number != EINTR) {
        throw ServiceError("cannot read from " + name_ + ": " + system_message(number));
    }
}

bool SocketClient::next(std::string &line)
{
    const size_t end = received_.find('\n', scanned_);
    scanned_ = std::min(end, received_.size());
    if (scanned_ - begin_ > max_line_) {
        throw ServiceError(name_ + " sent a line of more than " + std::to_string(max_line_) +
                           " bytes");
    }
    if (end == std::string::npos) {
        return false;
    }
    line.assign(received_, begin_, end - begin_);
    begin_ = end + 1;
    scanned_ = begin_;
    return true;
}

} // namespace agent
