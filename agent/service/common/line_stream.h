// SPDX-License-Identifier: MIT
// Lines over descriptors, on the event loop: a socket, or a pair of pipes. Nothing here blocks.
#pragma once

#include <boost/asio/generic/stream_protocol.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

class LineListener {
  public:
    virtual void on_line(std::string_view line) = 0;
    // The line that begins here is too long; it is skipped.
    virtual void on_too_long() = 0;
    // End of input. is_gone: the peer no longer reads either.
    virtual void on_input_end(bool is_gone) = 0;
    // All output has been written.
    virtual void on_drained() = 0;

  protected:
    ~LineListener() = default;
};

class LineStream : public std::enable_shared_from_this<LineStream> {
  public:
    // Takes ownership of the descriptors; out is -1 if in is used for both. The listener must live
    // until close().
    static std::shared_ptr<LineStream> make(boost::asio::io_context &loop, int in, int out,
                                            size_t max_line, LineListener &listener);
    ~LineStream();
    LineStream(const LineStream &) = delete;
    LineStream &operator=(const LineStream &) = delete;

    void start();
    // No line is passed on until resume(); input that has been read is kept. Both may be called
    // from within on_line().
    void pause() { is_paused_ = true; }
    void resume();
    bool is_paused() const { return is_paused_; }

    // Writes the line and its end; what cannot be written yet is buffered.
    void send(std::string_view line);
    // The number of buffered bytes.
    size_t pending() const { return pending_.size() - written_; }

    // Reads the remaining input, at most this much, after the peer has ended.
    void drain(size_t most);
    // Closes the output once all of it has been written.
    void end_output();
    void close();
    bool is_open() const { return listener_ != nullptr; }

  private:
    LineStream(boost::asio::io_context &loop, int in, int out, size_t max_line,
               LineListener &listener);
    void wait_for_input();
    void take_received(const boost::system::error_code &problem, size_t count);
    void read();
    ssize_t read_once();
    void take(std::string_view bytes);
    size_t take_lines(std::string_view bytes);
    void end_input(bool is_gone);
    void wait_for_output();
    void write_pending();
    int input_descriptor();
    int output_descriptor();

    // A socket, or a pair of pipes. The library can receive from a socket without telling the
    // kernel each time that it waits again.
    std::optional<boost::asio::generic::stream_protocol::socket> socket_;
    std::optional<boost::asio::posix::stream_descriptor> in_;
    std::optional<boost::asio::posix::stream_descriptor> out_;
    boost::asio::io_context &loop_;
    std::array<char, 4096> begin_; // of what a socket receives
    const size_t max_line_;
    LineListener *listener_;
    std::string unread_;       // an incomplete line, or input while paused
    size_t searched_ = 0;      // bytes of it known to contain no line end
    bool is_skipping_ = false; // while inside a line that is too long
    bool is_paused_ = false;
    bool is_taking_ = false;
    bool is_waiting_for_input_ = false;
    bool has_input_ended_ = false;
    bool is_gone_ = false;
    std::string pending_;
    size_t written_ = 0; // of pending_
    bool is_output_ending_ = false;
};

} // namespace agent::service
