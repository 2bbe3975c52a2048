// SPDX-License-Identifier: MIT
// Lines to and from a service's Unix socket, without ever waiting for it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// A service that cannot be reached, has gone, or does not speak as one; what() says it in a
// sentence.
class ServiceError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Where a service listens unless it is told otherwise, $XDG_RUNTIME_DIR/hgagent.sock. Throws
// ServiceError where there is no such folder.
std::string default_socket_path();

class SocketClient {
  public:
    // No reply of a gateway comes near.
    static constexpr size_t kMaxLine = 16UL * 1024 * 1024;

    // Connects. Throws ServiceError.
    explicit SocketClient(const std::string &path, size_t max_line = kMaxLine);
    ~SocketClient();
    SocketClient(const SocketClient &) = delete;
    SocketClient &operator=(const SocketClient &) = delete;

    // To be polled for the events before work() is called.
    int descriptor() const { return descriptor_; }
    short wanted_events() const;

    // Adds a line and its end to what is to be sent.
    void send(std::string_view line);

    // Sends what the socket takes and reads what has come, at most one piece of it, so that a
    // service that sends to no end keeps nobody busy for long. Throws ServiceError when the
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
    size_t begin_ = 0;   // of what has not been taken
    size_t scanned_ = 0; // up to here no line ends
};

} // namespace agent
