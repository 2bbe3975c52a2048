// SPDX-License-Identifier: MIT
// Lines to and from a service's Unix socket, without blocking.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// The service cannot be reached, has disconnected, or violates the protocol; what() is a readable
// message.
class ServiceError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The default socket of a service, $XDG_RUNTIME_DIR/hgagent.sock. Throws ServiceError when that
// directory is not defined.
std::string default_socket_path();

class SocketClient {
  public:
    // Much longer than any reply of a gateway.
    static constexpr size_t kMaxLine = 16UL * 1024 * 1024;

    // Connects. Throws ServiceError.
    explicit SocketClient(const std::string &path, size_t max_line = kMaxLine);
    ~SocketClient();
    SocketClient(const SocketClient &) = delete;
    SocketClient &operator=(const SocketClient &) = delete;

    // The descriptor to poll for the events; call work() when it is ready.
    int descriptor() const { return descriptor_; }
    short wanted_events() const;

    // Appends a line and its end to the output.
    void send(std::string_view line);

    // Sends what the socket accepts and reads what has arrived, at most one chunk, so that a
    // service that sends endlessly cannot monopolise the caller. Throws ServiceError when the
    // connection has ended, or when a line is too long.
    void work();

    // Takes the next whole line. Result: false when there is none yet.
    bool next(std::string &line);

  private:
    void write_some();
    void read_some();

    const std::string name_;
    const size_t max_line_;
    int descriptor_;
    std::string unsent_;
    std::string received_;
    size_t begin_ = 0;   // start of the unread lines
    size_t scanned_ = 0; // no line end before this
};

} // namespace agent
