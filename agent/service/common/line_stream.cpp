// SPDX-License-Identifier: MIT
#include "service/common/line_stream.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

namespace agent::service {

namespace {

using boost::asio::posix::stream_descriptor;

// The loop reads one descriptor at a time, so all share one buffer for long input. It is wiped
// after use, since it may have contained passwords.
constexpr size_t kReadSize = 64UL * 1024;
char buffer[kReadSize];

// Written data is erased from the front of the buffer once it reaches this size.
constexpr size_t kMuchWritten = 256UL * 1024;

void forbid_waiting(int descriptor)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool is_hung_up(int descriptor)
{
    pollfd one = {descriptor, 0, 0};
    return poll(&one, 1, 0) > 0 && (one.revents & (POLLHUP | POLLERR)) != 0;
}

} // namespace

LineStream::LineStream(boost::asio::io_context &loop, int in, int out, size_t max_line,
                       LineListener &listener)
    : loop_(loop), max_line_(max_line), listener_(&listener)
{
    forbid_waiting(in);
    if (out >= 0) {
        forbid_waiting(out);
        in_.emplace(loop, in);
        out_.emplace(loop, out);
    } else {
        socket_.emplace(loop, boost::asio::generic::stream_protocol(AF_UNIX, 0), in);
    }
}

int LineStream::input_descriptor()
{
    return socket_ ? socket_->native_handle() : in_->native_handle();
}

int LineStream::output_descriptor()
{
    return socket_ ? socket_->native_handle() : out_->native_handle();
}

std::shared_ptr<LineStream> LineStream::make(boost::asio::io_context &loop, int in, int out,
                                             size_t max_line, LineListener &listener)
{
    return std::shared_ptr<LineStream>(new LineStream(loop, in, out, max_line, listener));
}

LineStream::~LineStream() = default;

void LineStream::start()
{
    wait_for_input();
}

void LineStream::wait_for_input()
{
    if (is_waiting_for_input_ || has_input_ended_) {
        return;
    }
    is_waiting_for_input_ = true;
    if (socket_) {
        socket_->async_receive(
            boost::asio::buffer(begin_),
            [self = shared_from_this()](const boost::system::error_code &problem, size_t count) {
                self->is_waiting_for_input_ = false;
                self->take_received(problem, count);
            });
        return;
    }
    // What has been read must not wait in a queue here: the process may end, and drain() follows.
    in_->async_wait(stream_descriptor::wait_read,
                    [self = shared_from_this()](const boost::system::error_code &problem) {
                        self->is_waiting_for_input_ = false;
                        if (!problem && self->is_open() && !self->is_paused_) {
                            self->read();
                        }
                    });
}

void LineStream::take_received(const boost::system::error_code &problem, size_t count)
{
    if (count > 0 && is_open()) {
        take({begin_.data(), count});
    }
    explicit_bzero(begin_.data(), count);
    if (!is_open()) {
        return;
    }
    if (problem) {
        has_input_ended_ = true;
        is_gone_ = problem != boost::asio::error::eof || is_hung_up(input_descriptor());
    }
    if (is_paused_) {
        return;
    }
    if (has_input_ended_) {
        end_input(is_gone_);
    } else if (count == begin_.size()) {
        read(); // the larger buffer takes the rest
    } else {
        wait_for_input();
    }
}

// Result: that of read(); the input has been processed.
ssize_t LineStream::read_once()
{
    ssize_t count = 0;
    do {
        count = ::read(input_descriptor(), buffer, sizeof(buffer));
    } while (count < 0 && errno == EINTR);
    const int reason = errno;
    if (count > 0) {
        take({buffer, static_cast<size_t>(count)});
        explicit_bzero(buffer, static_cast<size_t>(count));
    }
    errno = reason;
    return count;
}

void LineStream::read()
{
    const ssize_t count = read_once();
    if (!is_open()) {
        return;
    }
    if (count == 0) {
        end_input(is_hung_up(input_descriptor()));
    } else if (count < 0 && errno != EAGAIN) {
        end_input(true);
    } else if (!is_paused_) {
        wait_for_input();
    }
}

void LineStream::drain(size_t most)
{
    while (is_open() && !has_input_ended_ && most > 0) {
        const ssize_t count = read_once();
        if (count <= 0) {
            return;
        }
        most -= std::min(most, static_cast<size_t>(count));
    }
}

// Passes the lines on. The rest stays in unread_.
void LineStream::take(std::string_view bytes)
{
    is_taking_ = true;
    if (unread_.empty()) {
        unread_.assign(bytes.substr(take_lines(bytes)));
    } else {
        unread_.append(bytes);
        const size_t taken = take_lines(unread_);
        unread_.erase(0, taken);
    }
    if (unread_.empty()) {
        unread_.shrink_to_fit();
    }
    is_taking_ = false;
}

// Result: the number of bytes processed.
size_t LineStream::take_lines(std::string_view bytes)
{
    size_t taken = 0;
    while (is_open() && !is_paused_) {
        const size_t end = bytes.find('\n', taken + searched_);
        searched_ = 0;
        if (end == std::string_view::npos) {
            const size_t length = bytes.size() - taken;
            if (length > max_line_ && !is_skipping_) {
                is_skipping_ = true;
                listener_->on_too_long();
            }
            if (is_skipping_) {
                return bytes.size();
            }
            searched_ = length;
            return taken;
        }
        const std::string_view line = bytes.substr(taken, end - taken);
        taken = end + 1;
        if (!is_skipping_ && line.size() > max_line_) {
            listener_->on_too_long();
        } else if (!is_skipping_) {
            listener_->on_line(line);
        }
        is_skipping_ = false;
    }
    return taken;
}

void LineStream::resume()
{
    if (!is_paused_ || !is_open()) {
        return;
    }
    is_paused_ = false;
    if (is_taking_) {
        return;
    }
    // Deferred, so that the listener is not called from within its own call.
    boost::asio::post(loop_, [self = shared_from_this()] {
        if (!self->is_open() || self->is_paused_) {
            return;
        }
        const std::string kept = std::move(self->unread_);
        self->unread_.clear();
        self->searched_ = 0;
        self->take(kept);
        if (!self->is_open() || self->is_paused_) {
            return;
        }
        if (self->has_input_ended_) {
            self->end_input(self->is_gone_);
        } else {
            self->wait_for_input();
        }
    });
}

// The last line may lack its line end.
void LineStream::end_input(bool is_gone)
{
    has_input_ended_ = true;
    is_gone_ = is_gone;
    if (!unread_.empty() && !is_gone) {
        const std::string last = std::move(unread_);
        unread_.clear();
        listener_->on_line(last);
    }
    if (is_open()) {
        listener_->on_input_end(is_gone);
    }
}

void LineStream::send(std::string_view line)
{
    if (!is_open()) {
        return;
    }
    size_t done = 0;
    if (pending() == 0) {
        char end = '\n';
        const iovec pieces[] = {{const_cast<char *>(line.data()), line.size()}, {&end, 1}};
        const ssize_t written = writev(output_descriptor(), pieces, 2);
        done = written > 0 ? static_cast<size_t>(written) : 0;
        if (done == line.size() + 1) {
            return;
        }
        // An error recurs when the rest is written, and is handled there, outside of the caller's
        // work.
        wait_for_output();
    }
    pending_.append(line.substr(std::min(done, line.size())));
    pending_.push_back('\n');
}

void LineStream::wait_for_output()
{
    auto handler = [self = shared_from_this()](const boost::system::error_code &problem) {
        if (!problem && self->is_open()) {
            self->write_pending();
        }
    };
    if (socket_) {
        socket_->async_wait(boost::asio::socket_base::wait_write, std::move(handler));
    } else {
        out_->async_wait(stream_descriptor::wait_write, std::move(handler));
    }
}

void LineStream::write_pending()
{
    const ssize_t count = ::write(output_descriptor(), pending_.data() + written_, pending());
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
        pending_.clear();
        written_ = 0;
        has_input_ended_ = true;
        listener_->on_input_end(true);
        return;
    }
    written_ += count > 0 ? static_cast<size_t>(count) : 0;
    if (pending() > 0) {
        if (written_ >= kMuchWritten) {
            pending_.erase(0, written_);
            written_ = 0;
        }
        wait_for_output();
        return;
    }
    pending_ = std::string();
    written_ = 0;
    if (is_output_ending_) {
        end_output();
    }
    listener_->on_drained();
}

void LineStream::end_output()
{
    is_output_ending_ = true;
    if (pending() > 0) {
        return;
    }
    if (socket_) {
        shutdown(socket_->native_handle(), SHUT_WR);
    } else if (out_->is_open()) {
        out_->close();
    }
}

void LineStream::close()
{
    listener_ = nullptr;
    boost::system::error_code ignored;
    if (socket_) {
        socket_->close(ignored);
    } else {
        in_->close(ignored);
        out_->close(ignored);
    }
    pending_.clear();
    written_ = 0;
}

} // namespace agent::service
